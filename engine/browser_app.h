#pragma once

#include "engine/browser_process_handler.h"
#include "engine/message_pump.h"

#include "include/cef_app.h"

#include <QObject>

#include <cstdint>

// The application object given to the engine: registers the custom scheme "error", lets the host
// adjust every process's command line, owns the browser-process handler and the optional message
// pump, and records start-up progress in the settings tree.
class BrowserApp : public QObject, public CefApp
{
    Q_OBJECT

public:
    BrowserApp();

    CefRefPtr<CefBrowserProcessHandler> GetBrowserProcessHandler() override;
    // Engine threads, during initialisation and at child-process launch; no state of this object.
    void OnRegisterCustomSchemes(CefRawPtr<CefSchemeRegistrar> registrar) override;
    void OnBeforeCommandLineProcessing(const CefString& process_type, CefRefPtr<CefCommandLine> command_line) override;

    // Qt main thread: records the start-up progress as "cefInit.InitValue" and the debugging port
    // as "cefInit.DebugPort".
    void setInitValue(int value);

    // Qt main thread: only an engine started with an external message pump needs these.
    void startMessagePump();
    void stopMessagePump();

private Q_SLOTS:
    void onScheduleMessagePumpWork(int64_t delay_ms);

private:
    CefRefPtr<BrowserProcessHandler> m_browserProcessHandler;
    CefRefPtr<MessagePump> m_messagePump;
    int m_initValue = 0;

    IMPLEMENT_REFCOUNTING(BrowserApp);
    friend class BrowserAppTestAccess;
};
