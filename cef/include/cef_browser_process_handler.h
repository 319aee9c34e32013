// Browser-process callbacks of the application.

#ifndef CEF_INCLUDE_CEF_BROWSER_PROCESS_HANDLER_H_
#define CEF_INCLUDE_CEF_BROWSER_PROCESS_HANDLER_H_
#pragma once

#include <cstdint>

#include "include/cef_base.h"
#include "include/cef_client.h"
#include "include/cef_command_line.h"
#include "include/cef_preference.h"
#include "include/cef_request_context_handler.h"
#include "include/cef_values.h"

class CefBrowserProcessHandler : public virtual CefBaseRefCounted {
 public:
  // Registers preferences of the global (CEF_PREFERENCES_TYPE_GLOBAL) or
  // per-context kind. Called on the UI thread while the context starts.
  virtual void OnRegisterCustomPreferences(
      cef_preferences_type_t type,
      CefRawPtr<CefPreferenceRegistrar> registrar) {}

  // The engine is up. Called once, on the UI thread.
  virtual void OnContextInitialized() {}

  // Last chance to change the command line of a child process.
  virtual void OnBeforeChildProcessLaunch(
      CefRefPtr<CefCommandLine> command_line) {}

  // Another instance of the application was started with the same cache
  // directory; true if this instance handled it.
  virtual bool OnAlreadyRunningAppRelaunch(
      CefRefPtr<CefCommandLine> command_line,
      const CefString& current_directory) {
    return false;
  }

  // With an external message pump: CefDoMessageLoopWork() should run on the
  // main thread after |delay_ms| (0 or less: as soon as possible). May be
  // called on any thread.
  virtual void OnScheduleMessagePumpWork(int64_t delay_ms) {}

  // The client of browsers created without one.
  virtual CefRefPtr<CefClient> GetDefaultClient() { return nullptr; }

  // The handler of request contexts created without one.
  virtual CefRefPtr<CefRequestContextHandler>
  GetDefaultRequestContextHandler() {
    return nullptr;
  }
};

#endif  // CEF_INCLUDE_CEF_BROWSER_PROCESS_HANDLER_H_
