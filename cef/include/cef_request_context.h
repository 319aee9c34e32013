// A request context: an isolated set of storage (cache, cookies, preferences)
// shared by the browsers created with it.

#ifndef CEF_INCLUDE_CEF_REQUEST_CONTEXT_H_
#define CEF_INCLUDE_CEF_REQUEST_CONTEXT_H_
#pragma once

#include <vector>

#include "include/cef_base.h"
#include "include/cef_callback.h"
#include "include/cef_preference.h"
#include "include/cef_values.h"

class CefCookieManager;
class CefMediaRouter;
class CefRequestContextHandler;
class CefSchemeHandlerFactory;

// Receives the outcome of CefRequestContext::ResolveHost.
class CefResolveCallback : public virtual CefBaseRefCounted {
 public:
  // |result| is ERR_NONE on success, with the addresses in |resolved_ips|.
  virtual void OnResolveCompleted(
      cef_errorcode_t result,
      const std::vector<CefString>& resolved_ips) = 0;
};

class CefRequestContext : public CefPreferenceManager {
 public:
  // The context used when a browser is created without one. Any thread.
  static CefRefPtr<CefRequestContext> GetGlobalContext();
  // A new context; an empty |settings.cache_path| keeps it in memory.
  static CefRefPtr<CefRequestContext> CreateContext(
      const CefRequestContextSettings& settings,
      CefRefPtr<CefRequestContextHandler> handler);
  // A new context sharing the storage of |other|.
  static CefRefPtr<CefRequestContext> CreateContext(
      CefRefPtr<CefRequestContext> other,
      CefRefPtr<CefRequestContextHandler> handler);

  // True if both point at the same context object.
  virtual bool IsSame(CefRefPtr<CefRequestContext> other) = 0;
  // True if both share the same storage.
  virtual bool IsSharingWith(CefRefPtr<CefRequestContext> other) = 0;
  virtual bool IsGlobal() = 0;
  virtual CefRefPtr<CefRequestContextHandler> GetHandler() = 0;
  // Empty for an in-memory context.
  virtual CefString GetCachePath() = 0;
  virtual CefRefPtr<CefCookieManager> GetCookieManager(
      CefRefPtr<CefCompletionCallback> callback) = 0;

  // Factories for a scheme, optionally for one domain only. A null |factory|
  // removes the registration.
  virtual bool RegisterSchemeHandlerFactory(
      const CefString& scheme_name,
      const CefString& domain_name,
      CefRefPtr<CefSchemeHandlerFactory> factory) = 0;
  virtual bool ClearSchemeHandlerFactories() = 0;

  virtual void ClearCertificateExceptions(
      CefRefPtr<CefCompletionCallback> callback) = 0;
  virtual void ClearHttpAuthCredentials(
      CefRefPtr<CefCompletionCallback> callback) = 0;
  virtual void CloseAllConnections(
      CefRefPtr<CefCompletionCallback> callback) = 0;
  virtual void ResolveHost(const CefString& origin,
                           CefRefPtr<CefResolveCallback> callback) = 0;
  virtual CefRefPtr<CefMediaRouter> GetMediaRouter(
      CefRefPtr<CefCompletionCallback> callback) = 0;

  // Per-site settings; both URLs may be empty to address the default.
  virtual CefRefPtr<CefValue> GetWebsiteSetting(
      const CefString& requesting_url,
      const CefString& top_level_url,
      cef_content_setting_types_t content_type) = 0;
  virtual void SetWebsiteSetting(const CefString& requesting_url,
                                 const CefString& top_level_url,
                                 cef_content_setting_types_t content_type,
                                 CefRefPtr<CefValue> value) = 0;
  virtual cef_content_setting_values_t GetContentSetting(
      const CefString& requesting_url,
      const CefString& top_level_url,
      cef_content_setting_types_t content_type) = 0;
  virtual void SetContentSetting(const CefString& requesting_url,
                                 const CefString& top_level_url,
                                 cef_content_setting_types_t content_type,
                                 cef_content_setting_values_t value) = 0;

  // Colour scheme of Chrome-style browsers created with this context.
  virtual void SetChromeColorScheme(cef_color_variant_t variant,
                                    cef_color_t user_color) = 0;
  virtual cef_color_variant_t GetChromeColorSchemeMode() = 0;
  virtual cef_color_t GetChromeColorSchemeColor() = 0;
  virtual cef_color_variant_t GetChromeColorSchemeVariant() = 0;
};

#endif  // CEF_INCLUDE_CEF_REQUEST_CONTEXT_H_
