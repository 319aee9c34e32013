#pragma once

#include "client/process_messages/process_message.h"

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
        if (!message || message->GetName().ToString() != kName)
            return false;
        CefRefPtr<CefListValue> args = message->GetArgumentList();
        const bool numbered = getInt64(args, 0, replyTo);
        if (args->GetSize() > 1)
            result = args->GetValue(1);
        return numbered;
    }

    bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) override
    {
        CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create(kName);
        CefRefPtr<CefListValue> args = message->GetArgumentList();
        setInt64(args, 0, replyTo);
        if (result)
            args->SetValue(1, result);
        else
            args->SetNull(1);
        return post(frame, PID_BROWSER, message);
    }
};
} // namespace brovia
