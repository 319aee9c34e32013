#include "fakes.h"

#include "host/view_support/process_messages/cef_client_message.h"
#include "host/view_support/process_messages/focused_node_changed_message.h"
#include "host/view_support/process_messages/run_java_script_message.h"
#include "host/view_support/process_messages/run_java_script_result_message.h"

#include <gtest/gtest.h>

TEST(ProcessMessages, EachKindTravelsWithItsFieldsAndRequestsGetTheirOwnNumbers)
{
    CefRefPtr<FakeFrame> frame = new FakeFrame("about:blank", true);

    CefRefPtr<brovia::RunJavaScriptMessage> script = new brovia::RunJavaScriptMessage();
    script->browserId = 7;
    script->frameId = "main";
    script->script = "document.title";
    ASSERT_TRUE(script->send(nullptr, frame));
    CefRefPtr<brovia::RunJavaScriptMessage> again = new brovia::RunJavaScriptMessage();
    ASSERT_TRUE(again->send(nullptr, frame));
    EXPECT_NE(again->requestId, script->requestId);
    ASSERT_EQ(frame->sent.size(), 2u);
    EXPECT_EQ(frame->sent[0].first, PID_RENDERER);
    CefRefPtr<brovia::RunJavaScriptMessage> received = new brovia::RunJavaScriptMessage();
    ASSERT_TRUE(received->fromProcessMessage(frame->sent[0].second));
    EXPECT_EQ(received->browserId, 7);
    EXPECT_EQ(received->frameId.ToString(), "main");
    EXPECT_EQ(received->requestId, script->requestId);
    EXPECT_EQ(received->script.ToString(), "document.title");

    // 64-bit numbers survive the trip; the value keeps its type.
    CefRefPtr<brovia::RunJavaScriptResultMessage> result = new brovia::RunJavaScriptResultMessage();
    result->replyTo = (int64_t(1) << 40) + 3;
    result->result = CefValue::Create();
    result->result->SetString("done");
    ASSERT_TRUE(result->send(nullptr, frame));
    EXPECT_EQ(frame->sent.back().first, PID_BROWSER);
    EXPECT_EQ(frame->sent.back().second->GetName().ToString(), "runJavaScriptResult");
    CefRefPtr<brovia::RunJavaScriptResultMessage> answer = new brovia::RunJavaScriptResultMessage();
    ASSERT_TRUE(answer->fromProcessMessage(frame->sent.back().second));
    EXPECT_EQ(answer->replyTo, result->replyTo);
    EXPECT_EQ(answer->result->GetString().ToString(), "done");

    // A page call answered through reply(), which knows the call.
    CefRefPtr<brovia::CefClientMessage> call = new brovia::CefClientMessage();
    call->method = "setZoomLevel";
    call->args = CefListValue::Create();
    CefRefPtr<CefListValue> inner = CefListValue::Create();
    inner->SetInt(0, 150);
    call->args->SetList(0, inner);
    call->callId = 99;
    ASSERT_TRUE(call->send(nullptr, frame));
    CefRefPtr<brovia::CefClientMessage> heard = new brovia::CefClientMessage();
    ASSERT_TRUE(heard->fromProcessMessage(frame->sent.back().second));
    EXPECT_EQ(heard->method.ToString(), "setZoomLevel");
    EXPECT_EQ(heard->args->GetList(0)->GetInt(0), 150);
    EXPECT_EQ(heard->reply()->callId, 99);

    // Wrong name or wrong types: false, and the fields keep their defaults.
    CefRefPtr<brovia::FocusedNodeChangedMessage> focus = new brovia::FocusedNodeChangedMessage();
    EXPECT_FALSE(focus->fromProcessMessage(frame->sent.back().second));
    CefRefPtr<CefProcessMessage> broken = CefProcessMessage::Create("focusedNodeChanged");
    broken->GetArgumentList()->SetString(0, "yes");
    EXPECT_FALSE(focus->fromProcessMessage(broken));
    EXPECT_FALSE(focus->editable);
    CefRefPtr<CefProcessMessage> noArguments = CefProcessMessage::Create("runJavaScript");
    CefRefPtr<brovia::RunJavaScriptMessage> empty = new brovia::RunJavaScriptMessage();
    EXPECT_FALSE(empty->fromProcessMessage(noArguments));
    EXPECT_EQ(empty->requestId, 0);
}
