#include "libcef/browser/inspector.h"

#include <string>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_closer.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/devtools_browser.h"
#include "libcef/browser/devtools_window.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

Inspector::Inspector(BrowserImpl* browser) : browser_(browser) {}

Inspector::~Inspector() = default;

void Inspector::Show(CefRefPtr<CefClient> client) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, this, client] {
    if (window_ || self->closer()->closing() || self->target_id().isEmpty()) {
      return;
    }
    std::string why;
    if (!DevToolsWindow::DisplayReachable(&why)) {
      // Once a process: a host may ask on every click.
      static bool told = false;
      LOG_IF(WARNING, !told) << "CefBrowserHost::ShowDevTools: " << why
                             << "; no inspector window is opened";
      told = true;
      return;
    }
    window_ = DevToolsBrowser::Open(
        self->chromium()->session(), self->target_id(),
        client ? client : self->client(), [self, this] {
          window_ = nullptr;
          open_ = false;
        });
    open_ = window_ != nullptr;
    if (CefRefPtr<DevToolsBrowser> inspector = window_) {
      inspector->NotifyCreated();
    }
  });
}

void Inspector::Close() {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, this] { CloseNow(); });
}

void Inspector::CloseNow(bool tell_client) {
  CefRefPtr<DevToolsBrowser> inspector;
  inspector.swap(window_);
  open_ = false;
  if (inspector) {
    inspector->Close(tell_client);
  }
}

}  // namespace cefengine
