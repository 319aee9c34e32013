#include "libcef/browser/request_context_impl.h"

#include <utility>

#include <QDir>
#include <QFileInfo>

#include "include/base/cef_logging.h"
#include "include/cef_media_router.h"
#include "libcef/browser/browser_registry.h"
#include "libcef/browser/context_storage.h"
#include "libcef/browser/ui_task.h"
#include "libcef/context.h"

namespace cefengine {

namespace {

// A context's own path, else the application's; absolute and clean.
std::string ResolveCachePath(const std::string& requested) {
  const CefSettings& settings = Context::Get()->settings();
  std::string path = requested;
  if (path.empty()) {
    path = CefString(&settings.cache_path).ToString();
  }
  if (path.empty()) {
    path = CefString(&settings.root_cache_path).ToString();
  }
  if (path.empty()) {
    return std::string();
  }
  return QDir::cleanPath(
             QFileInfo(QString::fromStdString(path)).absoluteFilePath())
      .toStdString();
}

std::string LanguageList(const std::string& requested) {
  return requested.empty()
             ? CefString(&Context::Get()->settings().accept_language_list)
                   .ToString()
             : requested;
}

// CEF tells a context's handler it is ready, on the UI thread, after the
// factory returned.
void AnnounceInitialized(CefRefPtr<RequestContextImpl> context) {
  if (CefRefPtr<CefRequestContextHandler> handler = context->GetHandler()) {
    PostUiTask([handler, context] {
      handler->OnRequestContextInitialized(context.get());
    });
  }
}

void CompleteLater(CefRefPtr<CefCompletionCallback> callback) {
  if (callback) {
    PostUiTask([callback] { callback->OnComplete(); });
  }
}

}  // namespace

CefRefPtr<RequestContextImpl> RequestContextImpl::CreateGlobal() {
  std::shared_ptr<ContextStorage> storage =
      BrowserRegistry::Get().StorageFor(ResolveCachePath(std::string()));
  return new RequestContextImpl(std::move(storage), true,
                                LanguageList(std::string()), nullptr);
}

CefRefPtr<RequestContextImpl> RequestContextImpl::FromContext(
    CefRefPtr<CefRequestContext> context) {
  if (auto* ours = dynamic_cast<RequestContextImpl*>(context.get())) {
    return ours;
  }
  return BrowserRegistry::Get().GlobalContext();
}

RequestContextImpl::RequestContextImpl(
    std::shared_ptr<ContextStorage> storage,
    bool is_global,
    std::string accept_language_list,
    CefRefPtr<CefRequestContextHandler> handler)
    : storage_(std::move(storage)),
      is_global_(is_global),
      accept_language_list_(std::move(accept_language_list)),
      handler_(std::move(handler)) {}

bool RequestContextImpl::HasPreference(const CefString& name) {
  return storage_->preferences.Has(name.ToString());
}

CefRefPtr<CefValue> RequestContextImpl::GetPreference(const CefString& name) {
  return storage_->preferences.Get(name.ToString());
}

CefRefPtr<CefDictionaryValue> RequestContextImpl::GetAllPreferences(
    bool include_defaults) {
  return storage_->preferences.GetAll();
}

bool RequestContextImpl::CanSetPreference(const CefString& name) {
  return !name.empty();
}

bool RequestContextImpl::SetPreference(const CefString& name,
                                       CefRefPtr<CefValue> value,
                                       CefString& error) {
  std::string why;
  const bool ok = storage_->preferences.Set(name.ToString(), value, &why);
  error = why;
  return ok;
}

bool RequestContextImpl::IsSame(CefRefPtr<CefRequestContext> other) {
  return other.get() == this;
}

bool RequestContextImpl::IsSharingWith(CefRefPtr<CefRequestContext> other) {
  auto* ours = dynamic_cast<RequestContextImpl*>(other.get());
  return ours && ours->storage_ == storage_;
}

CefString RequestContextImpl::GetCachePath() {
  return storage_->cache_path;
}

CefRefPtr<CefCookieManager> RequestContextImpl::GetCookieManager(
    CefRefPtr<CefCompletionCallback> callback) {
  return nullptr;
}

bool RequestContextImpl::RegisterSchemeHandlerFactory(
    const CefString& scheme_name,
    const CefString& domain_name,
    CefRefPtr<CefSchemeHandlerFactory> factory) {
  if (scheme_name.empty()) {
    return false;
  }
  storage_->scheme_handlers.Register(scheme_name.ToString(),
                                     domain_name.ToString(), factory);
  return true;
}

bool RequestContextImpl::ClearSchemeHandlerFactories() {
  storage_->scheme_handlers.Clear();
  return true;
}

void RequestContextImpl::ClearCertificateExceptions(
    CefRefPtr<CefCompletionCallback> callback) {
  CompleteLater(callback);
}

void RequestContextImpl::ClearHttpAuthCredentials(
    CefRefPtr<CefCompletionCallback> callback) {
  CompleteLater(callback);
}

void RequestContextImpl::CloseAllConnections(
    CefRefPtr<CefCompletionCallback> callback) {
  CompleteLater(callback);
}

void RequestContextImpl::ResolveHost(const CefString& origin,
                                     CefRefPtr<CefResolveCallback> callback) {
  if (callback) {
    PostUiTask([callback] {
      callback->OnResolveCompleted(ERR_NOT_IMPLEMENTED, {});
    });
  }
}

CefRefPtr<CefMediaRouter> RequestContextImpl::GetMediaRouter(
    CefRefPtr<CefCompletionCallback> callback) {
  return {};
}

CefRefPtr<CefValue> RequestContextImpl::GetWebsiteSetting(
    const CefString& requesting_url,
    const CefString& top_level_url,
    cef_content_setting_types_t content_type) {
  return nullptr;
}

void RequestContextImpl::SetWebsiteSetting(
    const CefString& requesting_url,
    const CefString& top_level_url,
    cef_content_setting_types_t content_type,
    CefRefPtr<CefValue> value) {}

cef_content_setting_values_t RequestContextImpl::GetContentSetting(
    const CefString& requesting_url,
    const CefString& top_level_url,
    cef_content_setting_types_t content_type) {
  return CEF_CONTENT_SETTING_VALUE_DEFAULT;
}

void RequestContextImpl::SetContentSetting(
    const CefString& requesting_url,
    const CefString& top_level_url,
    cef_content_setting_types_t content_type,
    cef_content_setting_values_t value) {}

void RequestContextImpl::SetChromeColorScheme(cef_color_variant_t variant,
                                              cef_color_t user_color) {}

cef_color_variant_t RequestContextImpl::GetChromeColorSchemeMode() {
  return CEF_COLOR_VARIANT_SYSTEM;
}

cef_color_t RequestContextImpl::GetChromeColorSchemeColor() {
  return 0;
}

cef_color_variant_t RequestContextImpl::GetChromeColorSchemeVariant() {
  return CEF_COLOR_VARIANT_SYSTEM;
}

}  // namespace cefengine

