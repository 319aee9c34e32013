// Observer of the DevTools protocol traffic of one browser. Every method has
// a default that ignores the notification. Called on the UI thread.

#ifndef CEF_INCLUDE_CEF_DEVTOOLS_MESSAGE_OBSERVER_H_
#define CEF_INCLUDE_CEF_DEVTOOLS_MESSAGE_OBSERVER_H_
#pragma once

#include "include/cef_base.h"

class CefBrowser;

class CefDevToolsMessageObserver : public virtual CefBaseRefCounted {
 public:
  // Any raw protocol message (UTF-8 JSON, not NUL terminated). Returning true
  // means it was handled and the two callbacks below are skipped for it.
  virtual bool OnDevToolsMessage(CefRefPtr<CefBrowser> browser,
                                 const void* message,
                                 size_t message_size) {
    return false;
  }

  // The answer to a method call; |result| is the result or the error object.
  virtual void OnDevToolsMethodResult(CefRefPtr<CefBrowser> browser,
                                      int message_id,
                                      bool success,
                                      const void* result,
                                      size_t result_size) {}

  // A protocol event with its parameters object.
  virtual void OnDevToolsEvent(CefRefPtr<CefBrowser> browser,
                               const CefString& method,
                               const void* params,
                               size_t params_size) {}

  virtual void OnDevToolsAgentAttached(CefRefPtr<CefBrowser> browser) {}
  virtual void OnDevToolsAgentDetached(CefRefPtr<CefBrowser> browser) {}
};

#endif  // CEF_INCLUDE_CEF_DEVTOOLS_MESSAGE_OBSERVER_H_
