#include "libcef/browser/downloads.h"

#include <atomic>
#include <map>
#include <utility>
#include <vector>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <QStandardPaths>

#include "include/base/cef_logging.h"
#include "include/cef_client.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/ui_task.h"
#include "libcef/devtools/devtools_session.h"

namespace cefengine {

namespace {

QString Str(const QJsonObject& object, const char* name) {
  return object.value(QLatin1String(name)).toString();
}

// The type a file name's extension stands for in the system's list
// (Debian's media-types). QMimeDatabase is not used: on a thread Qt did not
// start it leaves its thread data behind.
QString MimeTypeOfName(const QString& name) {
  // Never destroyed: engine threads may still ask while the process exits.
  static const std::map<QString, QString>& kTypes = *[] {
    auto* types = new std::map<QString, QString>;
    QFile file(QStringLiteral("/etc/mime.types"));
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
      QTextStream in(&file);
      QString line;
      while (in.readLineInto(&line)) {
        const QStringList words = line.simplified().split(QLatin1Char(' '));
        if (words.size() < 2 || words[0].startsWith(QLatin1Char('#'))) {
          continue;
        }
        for (int i = 1; i < words.size(); ++i) {
          types->emplace(words[i].toLower(), words[0]);
        }
      }
    }
    return types;
  }();
  const QString extension = QFileInfo(name).suffix().toLower();
  auto it = kTypes.find(extension);
  return it == kTypes.end() ? QStringLiteral("application/octet-stream")
                            : it->second;
}

// Runs |task| with the downloads on the engine UI thread, if they still are.
void WithDownloads(const std::weak_ptr<Downloads>& weak,
                   std::function<void(Downloads*)> task) {
  RunOnUiThread([weak, task = std::move(task)] {
    if (std::shared_ptr<Downloads> downloads = weak.lock()) {
      task(downloads.get());
    }
  });
}

// The first answer counts; dropped unanswered, the download is cancelled.
class BeforeDownloadCallbackImpl : public CefBeforeDownloadCallback {
 public:
  BeforeDownloadCallbackImpl(std::weak_ptr<Downloads> downloads, QString guid)
      : downloads_(std::move(downloads)), guid_(std::move(guid)) {}
  ~BeforeDownloadCallbackImpl() override {
    if (!answered_.exchange(true)) {
      const QString guid = guid_;
      std::weak_ptr<Downloads> weak = downloads_;
      PostUiTask([weak, guid] {
        if (std::shared_ptr<Downloads> downloads = weak.lock()) {
          downloads->Cancel(guid);
        }
      });
    }
  }

  // Any thread.
  void Continue(const CefString& download_path, bool show_dialog) override {
    if (answered_.exchange(true)) {
      return;
    }
    const QString path = QString::fromStdString(download_path.ToString());
    const QString guid = guid_;
    WithDownloads(downloads_, [guid, path, show_dialog](Downloads* downloads) {
      downloads->Continue(guid, path, show_dialog);
    });
  }

 private:
  const std::weak_ptr<Downloads> downloads_;
  const QString guid_;
  std::atomic<bool> answered_{false};
  IMPLEMENT_REFCOUNTING(BeforeDownloadCallbackImpl);
};

// Chromium can neither pause nor resume a download over the protocol.
class DownloadItemCallbackImpl : public CefDownloadItemCallback {
 public:
  DownloadItemCallbackImpl(std::weak_ptr<Downloads> downloads, QString guid)
      : downloads_(std::move(downloads)), guid_(std::move(guid)) {}

  // Any thread.
  void Cancel() override {
    const QString guid = guid_;
    WithDownloads(downloads_,
                  [guid](Downloads* downloads) { downloads->Cancel(guid); });
  }
  void Pause() override {}
  void Resume() override {}

