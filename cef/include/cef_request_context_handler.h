// Client callbacks of one request context. Every method has a default.

#ifndef CEF_INCLUDE_CEF_REQUEST_CONTEXT_HANDLER_H_
#define CEF_INCLUDE_CEF_REQUEST_CONTEXT_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_preference.h"
#include "include/cef_request.h"
#include "include/cef_resource_request_handler.h"

class CefRequestContextHandler : public virtual CefBaseRefCounted {
 public:
  // The context is ready for use. Called on the UI thread.
  virtual void OnRequestContextInitialized(
      CefRefPtr<CefRequestContext> request_context) {}

  // Called on the IO thread before a request of this context starts, when the
  // browser's own client has no handler for it. |browser| and |frame| are null
  // for requests that no browser made. Setting |disable_default_handling|
  // fails an unhandled request instead of sending it to the network.
  virtual CefRefPtr<CefResourceRequestHandler> GetResourceRequestHandler(
      CefRefPtr<CefBrowser> browser,
      CefRefPtr<CefFrame> frame,
      CefRefPtr<CefRequest> request,
      bool is_navigation,
      bool is_download,
      const CefString& request_initiator,
      bool& disable_default_handling) {
    return nullptr;
  }
};

#endif  // CEF_INCLUDE_CEF_REQUEST_CONTEXT_HANDLER_H_
