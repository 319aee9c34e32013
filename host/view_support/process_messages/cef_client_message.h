#pragma once

#include "host/view_support/process_messages/cef_client_result_message.h"
#include "host/view_support/process_messages/process_message.h"

namespace brovia
{
// Render side to browser: a page's call of a host method. args holds one element, the list of
// the call's arguments.
class CefClientMessage : public ProcessMessage
{
public:
    static constexpr const char* kName = "cefclient";

    CefString method;
    CefRefPtr<CefListValue> args;
    // Which call of the page this is; 0 for a call that wants no answer.
    int64_t callId = 0;

    bool fromProcessMessage(CefRefPtr<CefProcessMessage> message) override
    {
        if (!message || message->GetName().ToString() != kName)
            return false;
        CefRefPtr<CefListValue> list = message->GetArgumentList();
        bool complete = true;
        if (list->GetType(0) == VTYPE_STRING)
            method = list->GetString(0);
        else
            complete = false;
        if (list->GetType(1) == VTYPE_LIST)
            args = list->GetList(1)->Copy();
        else
            complete = false;
        if (list->GetSize() > 2)
            complete = getInt64(list, 2, callId) && complete;
        return complete;
    }

    bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) override
    {
        CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create(kName);
        CefRefPtr<CefListValue> list = message->GetArgumentList();
        list->SetString(0, method);
        list->SetList(1, args ? args->Copy() : CefListValue::Create());
        setInt64(list, 2, callId);
        return post(frame, PID_BROWSER, message);
    }

    // An answer that already knows which call it answers; the caller sets result and sends it.
    CefRefPtr<CefClientResultMessage> reply() const
    {
        CefRefPtr<CefClientResultMessage> answer = new CefClientResultMessage();
        answer->callId = callId;
        return answer;
    }
};
} // namespace brovia
