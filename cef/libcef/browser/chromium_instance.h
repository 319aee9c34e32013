// One Chromium process for one storage (user data directory): starting it,
// and handing its target-level events to the browsers it serves.

#ifndef CEF_LIBCEF_BROWSER_CHROMIUM_INSTANCE_H_
#define CEF_LIBCEF_BROWSER_CHROMIUM_INSTANCE_H_

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <deque>
#include <set>

#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

#include "libcef/devtools/devtools_session.h"

namespace cefengine {

class BrowserImpl;
class XServer;

class ChromiumInstance : public std::enable_shared_from_this<ChromiumInstance> {
 public:
  // Told the flat session Chromium attached a page target with.
  using AttachCallback =
      std::function<void(const QString& session_id, const QJsonObject& info)>;

  // An empty |cache_path| means a temporary profile, removed at Shutdown.
  explicit ChromiumInstance(std::string cache_path);
  ~ChromiumInstance();
  ChromiumInstance(const ChromiumInstance&) = delete;
  ChromiumInstance& operator=(const ChromiumInstance&) = delete;

  // Starts Chromium unless it runs: spawns it with the application's
  // switches and waits for its first answer (blocks, normally well under a
  // second, 20 s at most). |device_scale_factor| > 0 is forced on the
  // process. False, with the reason logged, if it cannot run. After Chromium
  // died the next call starts a new one. Engine UI thread.
  bool EnsureStarted(float device_scale_factor);

  // The running session, or null. Any thread.
  std::shared_ptr<DevToolsSession> session() const;

  // --- The X frame source (BROVIA_FRAME_SOURCE) -----------------------
  // A full Chromium in the engine's X server runs: pages are windows of it,
  // opened by OpenWindow. Any thread, once started.
  bool uses_x11() const { return x11_.load(); }
  std::shared_ptr<XServer> x_server() const;
  // Chromium's process id, 0 when none runs. Any thread.
  pid_t chromium_pid() const;
  // A place for a new window on the X screen, in Chromium's screen pixels
  // (DIP), different from the windows opened lately. Engine UI thread.
  void NextWindowPlace(int* left, int* top);
  // Opens a frameless window of |width| x |height| DIP at (left, top) with a
  // held about:blank page, which Chromium attaches as usual; |opened| gets
  // its target id, or an empty one with the reason. Engine UI thread.
  using OpenedCallback =
      std::function<void(const QString& target_id, const QString& error)>;
  void OpenWindow(int left, int top, int width, int height,
                  OpenedCallback opened);
  // The same, blocking until the target exists (CreateBrowserSync).
  QString OpenWindowSync(int left, int top, int width, int height);
  // The scale Chromium was started with (1 when none was asked). Any thread.
  float scale_factor() const { return scale_factor_.load(); }
  // The user agent pages get: Chromium's own without "Headless", or the
  // application's. Engine UI thread, once started.
  const QString& user_agent() const { return user_agent_; }

  // A browser's page target; its target events go to it from now on.
  // Engine UI thread.
  void AddTarget(const QString& target_id, BrowserImpl* browser);
  void AddSession(const QString& session_id, BrowserImpl* browser);
  // Forgets every route to |browser|. Engine UI thread.
  void RemoveBrowser(BrowserImpl* browser);
  // Calls |attached| once Chromium auto-attached |target_id| (at once if it
  // already did). Engine UI thread.
  void WhenAttached(const QString& target_id, AttachCallback attached);

  // Closes a page Chromium attached and holds, that no browser will show.
  // Engine UI thread.
  void DiscardTarget(const QString& target_id, const QString& session_id);

  // CefShutdown, after the engine threads ended: stops Chromium (blocks for
  // at most a few seconds) and removes a temporary profile.
  void Shutdown();

 private:
  struct Attachment {
    QString session_id;
    QJsonObject info;
  };

  // Engine UI thread.
  void OnEvent(const QString& method,
               const QJsonObject& params,
               const QString& session_id);
  void OnAttachedToTarget(const QJsonObject& params);
  void OnDisconnected(const QJsonObject& params);
  BrowserImpl* BrowserForTarget(const QString& target_id) const;
  // Lets a page no browser claimed run on, detached.
  void ReleaseUnclaimed(const QString& target_id);
  std::vector<std::string> Switches() const;
  // After Chromium answered, with a full Chromium: its start-up window is the
  // launcher page that opens every page's window. False if none is found.
  bool AttachLauncher(DevToolsSession* session);
  QString WindowOpenScript(int left, int top, int width, int height) const;

  const std::string cache_path_;
  std::unique_ptr<QTemporaryDir> temp_dir_;

  mutable std::mutex session_mutex_;
  std::shared_ptr<DevToolsSession> session_;
  std::atomic<float> scale_factor_{1};
  std::atomic<bool> shut_down_{false};
  QString user_agent_;

  // Engine UI thread.
  std::map<QString, BrowserImpl*> targets_;
  std::map<QString, BrowserImpl*> sessions_;
  std::map<QString, Attachment> unclaimed_;
  std::map<QString, AttachCallback> waiters_;

  // The X frame source.
  std::atomic<bool> x11_{false};
  std::shared_ptr<XServer> x_server_;
  QString launcher_target_;
  QString launcher_session_;
  // OpenWindow calls waiting for their window's target, in order.
  std::deque<OpenedCallback> launches_;
  // Targets the launcher opened, so far.
  std::set<QString> opened_;
  int window_slot_ = 0;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_CHROMIUM_INSTANCE_H_
