#pragma once

#include "host/view_support/process_messages/process_message.h"

namespace brovia
{
// Browser to render side: have the page repainted; answered by RepaintSyncResultMessage.
class RepaintSyncMessage : public TargetedMessage
{
public:
    static constexpr const char* kName = "repaintSync";

    bool fromProcessMessage(CefRefPtr<CefProcessMessage> message) override
    {
        return message && message->GetName().ToString() == kName && readTarget(message->GetArgumentList());
    }

    bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) override
    {
        requestId = nextRequestId();
        CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create(kName);
        writeTarget(message->GetArgumentList());
        return post(frame, PID_RENDERER, message);
    }
};
} // namespace brovia
