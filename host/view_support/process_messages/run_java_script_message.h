#pragma once

#include "host/view_support/process_messages/process_message.h"

namespace brovia
{
// Browser to render side: evaluate script in the frame; answered by RunJavaScriptResultMessage.
class RunJavaScriptMessage : public TargetedMessage
{
public:
    static constexpr const char* kName = "runJavaScript";

    CefString script;

    bool fromProcessMessage(CefRefPtr<CefProcessMessage> message) override
    {
        if (!message || message->GetName().ToString() != kName)
            return false;
        CefRefPtr<CefListValue> args = message->GetArgumentList();
        const bool target = readTarget(args);
        if (args->GetType(3) != VTYPE_STRING)
            return false;
        script = args->GetString(3);
        return target;
    }

    bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) override
    {
        requestId = nextRequestId();
        CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create(kName);
        CefRefPtr<CefListValue> args = message->GetArgumentList();
        writeTarget(args);
        args->SetString(3, script);
        return post(frame, PID_RENDERER, message);
    }
};
} // namespace brovia
