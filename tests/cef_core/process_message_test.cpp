#include <gtest/gtest.h>

#include "include/cef_process_message.h"
#include "libcef/process_message_impl.h"

namespace {

TEST(ProcessMessageTest, ArgumentsRoundTripAndCopiesAreIndependent) {
  CefRefPtr<CefProcessMessage> message =
      CefProcessMessage::Create(u"r\u00E9ponse");
  EXPECT_EQ(message->GetName().ToString16(), u"r\u00E9ponse");
  EXPECT_FALSE(message->IsReadOnly());
  EXPECT_FALSE(message->GetSharedMemoryRegion());

  CefRefPtr<CefListValue> args = message->GetArgumentList();
  EXPECT_TRUE(args->IsOwned());
  args->SetInt(0, 7);
  args->SetString(1, u"\U0001F600");
  CefRefPtr<CefDictionaryValue> dict = CefDictionaryValue::Create();
  dict->SetDouble("x", 0.5);
  args->SetDictionary(2, dict);

  CefRefPtr<CefProcessMessage> copy = message->Copy();
  copy->GetArgumentList()->SetInt(0, 8);
  EXPECT_EQ(message->GetArgumentList()->GetInt(0), 7);
  EXPECT_EQ(copy->GetArgumentList()->GetString(1).ToString16(), u"\U0001F600");
  EXPECT_EQ(copy->GetArgumentList()->GetDictionary(2)->GetDouble("x"), 0.5);

  // A message's own list is copied, not moved, into other containers.
  CefRefPtr<CefListValue> other = CefListValue::Create();
  ASSERT_TRUE(other->SetList(0, message->GetArgumentList()));
  EXPECT_EQ(message->GetArgumentList()->GetSize(), 3u);

  // The argument list dies with its message.
  message = nullptr;
  EXPECT_FALSE(args->IsValid());
}

TEST(ProcessMessageTest, DeliveredCopyIsReadOnly) {
  CefRefPtr<CefProcessMessage> sent = CefProcessMessage::Create("ping");
  sent->GetArgumentList()->SetBool(0, true);
  CefRefPtr<CefProcessMessage> received =
      cefengine::ProcessMessageImpl::CopyForDelivery(sent);
  ASSERT_TRUE(received);
  EXPECT_TRUE(received->IsReadOnly());
  EXPECT_FALSE(received->GetArgumentList()->SetBool(0, false));
  EXPECT_TRUE(received->GetArgumentList()->GetBool(0));
  EXPECT_FALSE(received->Copy()->IsReadOnly());
  EXPECT_FALSE(cefengine::ProcessMessageImpl::CopyForDelivery(nullptr));
}

}  // namespace
