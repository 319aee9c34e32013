// Process-wide start-up and shutdown of the engine, and the application
// object that customises it.

#ifndef CEF_INCLUDE_CEF_APP_H_
#define CEF_INCLUDE_CEF_APP_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser_process_handler.h"
#include "include/cef_command_line.h"
#include "include/cef_render_process_handler.h"
#include "include/cef_resource_bundle_handler.h"
#include "include/cef_scheme.h"

class CefApp;

// For a sub-process started by the engine, runs it and returns its exit code;
// in the browser process returns -1 at once.
int CefExecuteProcess(const CefMainArgs& args,
                      CefRefPtr<CefApp> application,
                      void* windows_sandbox_info);

// Starts the engine. Once per process, on the main thread. False if it was
// already called, or the engine cannot start.
bool CefInitialize(const CefMainArgs& args,
                   const CefSettings& settings,
                   CefRefPtr<CefApp> application,
                   void* windows_sandbox_info);

// The result of CefInitialize as a cef_resultcode_t: 0 after success.
int CefGetExitCode();

// Stops the engine. On the thread that called CefInitialize; no task runs
// afterwards.
void CefShutdown();

// One pass of the UI message loop. For hosts with their own loop
// (multi_threaded_message_loop off), on the thread that called CefInitialize.
void CefDoMessageLoopWork();

// Runs the UI message loop until CefQuitMessageLoop. Same thread rules as
// CefDoMessageLoopWork.
void CefRunMessageLoop();

// Makes CefRunMessageLoop return.
void CefQuitMessageLoop();

// The application's hooks. Every method may be called on any thread.
class CefApp : public virtual CefBaseRefCounted {
 public:
  // Adjusts the command line of a process before the engine reads it.
  // |process_type| is empty for the browser process.
  virtual void OnBeforeCommandLineProcessing(
      const CefString& process_type,
      CefRefPtr<CefCommandLine> command_line) {}

  // Registers custom schemes, the same way in every process.
  virtual void OnRegisterCustomSchemes(
      CefRawPtr<CefSchemeRegistrar> registrar) {}

  virtual CefRefPtr<CefResourceBundleHandler> GetResourceBundleHandler() {
    return nullptr;
  }

  virtual CefRefPtr<CefBrowserProcessHandler> GetBrowserProcessHandler() {
    return nullptr;
  }

  virtual CefRefPtr<CefRenderProcessHandler> GetRenderProcessHandler() {
    return nullptr;
  }
};

#endif  // CEF_INCLUDE_CEF_APP_H_
