// Custom URL schemes: registration at start-up and global handler factories.

#ifndef CEF_INCLUDE_CEF_SCHEME_H_
#define CEF_INCLUDE_CEF_SCHEME_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_request.h"
#include "include/cef_resource_handler.h"
#include "include/cef_response.h"

class CefSchemeHandlerFactory;

// Registers |factory| for |scheme_name| and, for standard schemes, the host
// |domain_name| (empty: all hosts). A null |factory| removes the entry.
// Replaces an earlier factory of the same pair. False before CefInitialize
// or after CefShutdown.
bool CefRegisterSchemeHandlerFactory(
    const CefString& scheme_name,
    const CefString& domain_name,
    CefRefPtr<CefSchemeHandlerFactory> factory);

// Removes every factory registered with CefRegisterSchemeHandlerFactory.
bool CefClearSchemeHandlerFactories();

// Given to CefApp::OnRegisterCustomSchemes; valid only during that call.
class CefSchemeRegistrar : public CefBaseScoped {
 public:
  // |options| is a combination of cef_scheme_options_t. False if the scheme
  // is built in or already registered.
  virtual bool AddCustomScheme(const CefString& scheme_name, int options) = 0;
};

// Makes the handler of one request of a scheme. Called on the IO thread.
class CefSchemeHandlerFactory : public virtual CefBaseRefCounted {
 public:
  // |browser| and |frame| are null for requests that no browser made.
  virtual CefRefPtr<CefResourceHandler> Create(
      CefRefPtr<CefBrowser> browser,
      CefRefPtr<CefFrame> frame,
      const CefString& scheme_name,
      CefRefPtr<CefRequest> request) = 0;
};

#endif  // CEF_INCLUDE_CEF_SCHEME_H_
