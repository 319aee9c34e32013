// One Chromium process for one storage (user data directory): starting it,
// and handing its target-level events to the browsers it serves.

#ifndef CEF_LIBCEF_BROWSER_CHROMIUM_INSTANCE_H_
#define CEF_LIBCEF_BROWSER_CHROMIUM_INSTANCE_H_

#include <atomic>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

#include "libcef/browser/chromium_launcher.h"
#include "libcef/browser/window_launcher.h"
#include "libcef/devtools/devtools_session.h"

namespace cefengine {

class BrowserImpl;
class Downloads;
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

  // Starts Chromium on a thread of its own unless it runs or is starting,
  // with |device_scale_factor| (> 0) forced on the process. Never blocks.
  // Any thread.
  void StartInBackground(float device_scale_factor);

  // Calls |done| on the engine UI thread once Chromium runs (true) or could
  // not start (false, the reason logged); starts it first if need be. At
  // once when it already runs. A Chromium that no browser used yet and paints
  // at another factor is replaced by one at |device_scale_factor|; once a
  // browser used it, later ones take it as it is. After Chromium died the
  // next call starts a new one. Engine UI thread; never blocks it.
  void WhenStarted(float device_scale_factor, std::function<void(bool)> done);

  // WhenStarted for the synchronous browser creation: blocks the caller
  // until Chromium runs (20 s at most). False if it cannot run. Engine UI
  // thread.
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
  using OpenedCallback = WindowLauncher::OpenedCallback;
  void OpenWindow(int left, int top, int width, int height,
                  OpenedCallback opened);
  // The same, blocking until the target exists (CreateBrowserSync).
  QString OpenWindowSync(int left, int top, int width, int height);
  // The scale Chromium was started with (1 when none was asked). Any thread.
  float scale_factor() const { return scale_factor_.load(); }
  // The user agent pages get: Chromium's own without "Headless", or the
  // application's. Any thread, once started.
  QString user_agent() const;

  // A browser's page target; its target events go to it from now on.
  // Engine UI thread.
  void AddTarget(const QString& target_id, BrowserImpl* browser);
  void AddSession(const QString& session_id, BrowserImpl* browser);
  void RemoveSession(const QString& session_id);
  // Forgets every route to |browser|. Engine UI thread.
  void RemoveBrowser(BrowserImpl* browser);
  // Calls |attached| once Chromium auto-attached |target_id| (at once if it
  // already did). Engine UI thread.
  void WhenAttached(const QString& target_id, AttachCallback attached);

  // Closes a page Chromium attached and holds, that no browser will show.
  // Engine UI thread.
  void DiscardTarget(const QString& target_id, const QString& session_id);

  // Stops a Chromium no browser took (see BrowserRegistry::StartEarly),
  // after its start ended. Blocks the caller; not the engine UI thread.
  void StopIfUnused();

  // CefShutdown, after the engine threads ended: stops Chromium, after a
  // start under way ended (blocks, normally for well under a second, 20 s
  // at most for a Chromium that never answers), and removes a temporary
  // profile.
  void Shutdown();

 private:
  struct Attachment {
    QString session_id;
    QJsonObject info;
  };

  // Engine UI thread. |from| tells which Chromium spoke; it is compared,
  // never used.
  void OnEvent(const DevToolsSession* from,
               const QString& method,
               const QJsonObject& params,
               const QString& session_id);
  void OnAttachedToTarget(const QJsonObject& params);
  void OnDisconnected(const DevToolsSession* from, const QJsonObject& params);
  BrowserImpl* BrowserForTarget(const QString& target_id) const;
  // The browser showing frame |frame_id|, or null.
  BrowserImpl* BrowserForFrame(const QString& frame_id) const;
  // Lets Chromium save downloads, into a folder of the engine's own.
  void StartDownloads(DevToolsSession* session);
  // Lets a page no browser claimed run on, detached.
  void ReleaseUnclaimed(const QString& target_id);
  // Runs on the starter thread: spawns Chromium, its events routed to
  // OnEvent, and waits for its first answer (blocks, normally well under a
  // second, 20 s at most).
  ChromiumLauncher::Launched Launch(float device_scale_factor,
                                    std::vector<std::string> switches);
  // Starts a new Chromium at |device_scale_factor| after stopping |previous|
  // (if any), both on a new starter thread. Under mutex_.
  void BeginStartLocked(float device_scale_factor,
                        std::shared_ptr<DevToolsSession> previous);
  // Starter thread: the start ended.
  void FinishStart(ChromiumLauncher::Launched launched,
                   float device_scale_factor);
  bool RunningLocked() const;

  // Its profile folder and switches; used by one start at a time.
  ChromiumLauncher chromium_launcher_;
  std::unique_ptr<QTemporaryDir> download_dir_;

  mutable std::mutex mutex_;
  // Told when a start ends.
  std::condition_variable start_ended_;
  std::shared_ptr<DevToolsSession> session_;
  // A start under way.
  bool starting_ = false;
  float start_scale_ = 1;
  // Whom to tell when the start under way ends; engine UI thread tasks.
  std::vector<std::function<void(bool)>> start_waiters_;
  // A browser took the running Chromium; its factor stays then.
  bool claimed_ = false;
  std::thread starter_;
  std::atomic<float> scale_factor_{1};
  std::atomic<bool> shut_down_{false};
  QString user_agent_;

  // Engine UI thread.
  std::map<QString, BrowserImpl*> targets_;
  std::map<QString, BrowserImpl*> sessions_;
  std::map<QString, Attachment> unclaimed_;
  std::map<QString, AttachCallback> waiters_;
  std::shared_ptr<Downloads> downloads_;

  // The X frame source.
  std::atomic<bool> x11_{false};
  std::shared_ptr<XServer> x_server_;
  // Engine UI thread.
  const std::shared_ptr<WindowLauncher> launcher_ =
      std::make_shared<WindowLauncher>();
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_CHROMIUM_INSTANCE_H_
