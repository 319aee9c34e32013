#pragma once

#include "include/cef_base.h"

#include <QObject>
#include <QTimer>

#include <cstdint>

// Runs the engine's message loop work from the Qt event loop, for an engine started with an
// external message pump. Qt main thread only; the state value 2 guards against re-entry from a
// nested event loop.
class MessagePump : public QObject, public CefBaseRefCounted
{
    Q_OBJECT

public:
    explicit MessagePump(int64_t maxDelay);
    ~MessagePump() override;

    void stop();

public Q_SLOTS:
    // Asks for a pass within delay_ms; negative or 0 means a queued pass at once.
    void scheduleWork(int64_t delay_ms);
    // One pass of engine work, then re-arms itself.
    void doWork();

private:
    // 0 constructed, 1 armed, 2 inside the engine's work, 3 stopped for good.
    int m_state = 0;
    QTimer m_timer;
    int64_t m_maxDelay;

    IMPLEMENT_REFCOUNTING(MessagePump);
    friend class MessagePumpTestAccess;
};
