#pragma once

#include "include/cef_base.h"

#include <QObject>
#include <QReadWriteLock>
#include <QVariant>

#include <functional>

// The waiter of one script: the user's function and the thread it runs on. Create it on the Qt
// main thread when it delivers there.
class RunJavaScriptCallback : public QObject, public CefBaseRefCounted
{
    Q_OBJECT

public:
    enum Mode
    {
        DeliverOnMainThread = 0,
        DeliverOnAnyThread = 1,
    };

    void setMode(int mode);
    void setId(qlonglong id);
    qlonglong id();
    void setCallback(std::function<void(const QVariant&)> callback);

    // The waiter gave up: no function is called from now on. Waits for a call in progress, so
    // that the function's references may go once this returns. The waiter's thread.
    void cancel();


public Q_SLOTS:
    // Calls the function with the script's value, on the Qt main thread or right here by mode,
    // then raises finished.
    void execute(QVariant result);

Q_SIGNALS:
    void finished(qlonglong id);

private:
    QReadWriteLock m_lock;
    std::function<void(const QVariant&)> m_callback;
    int m_mode = DeliverOnMainThread;
    qlonglong m_id = -1;

    IMPLEMENT_REFCOUNTING(RunJavaScriptCallback);
};
