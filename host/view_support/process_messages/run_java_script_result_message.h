#pragma once

#include "host/view_support/process_messages/process_message.h"

namespace brovia
{
// Render side to browser: the value of one evaluated script; null when it threw.
class RunJavaScriptResultMessage : public ProcessMessage
{
public:
    static constexpr const char* kName = "runJavaScriptResult";

    int64_t replyTo = 0;
    CefRefPtr<CefValue> result;

    bool fromProcessMessage(CefRefPtr<CefProcessMessage> message) override
    {
        return readNumberedValue(message, kName, replyTo, result);
    }

    bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) override
    {
        return post(frame, PID_BROWSER, numberedValue(kName, replyTo, result));
    }
};
} // namespace brovia
