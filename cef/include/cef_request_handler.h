// Navigation, authentication, certificates and render process health of a
// browser. Per-request hooks live in CefResourceRequestHandler.

#ifndef CEF_INCLUDE_CEF_REQUEST_HANDLER_H_
#define CEF_INCLUDE_CEF_REQUEST_HANDLER_H_
#pragma once

#include <vector>

#include "include/cef_auth_callback.h"
#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_callback.h"
#include "include/cef_frame.h"
#include "include/cef_request.h"
#include "include/cef_resource_request_handler.h"
#include "include/cef_ssl_info.h"
#include "include/cef_unresponsive_process_callback.h"
#include "include/cef_x509_certificate.h"

// Picks a client certificate; null continues without one.
class CefSelectClientCertificateCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Select(CefRefPtr<CefX509Certificate> cert) = 0;
};

// Called on the UI thread unless noted.
class CefRequestHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_termination_status_t TerminationStatus;
  typedef cef_window_open_disposition_t WindowOpenDisposition;
  typedef std::vector<CefRefPtr<CefX509Certificate>> X509CertificateList;

  // Before |frame| navigates to |request| (read-only here). True cancels the
  // navigation, which then ends in OnLoadError with ERR_ABORTED.
  virtual bool OnBeforeBrowse(CefRefPtr<CefBrowser> browser,
                              CefRefPtr<CefFrame> frame,
                              CefRefPtr<CefRequest> request,
                              bool user_gesture,
                              bool is_redirect) {
    return false;
  }

  // A navigation that might rather open elsewhere (middle click, ctrl+click,
  // some cross-origin cases), before OnBeforeBrowse. True cancels it; false
  // lets it go on in this browser's main frame.
  virtual bool OnOpenURLFromTab(CefRefPtr<CefBrowser> browser,
                                CefRefPtr<CefFrame> frame,
                                const CefString& target_url,
                                WindowOpenDisposition target_disposition,
                                bool user_gesture) {
    return false;
  }

  // IO thread, before a request starts; see
  // CefRequestContextHandler::GetResourceRequestHandler, which is asked when
  // this returns null.
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

  // IO thread: a server or proxy (|isProxy|) wants credentials. True if the
  // client answers |callback| (now or later); false cancels the request.
  virtual bool GetAuthCredentials(CefRefPtr<CefBrowser> browser,
                                  const CefString& origin_url,
                                  bool isProxy,
                                  const CefString& host,
                                  int port,
                                  const CefString& realm,
                                  const CefString& scheme,
                                  CefRefPtr<CefAuthCallback> callback) {
    return false;
  }

  // A request met an invalid certificate. True if the client continues or
  // cancels |callback| (now or later); false cancels at once. Not called
  // when the settings ignore certificate errors.
  virtual bool OnCertificateError(CefRefPtr<CefBrowser> browser,
                                  cef_errorcode_t cert_error,
                                  const CefString& request_url,
                                  CefRefPtr<CefSSLInfo> ssl_info,
                                  CefRefPtr<CefCallback> callback) {
    return false;
  }

  // A server or proxy asks for a client certificate among |certificates|.
  // False picks the first one; true if the client answers |callback|.
  virtual bool OnSelectClientCertificate(
      CefRefPtr<CefBrowser> browser,
      bool isProxy,
      const CefString& host,
      int port,
      const X509CertificateList& certificates,
      CefRefPtr<CefSelectClientCertificateCallback> callback) {
    return false;
  }

  // The render view can now take messages.
  virtual void OnRenderViewReady(CefRefPtr<CefBrowser> browser) {}

  // The render process has not handled input for a while. False keeps
  // waiting (or, in Chrome style, shows Chrome's dialog); true if the
  // client decides through |callback|, or never answers to wait silently.
  virtual bool OnRenderProcessUnresponsive(
      CefRefPtr<CefBrowser> browser,
      CefRefPtr<CefUnresponsiveProcessCallback> callback) {
    return false;
  }

  // The process responds again after OnRenderProcessUnresponsive.
  virtual void OnRenderProcessResponsive(CefRefPtr<CefBrowser> browser) {}

  // The render process ended unexpectedly; |error_code| is an exit code or
  // signal number.
  virtual void OnRenderProcessTerminated(CefRefPtr<CefBrowser> browser,
                                         TerminationStatus status,
                                         int error_code,
                                         const CefString& error_string) {}

  // The main frame's document object exists.
  virtual void OnDocumentAvailableInMainFrame(CefRefPtr<CefBrowser> browser) {}
};

#endif  // CEF_INCLUDE_CEF_REQUEST_HANDLER_H_
