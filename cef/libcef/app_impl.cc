// The process-wide entry points of cef_app.h.

#include "include/cef_app.h"

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
  return cefengine::Context::Get()->Initialize(args, settings, application);
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