 private:
  const std::weak_ptr<Downloads> downloads_;
  const QString guid_;
  IMPLEMENT_REFCOUNTING(DownloadItemCallbackImpl);
};

// The save dialog's answer; none cancels the download.
class SaveDialogCallback : public CefRunFileDialogCallback {
 public:
  SaveDialogCallback(std::weak_ptr<Downloads> downloads, QString guid)
      : downloads_(std::move(downloads)), guid_(std::move(guid)) {}

  void OnFileDialogDismissed(const std::vector<CefString>& file_paths) override {
    const QString guid = guid_;
    const QString path = file_paths.empty()
                             ? QString()
                             : QString::fromStdString(file_paths[0].ToString());
    WithDownloads(downloads_, [guid, path](Downloads* downloads) {
      if (path.isEmpty()) {
        downloads->Cancel(guid);
      } else {
        downloads->PathChosen(guid, path);
      }
    });
  }

 private:
  const std::weak_ptr<Downloads> downloads_;
  const QString guid_;
  IMPLEMENT_REFCOUNTING(SaveDialogCallback);
};

}  // namespace

Downloads::Downloads(QString folder,
                     BrowserForFrame browser_for_frame,
                     SessionGetter session)
    : folder_(std::move(folder)),
      browser_for_frame_(std::move(browser_for_frame)),
      session_(std::move(session)) {}

QJsonObject Downloads::Behavior(const QString& folder) {
  return QJsonObject{{"behavior", "allowAndName"},
                     {"downloadPath", folder},
                     {"eventsEnabled", true}};
}

void Downloads::OnEvent(const QString& method, const QJsonObject& params) {
  if (method == QLatin1String("Browser.downloadWillBegin")) {
    OnWillBegin(params);
  } else if (method == QLatin1String("Browser.downloadProgress")) {
    OnProgress(params);
  }
}

void Downloads::OnWillBegin(const QJsonObject& params) {
  const QString guid = Str(params, "guid");
  CefRefPtr<BrowserImpl> browser = browser_for_frame_(Str(params, "frameId"));
  CefRefPtr<CefClient> client = browser ? browser->client() : nullptr;
  CefRefPtr<CefDownloadHandler> handler =
      client ? client->GetDownloadHandler() : nullptr;
  const QString url = Str(params, "url");
  if (!handler || !browser->IsValid() ||
      !handler->CanDownload(browser.get(), url.toStdString(), "GET")) {
    SendCancel(guid);
    return;
  }
  Entry& entry = entries_[guid];
  entry.browser = browser;
  entry.temp_path = QDir(folder_).filePath(guid);
  const QString name = Str(params, "suggestedFilename");
  entry.state.id = next_id_++;
  entry.state.url = url.toStdString();
  entry.state.suggested_name = name.toStdString();
  entry.state.mime_type = MimeTypeOfName(name).toStdString();
  entry.state.start_time = CefBaseTime::Now();
  CefRefPtr<CefDownloadItem> item = new DownloadItemImpl(entry.state);
  CefRefPtr<BeforeDownloadCallbackImpl> callback =
      new BeforeDownloadCallbackImpl(weak_from_this(), guid);
  if (!handler->OnBeforeDownload(browser.get(), item, name.toStdString(),
                                 callback.get())) {
    Cancel(guid);
  }
}

void Downloads::OnProgress(const QJsonObject& params) {
  const QString guid = Str(params, "guid");
  const QString state = Str(params, "state");
  auto it = entries_.find(guid);
  if (it == entries_.end() || it->second.ended) {
    // A download given up before Chromium finished leaves nothing behind.
    if (state != QLatin1String("inProgress")) {
      QFile::remove(QDir(folder_).filePath(guid));
    }
    return;
  }
  Entry& entry = it->second;
  if (!entry.browser->IsValid()) {
    Cancel(guid);
    return;
  }
  entry.state.total_bytes =
      static_cast<int64_t>(params.value(QLatin1String("totalBytes")).toDouble(-1));
  entry.state.received_bytes = static_cast<int64_t>(
      params.value(QLatin1String("receivedBytes")).toDouble());
  if (state == QLatin1String("completed")) {
    entry.finished = true;
    if (entry.state.total_bytes <= 0) {
      entry.state.total_bytes = entry.state.received_bytes;
    }
    if (!entry.target.isEmpty()) {
      Complete(guid);
    }
  } else if (state == QLatin1String("canceled")) {
    End(guid, false);
  } else {
    Update(guid);
  }
}

