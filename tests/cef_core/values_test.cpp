#include <gtest/gtest.h>

#include <cstring>

#include "include/cef_values.h"
#include "libcef/value_access.h"

namespace {

const char kBytes[] = {0, 1, 2, 3, '\xFF'};
const std::u16string kText = u"gr\u00FC\u00DF \U0001F600";

// Fills |dict| with one entry of every type, including nested containers.
void FillEveryType(CefRefPtr<CefDictionaryValue> dict) {
  dict->SetNull("null");
  dict->SetBool("bool", true);
  dict->SetInt("int", -42);
  dict->SetDouble("double", 2.5);
  dict->SetString("string", kText);
  dict->SetBinary("binary", CefBinaryValue::Create(kBytes, sizeof(kBytes)));
  CefRefPtr<CefDictionaryValue> inner = CefDictionaryValue::Create();
  inner->SetInt("depth", 2);
  CefRefPtr<CefListValue> list = CefListValue::Create();
  list->SetString(0, "first");
  list->SetDictionary(1, inner);
  dict->SetList("list", list);
}

void ExpectEveryType(CefRefPtr<CefDictionaryValue> dict) {
  ASSERT_TRUE(dict);
  EXPECT_EQ(dict->GetSize(), 7u);
  EXPECT_EQ(dict->GetType("null"), VTYPE_NULL);
  EXPECT_TRUE(dict->GetBool("bool"));
  EXPECT_EQ(dict->GetInt("int"), -42);
  EXPECT_EQ(dict->GetDouble("double"), 2.5);
  EXPECT_EQ(dict->GetString("string").ToString16(), kText);
  CefRefPtr<CefBinaryValue> binary = dict->GetBinary("binary");
  ASSERT_TRUE(binary);
  ASSERT_EQ(binary->GetSize(), sizeof(kBytes));
  EXPECT_EQ(memcmp(binary->GetRawData(), kBytes, sizeof(kBytes)), 0);
  CefRefPtr<CefListValue> list = dict->GetList("list");
  ASSERT_TRUE(list);
  EXPECT_EQ(list->GetString(0).ToString(), "first");
  ASSERT_EQ(list->GetType(1), VTYPE_DICTIONARY);
  EXPECT_EQ(list->GetDictionary(1)->GetInt("depth"), 2);
}

TEST(ValuesTest, DictionaryRoundTripsEveryType) {
  CefRefPtr<CefDictionaryValue> dict = CefDictionaryValue::Create();
  FillEveryType(dict);
  ExpectEveryType(dict);

  CefDictionaryValue::KeyList keys;
  ASSERT_TRUE(dict->GetKeys(keys));
  ASSERT_EQ(keys.size(), 7u);
  EXPECT_EQ(keys.front().ToString(), "binary");  // sorted
  EXPECT_EQ(dict->GetType("missing"), VTYPE_INVALID);
  EXPECT_EQ(dict->GetInt("string"), 0);  // wrong type gives the default
}

TEST(ValuesTest, ListGrowsWithNullsAndShrinks) {
  CefRefPtr<CefListValue> list = CefListValue::Create();
  EXPECT_TRUE(list->SetInt(3, 7));
  ASSERT_EQ(list->GetSize(), 4u);
  EXPECT_EQ(list->GetType(0), VTYPE_NULL);
  EXPECT_EQ(list->GetType(4), VTYPE_INVALID);
  EXPECT_TRUE(list->Remove(0));
  EXPECT_EQ(list->GetInt(2), 7);
  EXPECT_FALSE(list->Remove(3));
  EXPECT_TRUE(list->SetSize(1));
  EXPECT_EQ(list->GetSize(), 1u);
  EXPECT_FALSE(list->SetInt(size_t{1} << 40, 1));
}

TEST(ValuesTest, CopiesAreDeepAndIndependent) {
  CefRefPtr<CefDictionaryValue> original = CefDictionaryValue::Create();
  FillEveryType(original);
  CefRefPtr<CefDictionaryValue> copy = original->Copy(false);
  EXPECT_TRUE(copy->IsEqual(original));
  EXPECT_FALSE(copy->IsSame(original));

  copy->GetList("list")->GetDictionary(1)->SetInt("depth", 99);
  copy->SetString("string", "changed");
  ExpectEveryType(original);
  EXPECT_FALSE(copy->IsEqual(original));

  // Copies drop empty children only when asked to.
  original->SetDictionary("empty", CefDictionaryValue::Create());
  EXPECT_TRUE(original->Copy(false)->HasKey("empty"));
  EXPECT_FALSE(original->Copy(true)->HasKey("empty"));
}

TEST(ValuesTest, ChildReferencesModifyAndDieWithTheContainer) {
  CefRefPtr<CefDictionaryValue> parent = CefDictionaryValue::Create();
  CefRefPtr<CefDictionaryValue> child = CefDictionaryValue::Create();
  ASSERT_TRUE(parent->SetDictionary("child", child));
  // Ownership moved: the reference passed in is spent.
  EXPECT_FALSE(child->IsValid());

  CefRefPtr<CefDictionaryValue> ref = parent->GetDictionary("child");
  EXPECT_TRUE(ref->IsOwned());
  ref->SetBool("flag", true);
  EXPECT_TRUE(parent->GetDictionary("child")->GetBool("flag"));
  EXPECT_TRUE(ref->IsSame(parent->GetDictionary("child")));

  // An owned value set elsewhere is copied, leaving the source intact.
  CefRefPtr<CefDictionaryValue> other = CefDictionaryValue::Create();
  ASSERT_TRUE(other->SetDictionary("copy", ref));
  EXPECT_TRUE(ref->IsValid());
  EXPECT_FALSE(other->GetDictionary("copy")->IsSame(ref));

  ASSERT_TRUE(parent->Remove("child"));
  EXPECT_FALSE(ref->IsValid());
  EXPECT_FALSE(ref->SetInt("x", 1));
  EXPECT_EQ(ref->GetSize(), 0u);

  CefRefPtr<CefDictionaryValue> orphan = other->GetDictionary("copy");
  other = nullptr;  // destroying the owner invalidates its children
  EXPECT_FALSE(orphan->IsValid());
}

TEST(ValuesTest, InsertingAContainerIntoItselfCopies) {
  CefRefPtr<CefListValue> list = CefListValue::Create();
  list->SetInt(0, 1);
  ASSERT_TRUE(list->SetList(1, list));
  EXPECT_TRUE(list->IsValid());
  ASSERT_EQ(list->GetType(1), VTYPE_LIST);
  EXPECT_EQ(list->GetList(1)->GetSize(), 1u);
}

TEST(ValuesTest, CefValueSharesComplexDataAndCopiesSimpleData) {
  CefRefPtr<CefValue> value = CefValue::Create();
  EXPECT_EQ(value->GetType(), VTYPE_NULL);
  value->SetString(kText);
  EXPECT_EQ(value->GetString().ToString16(), kText);
  EXPECT_EQ(value->GetInt(), 0);

  CefRefPtr<CefListValue> container = CefListValue::Create();
  ASSERT_TRUE(container->SetValue(0, value));
  value->SetString("later");
  EXPECT_EQ(container->GetString(0).ToString16(), kText);

  CefRefPtr<CefDictionaryValue> dict = CefDictionaryValue::Create();
  ASSERT_TRUE(value->SetDictionary(dict));
  ASSERT_TRUE(container->SetValue(1, value));
  // The value now refers to the stored dictionary.
  value->GetDictionary()->SetInt("n", 5);
  EXPECT_EQ(container->GetDictionary(1)->GetInt("n"), 5);
  EXPECT_TRUE(value->IsOwned());

  CefRefPtr<CefValue> read = container->GetValue(1);
  EXPECT_TRUE(read->IsSame(value));
  EXPECT_TRUE(read->IsEqual(value->Copy()));
  EXPECT_FALSE(read->IsSame(value->Copy()));

  // Simple data read out of a container is a copy.
  CefRefPtr<CefValue> simple = container->GetValue(0);
  simple->SetInt(1);
  EXPECT_EQ(container->GetType(0), VTYPE_STRING);
}

TEST(ValuesTest, BinaryData) {
  EXPECT_FALSE(CefBinaryValue::Create(nullptr, 4));
  EXPECT_FALSE(CefBinaryValue::Create(kBytes, 0));
  CefRefPtr<CefBinaryValue> binary =
      CefBinaryValue::Create(kBytes, sizeof(kBytes));
  char part[3] = {};
  EXPECT_EQ(binary->GetData(part, sizeof(part), 3), 2u);
  EXPECT_EQ(part[0], 3);
  EXPECT_EQ(part[1], '\xFF');
  EXPECT_EQ(binary->GetData(part, sizeof(part), 5), 0u);
  EXPECT_TRUE(binary->IsEqual(binary->Copy()));
  EXPECT_FALSE(binary->IsSame(binary->Copy()));
}

TEST(ValuesTest, ReadOnlyCopiesRefuseChanges) {
  CefRefPtr<CefDictionaryValue> dict = CefDictionaryValue::Create();
  FillEveryType(dict);
  CefRefPtr<CefDictionaryValue> frozen = cefengine::ReadOnlyCopy(dict);
  ASSERT_TRUE(frozen);
  EXPECT_TRUE(frozen->IsReadOnly());
  EXPECT_FALSE(frozen->SetInt("int", 1));
  EXPECT_FALSE(frozen->Remove("int"));
  EXPECT_FALSE(frozen->Clear());
  EXPECT_FALSE(frozen->GetList("list")->SetInt(0, 1));
  EXPECT_TRUE(frozen->GetValue("int")->IsReadOnly());
  ExpectEveryType(frozen);
  // A copy of a read-only value is writable again.
  EXPECT_TRUE(frozen->Copy(false)->SetInt("int", 1));
}

}  // namespace
