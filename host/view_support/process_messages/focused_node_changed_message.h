#pragma once

#include "host/view_support/process_messages/process_message.h"

namespace brovia
{
// Render side to browser: the page's focus moved; whether the new node takes text.
class FocusedNodeChangedMessage : public ProcessMessage
{
public:
    static constexpr const char* kName = "focusedNodeChanged";

    bool editable = false;

    bool fromProcessMessage(CefRefPtr<CefProcessMessage> message) override
    {
        if (!message || message->GetName().ToString() != kName)
            return false;
        CefRefPtr<CefListValue> args = message->GetArgumentList();
        if (args->GetType(0) != VTYPE_BOOL)
            return false;
        editable = args->GetBool(0);
        return true;
    }

    bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) override
    {
        CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create(kName);
        message->GetArgumentList()->SetBool(0, editable);
        return post(frame, PID_BROWSER, message);
    }
};
} // namespace brovia
