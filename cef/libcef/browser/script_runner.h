// Scripts run in a browser's frames for the client: CefFrame's
// ExecuteJavaScript and the engine's evaluations in a frame's main world,
// and StartDownload's link in a world of the engine's own.

#ifndef CEF_LIBCEF_BROWSER_SCRIPT_RUNNER_H_
#define CEF_LIBCEF_BROWSER_SCRIPT_RUNNER_H_

#include <functional>
#include <memory>

#include <QJsonValue>
#include <QString>

namespace cefengine {

class BrowserImpl;
class EngineWorld;

// Any thread. Owned by its browser.
class ScriptRunner {
 public:
  // A script's value (returned by value), or an error text.
  using EvaluateCallback =
      std::function<void(const QJsonValue& value, const QString& error)>;

  explicit ScriptRunner(BrowserImpl* browser);
  ~ScriptRunner();
  ScriptRunner(const ScriptRunner&) = delete;
  ScriptRunner& operator=(const ScriptRunner&) = delete;

  // Runtime.evaluate in the main world of |frame_id|; |callback| runs on the
  // engine UI thread.
  void Evaluate(const QString& frame_id,
                const QString& expression,
                EvaluateCallback callback);
  // Runs |code| without waiting; exceptions become console messages
  // labelled with |script_url| and |start_line|.
  void ExecuteJavaScript(const QString& frame_id,
                         const QString& code,
                         const QString& script_url,
                         int start_line);
  // A link with the download attribute, as if the user followed it: the
  // download is Chromium's, with the page's cookies.
  void StartDownload(const QString& url);

 private:
  BrowserImpl* const browser_;
  // StartDownload's links, out of the page's reach; made at first use.
  // Engine UI thread.
  std::unique_ptr<EngineWorld> download_world_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_SCRIPT_RUNNER_H_
