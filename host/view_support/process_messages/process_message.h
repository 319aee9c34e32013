#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_process_message.h"
#include "include/cef_values.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <string>

// The messages between the browser and the render side. Header-only: the render side, which
// lives in the engine with its own build, shares them as they are.
namespace brovia
{
// One message kind: named fields, filled from a received CefProcessMessage or sent as one.
// Message objects belong to one thread at a time (the engine UI thread on this side).
class ProcessMessage : public CefBaseRefCounted
{
public:
    // Fills the fields from message; false (the fields keep their defaults where the arguments
    // are missing or of another type) for a message that does not fit.
    virtual bool fromProcessMessage(CefRefPtr<CefProcessMessage> message) = 0;
    // True when the message left towards frame's other side.
    virtual bool send(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame) = 0;

protected:
    // A 64-bit number travels as its decimal text: a CEF list holds no 64-bit integer.
    static void setInt64(CefRefPtr<CefListValue> args, size_t index, int64_t value)
    {
        args->SetString(index, std::to_string(value));
    }
    static bool getInt64(CefRefPtr<CefListValue> args, size_t index, int64_t& value)
    {
        if (args->GetType(index) != VTYPE_STRING)
            return false;
        const std::string text = args->GetString(index).ToString();
        if (text.empty())
            return false;
        char* end = nullptr;
        const long long parsed = std::strtoll(text.c_str(), &end, 10);
        if (!end || *end != '\0')
            return false;
        value = parsed;
        return true;
    }
    // A numbered value: the number as argument 0, the value (null for none) as argument 1.
    static CefRefPtr<CefProcessMessage> numberedValue(const char* name, int64_t number, CefRefPtr<CefValue> value)
    {
        CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create(name);
        CefRefPtr<CefListValue> args = message->GetArgumentList();
        setInt64(args, 0, number);
        if (value)
            args->SetValue(1, value);
        else
            args->SetNull(1);
        return message;
    }
    // False for another name or a missing number; value is read when present.
    static bool readNumberedValue(CefRefPtr<CefProcessMessage> message, const char* name, int64_t& number,
                                  CefRefPtr<CefValue>& value)
    {
        if (!message || message->GetName().ToString() != name)
            return false;
        CefRefPtr<CefListValue> args = message->GetArgumentList();
        const bool numbered = getInt64(args, 0, number);
        if (args->GetSize() > 1)
            value = args->GetValue(1);
        return numbered;
    }
    // Sends message through frame towards process; false without a usable frame.
    static bool post(CefRefPtr<CefFrame> frame, cef_process_id_t process, CefRefPtr<CefProcessMessage> message)
    {
        if (!frame || !frame->IsValid())
            return false;
        frame->SendProcessMessage(process, message);
        return true;
    }

    IMPLEMENT_REFCOUNTING(ProcessMessage);
};

// The fields of a request that addresses one frame of one browser on the render side.
class TargetedMessage : public ProcessMessage
{
public:
    int32_t browserId = 0;
    CefString frameId;
    // Correlates the answer; readable once send returned true.
    int64_t requestId = 0;

protected:
    static int64_t nextRequestId()
    {
        static std::atomic<int64_t> next{1};
        return next.fetch_add(1, std::memory_order_relaxed);
    }
    // Arguments 0 to 2.
    void writeTarget(CefRefPtr<CefListValue> args) const
    {
        args->SetInt(0, browserId);
        args->SetString(1, frameId);
        setInt64(args, 2, requestId);
    }
    bool readTarget(CefRefPtr<CefListValue> args)
    {
        bool complete = true;
        if (args->GetType(0) == VTYPE_INT)
            browserId = args->GetInt(0);
        else
            complete = false;
        if (args->GetType(1) == VTYPE_STRING)
            frameId = args->GetString(1);
        else
            complete = false;
        return getInt64(args, 2, requestId) && complete;
    }
};
} // namespace brovia
