#pragma once

#include "include/cef_browser_process_handler.h"

#include <QObject>

#include <cstdint>

// The engine's browser-process handler: turns pump requests into a Qt signal.
class BrowserProcessHandler : public QObject, public CefBrowserProcessHandler
{
    Q_OBJECT

public:
    BrowserProcessHandler() = default;

    // Any thread: the engine asks for a pass of message loop work within delay_ms.
    void OnScheduleMessagePumpWork(int64_t delay_ms) override;

Q_SIGNALS:
    void scheduleMessagePumpWork(int64_t delay_ms);

private:
    IMPLEMENT_REFCOUNTING(BrowserProcessHandler);
};
