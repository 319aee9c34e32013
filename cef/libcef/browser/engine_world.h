// Scripts of the engine's own in the main frame, in an isolated world that
// the page's scripts cannot see or change, and the hold a client callback
// keeps on its browser until answered.

#ifndef CEF_LIBCEF_BROWSER_ENGINE_WORLD_H_
#define CEF_LIBCEF_BROWSER_ENGINE_WORLD_H_

#include <mutex>
#include <utility>

#include <QString>

#include "libcef/browser/browser_impl.h"

namespace cefengine {

// Engine UI thread only. Owned by its browser.
class EngineWorld {
 public:
  EngineWorld(BrowserImpl* browser, QString name);
  EngineWorld(const EngineWorld&) = delete;
  EngineWorld& operator=(const EngineWorld&) = delete;

  // Runs |expression| in the main frame's current document; the world is
  // made anew for each document.
  void Evaluate(const QString& expression,
                BrowserImpl::EvaluateCallback callback);

 private:
  void Run(const QString& expression,
           BrowserImpl::EvaluateCallback callback,
           bool may_retry);

  BrowserImpl* const browser_;
  const QString name_;
  int context_ = 0;
};

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

#endif  // CEF_LIBCEF_BROWSER_ENGINE_WORLD_H_
