#include <gtest/gtest.h>

#include <map>
#include <string>

#include "include/internal/cef_string.h"

namespace {

// "é", "€" and U+1F600 (a surrogate pair in UTF-16).
const std::string kUtf8 = "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80";
const std::u16string kUtf16 = u"caf\u00E9 \u20AC \U0001F600";
const std::wstring kWide = L"caf\u00E9 \u20AC \U0001F600";

TEST(CefStringTest, ConvertsBetweenAllEncodings) {
  CefString from8(kUtf8);
  EXPECT_EQ(from8.ToString16(), kUtf16);
  EXPECT_EQ(from8.length(), kUtf16.size());
  EXPECT_EQ(from8.ToWString(), kWide);
  EXPECT_EQ(CefString(kWide).ToString(), kUtf8);
  EXPECT_EQ(CefString(kUtf16.c_str()).ToString(), kUtf8);

  CefStringUTF8 utf8(kUtf16);
  EXPECT_EQ(utf8.ToString(), kUtf8);
  EXPECT_EQ(utf8.ToWString(), kWide);
  CefStringWide wide(kUtf8);
  EXPECT_EQ(wide.ToString16(), kUtf16);
  EXPECT_EQ(wide.length(), kWide.size());
}

TEST(CefStringTest, InvalidInputBecomesReplacementCharacter) {
  // A lone high surrogate and a truncated UTF-8 sequence.
  std::u16string lone = u"a";
  lone.push_back(static_cast<char16_t>(0xD83D));
  lone += u"b";
  EXPECT_EQ(CefString(lone).ToString(), "a\xEF\xBF\xBD" "b");

  CefString bad;
  EXPECT_FALSE(bad.FromString(std::string("x\xE2\x82")));
  EXPECT_EQ(bad.ToString16(), u"x\uFFFD");

  // An encoded surrogate and an overlong form are not UTF-8; a byte order mark is text.
  EXPECT_FALSE(bad.FromString(std::string("\xED\xA0\x80") + "\xC0\xAF"));
  EXPECT_EQ(bad.ToString16(), std::u16string(bad.length(), u'\uFFFD'));
  EXPECT_GE(bad.length(), 2u);
  EXPECT_TRUE(bad.FromString(std::string("\xEF\xBB\xBFz")));
  EXPECT_EQ(bad.ToString16(), u"\uFEFFz");

  // UTF-32 surrogates and values past U+10FFFF, a lone low surrogate at the end of UTF-16.
  EXPECT_FALSE(bad.FromWString(std::wstring{L'a', wchar_t(0xD800), wchar_t(0x110000)}));
  EXPECT_EQ(bad.ToString16(), u"a\uFFFD\uFFFD");
  std::u16string lowLast = u"c";
  lowLast.push_back(static_cast<char16_t>(0xDC00));
  CefStringWide wide;
  EXPECT_FALSE(wide.FromString16(lowLast));
  EXPECT_EQ(wide.ToWString(), L"c\uFFFD");

  EXPECT_FALSE(bad.FromASCII("caf\xC3\xA9"));
  EXPECT_TRUE(bad.FromASCII("plain"));
  EXPECT_EQ(bad, CefString("plain"));
}

TEST(CefStringTest, AttachedStringWritesIntoTheStruct) {
  struct {
    cef_string_t path;
  } settings = {};
  cef_string_t& field = settings.path;
  CefString(&settings.path) = "/tmp/cache";
  EXPECT_EQ(CefString(&field).ToString(), "/tmp/cache");
  ASSERT_NE(field.dtor, nullptr);

  {
    CefString attached(&field);
    EXPECT_FALSE(attached.IsOwner());
    attached = kUtf8;  // replaces, without leaking the old text
  }
  EXPECT_EQ(std::u16string(field.str, field.length), kUtf16);

  // A copy of an attached string owns its own text.
  const CefString view(&field);
  CefString copy(view);
  cef_string_clear(&field);
  EXPECT_EQ(field.length, 0u);
  EXPECT_EQ(copy.ToString(), kUtf8);
}

TEST(CefStringTest, CompareAndOrder) {
  EXPECT_EQ(CefString(), CefString(""));
  EXPECT_LT(CefString(), CefString("a"));
  EXPECT_LT(CefString("ab"), CefString("abc"));
  EXPECT_LT(CefString("abc"), CefString("abd"));
  // Code unit order: U+FFFD sorts after the surrogates of U+1F600.
  EXPECT_LT(CefString(u"\U0001F600"), CefString(u"\uFFFD"));
  EXPECT_NE(CefString("a"), CefString("A"));

  std::map<CefString, int> map;
  map[CefString("b")] = 2;
  map[CefString("a")] = 1;
  EXPECT_EQ(map.begin()->second, 1);
}

TEST(CefStringTest, UserFreeTransfersOwnership) {
  CefString text(kUtf8);
  cef_string_userfree_t userfree = text.DetachToUserFree();
  EXPECT_TRUE(text.empty());
  ASSERT_NE(userfree, nullptr);
  CefString back;
  back.AttachToUserFree(userfree);
  EXPECT_EQ(back.ToString(), kUtf8);
}

TEST(CefStringTest, CaseMapping) {
  cef_string_t out = {};
  std::u16string mixed = u"\u00C9cole Stra\u00DFe";
  ASSERT_TRUE(cef_string_utf16_to_lower(mixed.data(), mixed.size(), &out));
  EXPECT_EQ(CefString(&out).ToString16(), u"\u00E9cole stra\u00DFe");
  ASSERT_TRUE(cef_string_utf16_to_upper(mixed.data(), mixed.size(), &out));
  EXPECT_EQ(CefString(&out).ToString16(), u"\u00C9COLE STRASSE");
  cef_string_clear(&out);
}

}  // namespace
