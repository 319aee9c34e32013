#include "libcef/browser/devtools_browser.h"

#include <utility>

#include "libcef/browser/browser_registry.h"
#include "libcef/browser/devtools_window.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

CefRefPtr<DevToolsBrowser> DevToolsBrowser::Open(
    std::shared_ptr<DevToolsSession> page_chromium,
    const QString& target_id,
    CefRefPtr<CefClient> client,
    ClosedCallback closed) {
  CefRefPtr<DevToolsBrowser> browser =
      new DevToolsBrowser(std::move(client), std::move(closed));
  // The window lives inside this object and never calls back once Close ran.
  DevToolsBrowser* raw = browser.get();
  browser->window_ = DevToolsWindow::Open(std::move(page_chromium), target_id,
                                          [raw] { raw->Finish(); });
  if (!browser->window_) {
    browser->closed_ = nullptr;
    browser->Close(false);
    return nullptr;
  }
  return browser;
}

DevToolsBrowser::DevToolsBrowser(CefRefPtr<CefClient> client,
                                 ClosedCallback closed)
    : id_(BrowserRegistry::Get().NextBrowserId()),
      closed_(std::move(closed)),
      client_(std::move(client)) {}

DevToolsBrowser::~DevToolsBrowser() = default;

CefRefPtr<CefLifeSpanHandler> DevToolsBrowser::LifeSpanHandler() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return client_ ? client_->GetLifeSpanHandler() : nullptr;
}

void DevToolsBrowser::NotifyCreated() {
  if (CefRefPtr<CefLifeSpanHandler> life_span = LifeSpanHandler()) {
    life_span->OnAfterCreated(this);
  }
}

void DevToolsBrowser::Finish() {
  CefRefPtr<DevToolsBrowser> keep(this);
  ClosedCallback closed = std::move(closed_);
  closed_ = nullptr;
  if (closed) {
    closed();
  }
  Close(true);
}

void DevToolsBrowser::Close(bool tell_client) {
  closed_ = nullptr;
  std::shared_ptr<DevToolsWindow> window = std::move(window_);
  if (window) {
    window->Close();
  }
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!valid_) {
      return;
    }
  }
  CefRefPtr<CefLifeSpanHandler> life_span =
      tell_client ? LifeSpanHandler() : nullptr;
  if (life_span) {
    // The window is the engine's, not the client's: there is no owner
    // window to hand the close to, so DoClose cannot hold it up.
    life_span->DoClose(this);
  }
  {
    std::lock_guard<std::mutex> lock(mutex_);
    valid_ = false;
  }
  if (life_span) {
    life_span->OnBeforeClose(this);
  }
  // As CEF does, a closed browser lets go of its client, which may well
  // hold this browser among its popups.
  CefRefPtr<CefClient> released;
  std::lock_guard<std::mutex> lock(mutex_);
  released.swap(client_);
}

// --- What the inspector really does ---------------------------------------
// --- CefBrowser ----------------------------------------------------------

bool DevToolsBrowser::IsValid() {
  std::lock_guard<std::mutex> lock(mutex_);
  return valid_;
}

CefRefPtr<CefBrowserHost> DevToolsBrowser::GetHost() {
  return this;
}

int DevToolsBrowser::GetIdentifier() {
  return id_;
}

bool DevToolsBrowser::IsSame(CefRefPtr<CefBrowser> that) {
  return that && that->GetIdentifier() == id_;
}

bool DevToolsBrowser::IsPopup() {
  return true;
}


CefRefPtr<CefBrowser> DevToolsBrowser::GetBrowser() {
  return this;
}

void DevToolsBrowser::CloseBrowser(bool force_close) {
  // The front end has no unload handlers to ask: forced or not, it closes.
  CefRefPtr<DevToolsBrowser> self(this);
  RunOnUiThread([self] {
    if (self->IsValid()) {
      self->Finish();
    }
  });
}

bool DevToolsBrowser::TryCloseBrowser() {
  CloseBrowser(false);
  return true;
}

CefRefPtr<CefClient> DevToolsBrowser::GetClient() {
  std::lock_guard<std::mutex> lock(mutex_);
  return client_;
}

}  // namespace cefengine
