// CefBrowserHost's factories.

#include <atomic>
#include <utility>

#include "include/base/cef_logging.h"
#include "include/cef_browser.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/request_context_impl.h"
#include "libcef/browser/ui_task.h"
#include "libcef/context.h"

namespace {

using cefengine::BrowserImpl;

// Null (logged) when the arguments cannot make a browser.
bool MakeParams(const char* caller,
                const CefWindowInfo& window_info,
                CefRefPtr<CefClient> client,
                const CefString& url,
                const CefBrowserSettings& settings,
                CefRefPtr<CefDictionaryValue> extra_info,
                BrowserImpl::CreateParams* params) {
  if (!client) {
    LOG(ERROR) << caller << ": a client is required";
    return false;
  }
  if (!cefengine::Context::Get()->IsInitialized()) {
    LOG(ERROR) << caller << ": the engine is not initialised";
    return false;
  }
  if (!window_info.windowless_rendering_enabled) {
    static std::atomic<bool> told{false};
    if (!told.exchange(true)) {
      LOG(WARNING) << caller
                   << ": windowed browsers are not available; the page "
                      "renders off screen";
    }
  }
  params->client = client;
  params->url = url.ToString();
  params->settings = settings;
  params->extra_info = extra_info ? extra_info->Copy(false) : nullptr;
  return true;
}

}  // namespace

bool CefBrowserHost::CreateBrowser(
    const CefWindowInfo& windowInfo,
    CefRefPtr<CefClient> client,
    const CefString& url,
    const CefBrowserSettings& settings,
    CefRefPtr<CefDictionaryValue> extra_info,
    CefRefPtr<CefRequestContext> request_context) {
  BrowserImpl::CreateParams params;
  if (!MakeParams("CefBrowserHost::CreateBrowser", windowInfo, client, url,
                  settings, extra_info, &params)) {
    return false;
  }
  return cefengine::PostUiTask(
      [params = std::move(params), request_context]() mutable {
        params.request_context =
            cefengine::RequestContextImpl::FromContext(request_context);
        if (params.request_context) {
          BrowserImpl::Create(std::move(params), false);
        }
      });
}

CefRefPtr<CefBrowser> CefBrowserHost::CreateBrowserSync(
    const CefWindowInfo& windowInfo,
    CefRefPtr<CefClient> client,
    const CefString& url,
    const CefBrowserSettings& settings,
    CefRefPtr<CefDictionaryValue> extra_info,
    CefRefPtr<CefRequestContext> request_context) {
  BrowserImpl::CreateParams params;
  if (!MakeParams("CefBrowserHost::CreateBrowserSync", windowInfo, client, url,
                  settings, extra_info, &params)) {
    return nullptr;
  }
  if (!cefengine::OnUiThread()) {
    LOG(ERROR) << "CefBrowserHost::CreateBrowserSync must be called on the UI "
                  "thread";
    return nullptr;
  }
  params.request_context =
      cefengine::RequestContextImpl::FromContext(request_context);
  if (!params.request_context) {
    return nullptr;
  }
  return BrowserImpl::Create(std::move(params), true).get();
}
