// A request context: a storage (one Chromium and its profile) seen through
// CefRequestContext, with the context's own handler and language list.

#ifndef CEF_LIBCEF_BROWSER_REQUEST_CONTEXT_IMPL_H_
#define CEF_LIBCEF_BROWSER_REQUEST_CONTEXT_IMPL_H_

#include <memory>
#include <string>

#include "include/cef_request_context.h"
#include "include/cef_request_context_handler.h"

namespace cefengine {

struct ContextStorage;

class RequestContextImpl : public CefRequestContext {
 public:
  // The global context over CefSettings' cache path.
  static CefRefPtr<RequestContextImpl> CreateGlobal();
  // |context| as ours, or the global context when null (or foreign).
  static CefRefPtr<RequestContextImpl> FromContext(
      CefRefPtr<CefRequestContext> context);

  RequestContextImpl(std::shared_ptr<ContextStorage> storage,
                     bool is_global,
                     std::string accept_language_list,
                     CefRefPtr<CefRequestContextHandler> handler);

  const std::shared_ptr<ContextStorage>& storage() const { return storage_; }
  // Comma-separated, as in the settings; empty leaves Chromium's default.
  const std::string& accept_language_list() const {
    return accept_language_list_;
  }

  // CefPreferenceManager
  bool HasPreference(const CefString& name) override;
  CefRefPtr<CefValue> GetPreference(const CefString& name) override;
  CefRefPtr<CefDictionaryValue> GetAllPreferences(
      bool include_defaults) override;
  bool CanSetPreference(const CefString& name) override;
  bool SetPreference(const CefString& name,
                     CefRefPtr<CefValue> value,
                     CefString& error) override;

  // CefRequestContext
  bool IsSame(CefRefPtr<CefRequestContext> other) override;
  bool IsSharingWith(CefRefPtr<CefRequestContext> other) override;
  bool IsGlobal() override { return is_global_; }
  CefRefPtr<CefRequestContextHandler> GetHandler() override { return handler_; }
  CefString GetCachePath() override;
  CefRefPtr<CefCookieManager> GetCookieManager(
      CefRefPtr<CefCompletionCallback> callback) override;
  bool RegisterSchemeHandlerFactory(
      const CefString& scheme_name,
      const CefString& domain_name,
      CefRefPtr<CefSchemeHandlerFactory> factory) override;
  bool ClearSchemeHandlerFactories() override;
  void ClearCertificateExceptions(
      CefRefPtr<CefCompletionCallback> callback) override;
  void ClearHttpAuthCredentials(
      CefRefPtr<CefCompletionCallback> callback) override;
  void CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) override;
  void ResolveHost(const CefString& origin,
                   CefRefPtr<CefResolveCallback> callback) override;
  CefRefPtr<CefMediaRouter> GetMediaRouter(
      CefRefPtr<CefCompletionCallback> callback) override;
  CefRefPtr<CefValue> GetWebsiteSetting(
      const CefString& requesting_url,
      const CefString& top_level_url,
      cef_content_setting_types_t content_type) override;
  void SetWebsiteSetting(const CefString& requesting_url,
                         const CefString& top_level_url,
                         cef_content_setting_types_t content_type,
                         CefRefPtr<CefValue> value) override;
  cef_content_setting_values_t GetContentSetting(
      const CefString& requesting_url,
      const CefString& top_level_url,
      cef_content_setting_types_t content_type) override;
  void SetContentSetting(const CefString& requesting_url,
                         const CefString& top_level_url,
                         cef_content_setting_types_t content_type,
                         cef_content_setting_values_t value) override;
  void SetChromeColorScheme(cef_color_variant_t variant,
                            cef_color_t user_color) override;
  cef_color_variant_t GetChromeColorSchemeMode() override;
  cef_color_t GetChromeColorSchemeColor() override;
  cef_color_variant_t GetChromeColorSchemeVariant() override;

 private:
  const std::shared_ptr<ContextStorage> storage_;
  const bool is_global_;
  const std::string accept_language_list_;
  const CefRefPtr<CefRequestContextHandler> handler_;
  IMPLEMENT_REFCOUNTING(RequestContextImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_REQUEST_CONTEXT_IMPL_H_
