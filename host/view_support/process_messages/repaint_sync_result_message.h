#pragma once

#include "host/view_support/process_messages/process_message.h"

namespace brovia
{
// Render side to browser: the repaint was requested. Its arrival is all it says.
class RepaintSyncResultMessage : public ProcessMessage
{
public:
    static constexpr const char* kName = "repaintSyncResult";

    bool fromProcessMessage(CefRefPtr<CefProcessMessage> message) override
    {
        return message && message->GetName().ToString() == kName;
    }

    bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) override
    {
        return post(frame, PID_BROWSER, CefProcessMessage::Create(kName));
    }
};
} // namespace brovia
