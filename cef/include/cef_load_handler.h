// Page load progress of a browser and its frames.

#ifndef CEF_INCLUDE_CEF_LOAD_HANDLER_H_
#define CEF_INCLUDE_CEF_LOAD_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"

// Called on the UI thread in the browser process, or on the render thread
// when handed out by CefRenderProcessHandler.
class CefLoadHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_errorcode_t ErrorCode;
  typedef cef_transition_type_t TransitionType;

  // Loading started or stopped, with the history state at that moment.
  // Comes before OnLoadStart and after OnLoadEnd/OnLoadError.
  virtual void OnLoadingStateChange(CefRefPtr<CefBrowser> browser,
                                    bool isLoading,
                                    bool canGoBack,
                                    bool canGoForward) {}

  // A navigation of |frame| has committed and its document begins to load.
  // Not called for same-document navigations or failed loads.
  virtual void OnLoadStart(CefRefPtr<CefBrowser> browser,
                           CefRefPtr<CefFrame> frame,
                           TransitionType transition_type) {}

  // |frame| has finished loading, subresources included.
  virtual void OnLoadEnd(CefRefPtr<CefBrowser> browser,
                         CefRefPtr<CefFrame> frame,
                         int httpStatusCode) {}

  // A navigation failed or was cancelled.
  virtual void OnLoadError(CefRefPtr<CefBrowser> browser,
                           CefRefPtr<CefFrame> frame,
                           ErrorCode errorCode,
                           const CefString& errorText,
                           const CefString& failedUrl) {}
};

#endif  // CEF_INCLUDE_CEF_LOAD_HANDLER_H_
