#pragma once

#include "host/view_support/process_messages/process_message.h"

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
        return readNumberedValue(message, kName, callId, result);
    }

    bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) override
    {
        return post(frame, PID_RENDERER, numberedValue(kName, callId, result));
    }
};
} // namespace brovia