CefRefPtr<CefRequestContext> CefRequestContext::GetGlobalContext() {
  return cefengine::BrowserRegistry::Get().GlobalContext().get();
}

CefRefPtr<CefRequestContext> CefRequestContext::CreateContext(
    const CefRequestContextSettings& settings,
    CefRefPtr<CefRequestContextHandler> handler) {
  using cefengine::RequestContextImpl;
  if (!cefengine::Context::Get()->IsInitialized()) {
    LOG(ERROR) << "CefRequestContext::CreateContext: the engine is not "
                  "initialised";
    return nullptr;
  }
  CefRefPtr<RequestContextImpl> context = new RequestContextImpl(
      cefengine::BrowserRegistry::Get().StorageFor(cefengine::ResolveCachePath(
          CefString(&settings.cache_path).ToString())),
      false,
      cefengine::LanguageList(
          CefString(&settings.accept_language_list).ToString()),
      handler);
  cefengine::AnnounceInitialized(context);
  return context.get();
}

CefRefPtr<CefRequestContext> CefRequestContext::CreateContext(
    CefRefPtr<CefRequestContext> other,
    CefRefPtr<CefRequestContextHandler> handler) {
  using cefengine::RequestContextImpl;
  if (!cefengine::Context::Get()->IsInitialized() || !other) {
    LOG(ERROR) << "CefRequestContext::CreateContext: needs a context to share "
                  "with, and a running engine";
    return nullptr;
  }
  CefRefPtr<RequestContextImpl> base = RequestContextImpl::FromContext(other);
  CefRefPtr<RequestContextImpl> context = new RequestContextImpl(
      base->storage(), false, base->accept_language_list(), handler);
  cefengine::AnnounceInitialized(context);
  return context.get();
}
