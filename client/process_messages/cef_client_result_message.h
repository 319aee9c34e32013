#pragma once

#include "client/process_messages/process_message.h"

namespace brovia
{
// Browser to render side: the answer to one page call (CefClientMessage::reply).
class CefClientResultMessage : public ProcessMessage
{
public:
    static constexpr const char* kName = "cefclientResult";

    // Which call of the page this answers.
    int64_t callId = 0;
    CefRefPtr<CefValue> result;

    bool fromProcessMessage(CefRefPtr<CefProcessMessage> message) override
    {
        if (!message || message->GetName().ToString() != kName)
            return false;
        CefRefPtr<CefListValue> args = message->GetArgumentList();
        const bool numbered = getInt64(args, 0, callId);
        if (args->GetSize() > 1)
            result = args->GetValue(1);
        return numbered;
    }

    bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) override
    {
        CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create(kName);
        CefRefPtr<CefListValue> args = message->GetArgumentList();
        setInt64(args, 0, callId);
        if (result)
            args->SetValue(1, result);
        else
            args->SetNull(1);
        return post(frame, PID_RENDERER, message);
    }
};
} // namespace brovia
