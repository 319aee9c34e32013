// Downloads of one Chromium: it saves each under a private folder by its
// guid (Browser.setDownloadBehavior "allowAndName") and tells its progress;
// this puts each download to the client's CefDownloadHandler of the
// browser it began in, asks where to save through the client's dialog
// handler when told to, and moves the finished file there. A cancelled or
// failed download leaves no file behind.

#ifndef CEF_LIBCEF_BROWSER_DOWNLOADS_H_
#define CEF_LIBCEF_BROWSER_DOWNLOADS_H_

#include <functional>
#include <map>
#include <memory>

#include <QJsonObject>
#include <QString>

#include "include/cef_download_handler.h"
#include "libcef/browser/download_item_impl.h"

namespace cefengine {

class BrowserImpl;
class DevToolsSession;

// Engine UI thread only, but for the client's callbacks. Owned by its
// Chromium instance.
class Downloads : public std::enable_shared_from_this<Downloads> {
 public:
  using BrowserForFrame =
      std::function<CefRefPtr<BrowserImpl>(const QString& frame_id)>;
  using SessionGetter = std::function<std::shared_ptr<DevToolsSession>()>;

  // |folder| is where Chromium saves; it must exist.
  Downloads(QString folder, BrowserForFrame browser_for_frame,
            SessionGetter session);
  Downloads(const Downloads&) = delete;
  Downloads& operator=(const Downloads&) = delete;

  // Browser.setDownloadBehavior's parameters for |folder|.
  static QJsonObject Behavior(const QString& folder);

  // Browser.downloadWillBegin and Browser.downloadProgress.
  void OnEvent(const QString& method, const QJsonObject& params);

  // The client's answers, on the engine UI thread.
  void Continue(const QString& guid, const QString& path, bool show_dialog);
  void PathChosen(const QString& guid, const QString& path);
  void Cancel(const QString& guid);

 private:
  struct Entry {
    CefRefPtr<BrowserImpl> browser;
    DownloadState state;
    // Chromium's file, by the guid.
    QString temp_path;
    // Where the file goes once the client said so; empty until then.
    QString target;
    bool asking_path = false;
    // Chromium finished; the file waits in |temp_path| for a target.
    bool finished = false;
    bool ended = false;
  };

  void OnWillBegin(const QJsonObject& params);
  void OnProgress(const QJsonObject& params);
  // Moves a finished file to its target and tells the client.
  void Complete(const QString& guid);
  // Ends a download without a file: cancelled, or failed when |failed|.
  void End(const QString& guid, bool failed);
  void Update(const QString& guid);
  void SendCancel(const QString& guid);

  const QString folder_;
  const BrowserForFrame browser_for_frame_;
  const SessionGetter session_;
  std::map<QString, Entry> entries_;
  uint32_t next_id_ = 1;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_DOWNLOADS_H_
