// The hold a callback handed to the client keeps on its browser until
// answered.

#ifndef CEF_LIBCEF_BROWSER_BROWSER_HOLD_H_
#define CEF_LIBCEF_BROWSER_BROWSER_HOLD_H_

#include <mutex>
#include <utility>

#include "libcef/browser/browser_impl.h"

namespace cefengine {

// The browser a callback handed to the client needs, given up at the first
// answer: a client may keep an answered callback for good. Any thread.
class BrowserHold {
 public:
  explicit BrowserHold(CefRefPtr<BrowserImpl> browser)
      : browser_(std::move(browser)) {}
  // The browser on the first call, null on later ones.
  CefRefPtr<BrowserImpl> Take() {
    std::lock_guard<std::mutex> lock(mutex_);
    return std::move(browser_);
  }

 private:
  std::mutex mutex_;
  CefRefPtr<BrowserImpl> browser_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_BROWSER_HOLD_H_
