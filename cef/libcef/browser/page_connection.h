// The page's DevTools session as its browser sees it: the commands sent to
// the page and its frames' sessions, queued until the page is attached, and
// whether the browser is still open and its page still there.

#ifndef CEF_LIBCEF_BROWSER_PAGE_CONNECTION_H_
#define CEF_LIBCEF_BROWSER_PAGE_CONNECTION_H_

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include <QJsonObject>
#include <QString>

namespace cefengine {

class BrowserImpl;
class DevToolsSession;

// Owned by its browser; the thread of each call is named below.
class PageConnection {
 public:
  using CommandCallback =
      std::function<void(const QJsonObject& result, const QJsonObject& error)>;

  explicit PageConnection(BrowserImpl* browser);
  ~PageConnection();
  PageConnection(const PageConnection&) = delete;
  PageConnection& operator=(const PageConnection&) = delete;

  // Sends a command to |session_id| (the page's own when empty), after
  // everything sent before. Commands sent before the page is attached wait
  // for it. The callback (may be empty) runs on the engine UI thread, with
  // an error once the browser is closed or its Chromium gone, when the reply
  // misses its deadline (HangMonitor::CommandDeadline), or at once when too
  // many are under way for a page that does not answer. Any thread.
  void Send(const QString& session_id,
            const QString& method,
            const QJsonObject& params,
            CommandCallback callback);

  // Any thread.
  bool IsOpen() const;
  // Chromium went and no new page was asked for yet.
  bool IsGone() const;
  bool IsAttached() const;
  // Null or empty before the page is attached and after it went.
  DevToolsSession* devtools() const;
  QString session_id() const;

  // Engine UI thread from here on.
  // The page's flat session, once Chromium attached it.
  void SetSession(std::shared_ptr<DevToolsSession> devtools,
                  const QString& session_id);
  // Every domain answered: sends what waited. False once closed.
  bool Open();
  // A frame session paused request |request_id|: the answer goes there.
  void NoteFetchPause(const QString& request_id, const QString& session_id);
  // The page went without the browser: waiting commands fail, later ones
  // too until Revive. False once closed.
  bool Drop();
  // A new page is asked for; false unless the page had gone.
  bool Revive();
  // The browser closed: waiting commands fail, later ones too. False when
  // it was closed already.
  bool Close();
  // CefShutdown came with the browser open: lets go of everything, without
  // callbacks.
  void Release();

 private:
  struct QueuedCommand {
    QString session_id;  // empty: the page's
    QString method;
    QJsonObject params;
    CommandCallback callback;
  };

  // A command ended: counted off, and a missed deadline looked into.
  void OnCommandDone(const QJsonObject& error);
  // Fails |queued| with |error| on the engine UI thread.
  static void Fail(std::vector<QueuedCommand> queued, const QJsonObject& error);

  BrowserImpl* const browser_;
  mutable std::mutex mutex_;
  // Guarded by |mutex_|.
  std::shared_ptr<DevToolsSession> devtools_;
  QString session_id_;
  bool attached_ = false;
  bool closed_ = false;
  bool gone_ = false;
  std::vector<QueuedCommand> queued_;
  // Frame sessions that paused a request, by its Fetch id.
  std::map<QString, QString> fetch_sessions_;
  // Commands queued or sent and not ended yet.
  int commands_in_flight_ = 0;
  bool warned_command_limit_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PAGE_CONNECTION_H_