void Downloads::Continue(const QString& guid,
                         const QString& path,
                         bool show_dialog) {
  auto it = entries_.find(guid);
  if (it == entries_.end() || it->second.ended) {
    return;
  }
  Entry& entry = it->second;
  QString target = path;
  if (target.isEmpty()) {
    const QString name = QString::fromStdString(entry.state.suggested_name);
    target = QDir(QStandardPaths::writableLocation(
                      QStandardPaths::DownloadLocation))
                 .filePath(name);
  }
  if (!show_dialog) {
    PathChosen(guid, target);
    return;
  }
  if (entry.asking_path) {
    return;
  }
  entry.asking_path = true;
  entry.browser->RunFileDialog(FILE_DIALOG_SAVE, CefString(),
                               target.toStdString(), {},
                               new SaveDialogCallback(weak_from_this(), guid));
}

void Downloads::PathChosen(const QString& guid, const QString& path) {
  auto it = entries_.find(guid);
  if (it == entries_.end() || it->second.ended) {
    return;
  }
  Entry& entry = it->second;
  entry.asking_path = false;
  entry.target = path;
  entry.state.full_path = path.toStdString();
  if (entry.finished) {
    Complete(guid);
  } else {
    Update(guid);
  }
}

void Downloads::Cancel(const QString& guid) {
  auto it = entries_.find(guid);
  if (it == entries_.end() || it->second.ended) {
    return;
  }
  if (!it->second.finished) {
    SendCancel(guid);
  }
  End(guid, false);
}

void Downloads::Complete(const QString& guid) {
  Entry& entry = entries_.at(guid);
  const QString target = entry.target;
  QDir().mkpath(QFileInfo(target).absolutePath());
  if (QFile::exists(target)) {
    QFile::remove(target);
  }
  // A rename cannot cross file systems: then a copy.
  if (!QFile::rename(entry.temp_path, target) &&
      !(QFile::copy(entry.temp_path, target) &&
        QFile::remove(entry.temp_path))) {
    LOG(ERROR) << "A download could not be saved as " << target.toStdString();
    QFile::remove(target);
    End(guid, true);
    return;
  }
  entry.ended = true;
  entry.state.complete = true;
  entry.state.end_time = CefBaseTime::Now();
  Update(guid);
  entries_.erase(guid);
}

void Downloads::End(const QString& guid, bool failed) {
  Entry& entry = entries_.at(guid);
  entry.ended = true;
  QFile::remove(entry.temp_path);
  if (failed) {
    entry.state.interrupted = true;
  } else {
    entry.state.canceled = true;
  }
  entry.state.end_time = CefBaseTime::Now();
  Update(guid);
  entries_.erase(guid);
}

void Downloads::Update(const QString& guid) {
  auto it = entries_.find(guid);
  if (it == entries_.end()) {
    return;
  }
  // Copied: the client may answer and so change the entries.
  const CefRefPtr<BrowserImpl> browser = it->second.browser;
  CefRefPtr<CefDownloadItem> item = new DownloadItemImpl(it->second.state);
  CefRefPtr<CefClient> client = browser->client();
  CefRefPtr<CefDownloadHandler> handler =
      client ? client->GetDownloadHandler() : nullptr;
  if (handler && browser->IsValid()) {
    handler->OnDownloadUpdated(browser.get(), item,
                               new DownloadItemCallbackImpl(weak_from_this(), guid));
  }
}

void Downloads::SendCancel(const QString& guid) {
  if (std::shared_ptr<DevToolsSession> session = session_()) {
    session->sendCommand(QStringLiteral("Browser.cancelDownload"),
                         QJsonObject{{"guid", guid}}, QString(), {});
  }
}

}  // namespace cefengine
