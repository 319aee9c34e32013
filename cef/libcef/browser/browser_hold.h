// The hold a callback handed to the client keeps on its browser until
// answered.

#ifndef CEF_LIBCEF_BROWSER_BROWSER_HOLD_H_
#define CEF_LIBCEF_BROWSER_BROWSER_HOLD_H_

#include <functional>
#include <mutex>
#include <utility>

#include "libcef/browser/browser_impl.h"
#include "libcef/browser/ui_task.h"

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

  // The first answer: |answer| gets the browser on the engine UI thread, at
  // once when called there. Later answers do nothing. An answer from the
  // callback's destructor is always posted, since the last reference to the
  // callback may go inside the part that |answer| calls.
  void Answer(std::function<void(BrowserImpl*)> answer,
              bool from_destructor = false) {
    CefRefPtr<BrowserImpl> browser = Take();
    if (!browser) {
      return;
    }
    auto task = [browser, answer = std::move(answer)] { answer(browser.get()); };
    if (from_destructor) {
      PostUiTask(std::move(task));
    } else {
      RunOnUiThread(std::move(task));
    }
  }

 private:
  std::mutex mutex_;
  CefRefPtr<BrowserImpl> browser_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_BROWSER_HOLD_H_
