#pragma once

#include "engine/browser_app.h"
#include "engine/cef_manager.h"
#include "engine/message_pump.h"

// Reads the private state of the engine's lifecycle classes for the tests.
class CCefManagerTestAccess
{
public:
    static int state() { return CCefManager::getInstance().m_state; }
    static BrowserApp* app() { return CCefManager::getInstance().m_app.get(); }
    static void shutdown() { CCefManager::getInstance().shutdownCef(); }
};

class BrowserAppTestAccess
{
public:
    static int initValue(const BrowserApp& app) { return app.m_initValue; }
    static MessagePump* pump(const BrowserApp& app) { return app.m_messagePump.get(); }
    static void schedule(BrowserApp& app, int64_t delay) { app.onScheduleMessagePumpWork(delay); }
};

class MessagePumpTestAccess
{
public:
    static int state(const MessagePump& pump) { return pump.m_state; }
    static const QTimer& timer(const MessagePump& pump) { return pump.m_timer; }
};
