#include "client/run_java_script_callback.h"

#include <QCoreApplication>
#include <QThread>

void RunJavaScriptCallback::setMode(int mode)
{
    QWriteLocker locker(&m_lock);
    m_mode = mode;
}

void RunJavaScriptCallback::setId(qlonglong id)
{
    QWriteLocker locker(&m_lock);
    m_id = id;
}

qlonglong RunJavaScriptCallback::id()
{
    QReadLocker locker(&m_lock);
    return m_id;
}

void RunJavaScriptCallback::setCallback(std::function<void(const QVariant&)> callback)
{
    QWriteLocker locker(&m_lock);
    // The old function goes when the swapped-out copy leaves this scope.
    std::swap(m_callback, callback);
}

void RunJavaScriptCallback::cancel()
{
    QWriteLocker locker(&m_lock);
    m_callback = nullptr;
    Q_EMIT finished(m_id);
}

void RunJavaScriptCallback::execute(QVariant result)
{
    if (m_mode == DeliverOnMainThread && QCoreApplication::instance() &&
        QThread::currentThread() != QCoreApplication::instance()->thread())
    {
        QMetaObject::invokeMethod(this, "execute", Qt::QueuedConnection, Q_ARG(QVariant, result));
        return;
    }
    QReadLocker locker(&m_lock);
    if (m_callback)
        m_callback(result);
    Q_EMIT finished(m_id);
}
