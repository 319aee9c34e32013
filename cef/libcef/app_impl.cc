// The process-wide entry points of cef_app.h.

#include "include/cef_app.h"

#include "libcef/browser/browser_registry.h"
#include "libcef/context.h"

// Sub-processes are Chromium's own, never a copy of the host: the host's
// process is always the browser process.
int CefExecuteProcess(const CefMainArgs& args,
                      CefRefPtr<CefApp> application,
                      void* windows_sandbox_info) {
  return -1;
}

bool CefInitialize(const CefMainArgs& args,
                   const CefSettings& settings,
                   CefRefPtr<CefApp> application,
                   void* windows_sandbox_info) {
  if (!cefengine::Context::Get()->Initialize(args, settings, application)) {
    return false;
  }
  // Chromium takes a while to come up: the first browser finds it running,
  // or under way. Only beside an engine UI thread of its own: a host that
  // runs the UI loop itself is not woken by a Chromium no browser uses yet.
  if (settings.multi_threaded_message_loop) {
    cefengine::BrowserRegistry::Get().StartEarly();
  }
  return true;
}

int CefGetExitCode() {
  return cefengine::Context::Get()->exit_code();
}

void CefShutdown() {
  cefengine::Context::Get()->Shutdown();
}

void CefDoMessageLoopWork() {
  cefengine::Context::Get()->DoMessageLoopWork();
}

void CefRunMessageLoop() {
  cefengine::Context::Get()->RunMessageLoop();
}

void CefQuitMessageLoop() {
  cefengine::Context::Get()->QuitMessageLoop();
}
