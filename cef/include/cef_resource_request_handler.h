// Per-request hooks of resource loading: the engine asks a CefResourceRequestHandler about each
// request of a browser (before it starts, when it is redirected, when its response arrives and
// when it ends) and a CefCookieAccessFilter about each cookie that a request would send or save.
// Unless noted, the engine calls these on its IO thread. A browser or frame argument is null for
// requests that no page started (service workers, CefURLRequest).

#ifndef CEF_INCLUDE_CEF_RESOURCE_REQUEST_HANDLER_H_
#define CEF_INCLUDE_CEF_RESOURCE_REQUEST_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_callback.h"
#include "include/cef_frame.h"
#include "include/cef_request.h"
#include "include/cef_resource_handler.h"
#include "include/cef_response.h"
#include "include/cef_response_filter.h"
#include "include/internal/cef_types_wrappers.h"

class CefCookieAccessFilter;

class CefResourceRequestHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_return_value_t ReturnValue;
  typedef cef_urlrequest_status_t URLRequestStatus;

  // A filter for the cookies of |request|, or null to let all of them
  // through. |request| is read-only here.
  virtual CefRefPtr<CefCookieAccessFilter> GetCookieAccessFilter(
      CefRefPtr<CefBrowser> browser,
      CefRefPtr<CefFrame> frame,
      CefRefPtr<CefRequest> request) {
    return nullptr;
  }

  // Before the request starts. |request| may be changed; a changed URL counts
  // as a redirect. RV_CONTINUE lets it go on at once, RV_CANCEL stops it, and
  // RV_CONTINUE_ASYNC defers the decision to |callback|.
  virtual ReturnValue OnBeforeResourceLoad(CefRefPtr<CefBrowser> browser,
                                           CefRefPtr<CefFrame> frame,
                                           CefRefPtr<CefRequest> request,
                                           CefRefPtr<CefCallback> callback) {
    return RV_CONTINUE;
  }

  // A handler that serves the request in place of the network, or null for
  // the default loader. |request| is read-only here.
  virtual CefRefPtr<CefResourceHandler> GetResourceHandler(
      CefRefPtr<CefBrowser> browser,
      CefRefPtr<CefFrame> frame,
      CefRefPtr<CefRequest> request) {
    return nullptr;
  }

  // The load is being redirected by |response|; |new_url| may be changed.
  // |request| still holds the old URL; neither it nor |response| may be
  // changed.
  virtual void OnResourceRedirect(CefRefPtr<CefBrowser> browser,
                                  CefRefPtr<CefFrame> frame,
                                  CefRefPtr<CefRequest> request,
                                  CefRefPtr<CefResponse> response,
                                  CefString& new_url) {}

  // The response has arrived. Return true after changing |request| to retry
  // or redirect it (not possible for the default loader; deprecated), false
  // to go on unchanged.
  virtual bool OnResourceResponse(CefRefPtr<CefBrowser> browser,
                                  CefRefPtr<CefFrame> frame,
                                  CefRefPtr<CefRequest> request,
                                  CefRefPtr<CefResponse> response) {
    return false;
  }

  // A filter for the response body, or null to leave it as it is.
  virtual CefRefPtr<CefResponseFilter> GetResourceResponseFilter(
      CefRefPtr<CefBrowser> browser,
      CefRefPtr<CefFrame> frame,
      CefRefPtr<CefRequest> request,
      CefRefPtr<CefResponse> response) {
    return nullptr;
  }

  // The request has ended with |status| after |received_content_length|
  // bytes, also when it was aborted by shutdown or by the browser's
  // destruction (then possibly after the browser's OnBeforeClose; check
  // CefFrame::IsValid before using the frame).
  virtual void OnResourceLoadComplete(CefRefPtr<CefBrowser> browser,
                                      CefRefPtr<CefFrame> frame,
                                      CefRefPtr<CefRequest> request,
                                      CefRefPtr<CefResponse> response,
                                      URLRequestStatus status,
                                      int64_t received_content_length) {}

  // The request's scheme is unknown to the engine. Setting
  // |allow_os_execution| to true hands the URL to the system's protocol
  // handler; check the URL before doing so.
  virtual void OnProtocolExecution(CefRefPtr<CefBrowser> browser,
                                   CefRefPtr<CefFrame> frame,
                                   CefRefPtr<CefRequest> request,
                                   bool& allow_os_execution) {}
};

// Decides on the cookies of resource requests. Engine IO thread.
class CefCookieAccessFilter : public virtual CefBaseRefCounted {
 public:
  // Whether |cookie| may go out with |request|.
  virtual bool CanSendCookie(CefRefPtr<CefBrowser> browser,
                             CefRefPtr<CefFrame> frame,
                             CefRefPtr<CefRequest> request,
                             const CefCookie& cookie) {
    return true;
  }

  // Whether |cookie|, set by |response|, may be stored.
  virtual bool CanSaveCookie(CefRefPtr<CefBrowser> browser,
                             CefRefPtr<CefFrame> frame,
                             CefRefPtr<CefRequest> request,
                             CefRefPtr<CefResponse> response,
                             const CefCookie& cookie) {
    return true;
  }
};

#endif  // CEF_INCLUDE_CEF_RESOURCE_REQUEST_HANDLER_H_
