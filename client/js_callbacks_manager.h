#pragma once

#include "client/run_java_script_callback.h"

#include "include/cef_base.h"

#include <QObject>
#include <QVariant>

#include <mutex>
#include <unordered_map>

// Pending scripts by request id, from the send until the result was delivered. Results arrive
// on the engine UI thread; entries leave on the manager's own thread, queued.
class JSCallBacksManager : public QObject, public CefBaseRefCounted
{
    Q_OBJECT

public:
    ~JSCallBacksManager() override;


public Q_SLOTS:
    void onRunJavaScriptCallbackFinished(qlonglong id);
    // Delivers res to the callback of id, if it is pending; the callback's function may run
    // under the manager's lock and must not call back into it.
    void runCallback(qlonglong id, QVariant res);
    void addCallback(qlonglong id, CefRefPtr<RunJavaScriptCallback> cb);
    // Cuts every signal of the manager and of the pending callbacks; the map stays.
    void disconnectAll();

private:
    std::mutex m_mutex;
    std::unordered_map<qlonglong, CefRefPtr<RunJavaScriptCallback>> m_callbacks;

    IMPLEMENT_REFCOUNTING(JSCallBacksManager);
};
