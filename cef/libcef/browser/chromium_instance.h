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

#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

#include "libcef/devtools/devtools_session.h"

namespace cefengine {

class BrowserImpl;
class Downloads;

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
  // The scale Chromium was started with (1 when none was asked). Any thread.
  float scale_factor() const { return scale_factor_.load(); }
  // The user agent pages get: Chromium's own without "Headless", or the
  // application's. Engine UI thread, once started.
  const QString& user_agent() const { return user_agent_; }

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
  // The browser showing frame |frame_id|, or null.
  BrowserImpl* BrowserForFrame(const QString& frame_id) const;
  // Lets Chromium save downloads, into a folder of the engine's own.
  void StartDownloads(DevToolsSession* session);
  // Lets a page no browser claimed run on, detached.
  void ReleaseUnclaimed(const QString& target_id);
  std::vector<std::string> Switches() const;

  const std::string cache_path_;
  std::unique_ptr<QTemporaryDir> temp_dir_;
  std::unique_ptr<QTemporaryDir> download_dir_;

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
  std::shared_ptr<Downloads> downloads_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_CHROMIUM_INSTANCE_H_
