// Scripts of the engine's own in the main frame, in an isolated world that
// the page's scripts cannot see or change.

#ifndef CEF_LIBCEF_BROWSER_ENGINE_WORLD_H_
#define CEF_LIBCEF_BROWSER_ENGINE_WORLD_H_

#include <QString>

#include "libcef/browser/browser_impl.h"
#include "libcef/browser/script_runner.h"

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
                ScriptRunner::EvaluateCallback callback);

 private:
  void Run(const QString& expression,
           ScriptRunner::EvaluateCallback callback,
           bool may_retry);

  BrowserImpl* const browser_;
  const QString name_;
  int context_ = 0;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_ENGINE_WORLD_H_
