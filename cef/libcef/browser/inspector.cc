#include "libcef/browser/inspector.h"

#include <string>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_closer.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/devtools_window.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

Inspector::Inspector(BrowserImpl* browser) : browser_(browser) {}

Inspector::~Inspector() = default;

void Inspector::Show() {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, this] {
    if (window_ || self->closer()->closing() || self->target_id().isEmpty()) {
      return;
    }
    std::string why;
    if (!DevToolsWindow::DisplayReachable(&why)) {
      LOG(WARNING) << "CefBrowserHost::ShowDevTools: " << why
                   << "; no inspector window is opened";
      return;
    }
    window_ = DevToolsWindow::Open(self->chromium()->session(),
                                   self->target_id(), [this] {
                                     window_.reset();
                                     open_ = false;
                                   });
    open_ = window_ != nullptr;
  });
}

void Inspector::Close() {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, this] { CloseNow(); });
}

void Inspector::CloseNow() {
  std::shared_ptr<DevToolsWindow> window = std::move(window_);
  open_ = false;
  if (window) {
    window->Close();
  }
}

}  // namespace cefengine
