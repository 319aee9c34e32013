#include "engine/message_pump.h"

#include "include/cef_app.h"

MessagePump::MessagePump(int64_t maxDelay)
    : m_maxDelay(maxDelay)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::CoarseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, this, &MessagePump::doWork, Qt::AutoConnection);
}

MessagePump::~MessagePump()
{
    stop();
}

void MessagePump::scheduleWork(int64_t delay_ms)
{
    if (m_state == 3)
        return;
    m_state = 1;
    // A pending timer is kept, even when the new request is sooner.
    if (m_timer.isActive())
        return;
    if (delay_ms >= 0)
    {
        const int64_t delay = delay_ms > m_maxDelay ? m_maxDelay : delay_ms;
        if (delay != 0)
        {
            m_timer.start(static_cast<int>(delay));
            return;
        }
    }
    QMetaObject::invokeMethod(this, "doWork", Qt::QueuedConnection);
}

void MessagePump::doWork()
{
    if (m_state == 2)
    {
        // A nested event loop inside the engine's work reached us: come back later.
        QMetaObject::invokeMethod(this, "doWork", Qt::QueuedConnection);
        return;
    }
    if (m_state != 1)
        return;
    m_state = 2;
    CefDoMessageLoopWork();
    m_state = 1;
    // Never fall asleep: at the latest after m_maxDelay the pump runs again.
    scheduleWork(m_maxDelay);
}

void MessagePump::stop()
{
    m_timer.stop();
    m_state = 3;
}
