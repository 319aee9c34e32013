#include "libcef/browser/file_dialogs.h"

#include <utility>

#include <QFileInfo>
#include <QJsonArray>
#include <QMimeDatabase>

#include "include/base/cef_logging.h"
#include "include/cef_client.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/browser_hold.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

namespace {

CefString Cef(const QString& text) {
  return CefString(text.toStdString());
}

bool IsMimeToken(const QString& text) {
  if (text.isEmpty()) {
    return false;
  }
  for (const QChar c : text) {
    if (c.unicode() <= 0x20 || c.unicode() >= 0x7f ||
        QStringLiteral("()<>@,;:\\\"/[]?={}").contains(c)) {
      return false;
    }
  }
  return true;
}

bool IsMimeType(const QString& text) {
  const int slash = text.indexOf('/');
  return slash > 0 && IsMimeToken(text.left(slash)) &&
         IsMimeToken(text.mid(slash + 1));
}

// The extensions of a MIME type ("image/*" included), as ".a;.b".
QString MimeExtensions(const QString& mime) {
  const QMimeDatabase database;
  QStringList suffixes;
  if (mime.endsWith(QLatin1String("/*"))) {
    const QString prefix = mime.chopped(1);
    QStringList names;
    for (const QMimeType& type : database.allMimeTypes()) {
      if (type.name().startsWith(prefix)) {
        names << type.name();
      }
    }
    names.sort();
    for (const QString& name : names) {
      suffixes << database.mimeTypeForName(name).suffixes();
    }
  } else {
    const QMimeType type = database.mimeTypeForName(mime);
    if (type.isValid()) {
      suffixes = type.suffixes();
    }
  }
  suffixes.removeDuplicates();
  QStringList extensions;
  for (const QString& suffix : suffixes) {
    extensions << QLatin1Char('.') + suffix;
  }
  return extensions.join(QLatin1Char(';'));
}

QString MimeDescription(const QString& mime) {
  static const char* const kWildcards[][2] = {{"image/*", "Image Files"},
                                              {"audio/*", "Audio Files"},
                                              {"video/*", "Video Files"},
                                              {"text/*", "Text Files"}};
  for (const auto& [name, description] : kWildcards) {
    if (mime == QLatin1String(name)) {
      return QLatin1String(description);
    }
  }
  if (mime.endsWith(QLatin1String("/*"))) {
    return QString();
  }
  const QMimeType type = QMimeDatabase().mimeTypeForName(mime);
  return type.isValid() ? type.comment() : QString();
}

bool IsSingleMode(cef_file_dialog_mode_t mode) {
  return mode != FILE_DIALOG_OPEN_MULTIPLE;
}

// What CefDialogHandler::OnFileDialog gets for a list of filters: each
// filter with its extensions (".png;.jpg") and description, where known.
struct FileDialogFilters {
  std::vector<CefString> filters;
  std::vector<CefString> extensions;
  std::vector<CefString> descriptions;
};

// The filters of an accept attribute, as Chromium passes them: valid MIME
// types first, then extensions, trimmed and lower-cased.
QStringList AcceptAttributeFilters(const QString& accept) {
  QStringList types;
  QStringList extensions;
  for (const QString& entry : accept.split(QLatin1Char(','))) {
    const QString filter = entry.trimmed().toLower();
    if (filter.size() > 1 && filter.startsWith(QLatin1Char('.'))) {
      extensions << filter;
    } else if (IsMimeType(filter)) {
      types << filter;
    }
  }
  return types + extensions;
}

// |filters| with their extensions and descriptions. A filter may also be
// "Description|.ext1;.ext2", as RunFileDialog takes them.
FileDialogFilters ExpandFileDialogFilters(const QStringList& filters) {
  FileDialogFilters result;
  for (const QString& filter : filters) {
    if (filter.isEmpty()) {
      continue;
    }
    QString extensions;
    QString description;
    const int bar = filter.indexOf(QLatin1Char('|'));
    if (bar >= 0) {
      description = filter.left(bar);
      extensions = filter.mid(bar + 1);
    } else if (filter.startsWith(QLatin1Char('.'))) {
      extensions = filter;
    } else if (IsMimeType(filter)) {
      extensions = MimeExtensions(filter);
      description = MimeDescription(filter);
    }
    result.filters.push_back(Cef(filter));
    result.extensions.push_back(Cef(extensions));
    result.descriptions.push_back(Cef(description));
  }
  return result;
}

// One dialog's answer: the first one counts. Dropped unanswered, it cancels
// the dialog.
class FileDialogCallbackImpl : public CefFileDialogCallback {
 public:
  FileDialogCallbackImpl(CefRefPtr<BrowserImpl> browser, int serial)
      : browser_(std::move(browser)), serial_(serial) {}

  ~FileDialogCallbackImpl() override {
    browser_.Answer(
        [serial = serial_](BrowserImpl* browser) {
          browser->file_dialogs()->Answer(serial, {});
        },
        true);
  }

  // Any thread.
  void Continue(const std::vector<CefString>& file_paths) override {
    std::vector<QString> paths;
    for (const CefString& path : file_paths) {
      paths.push_back(QString::fromStdString(path.ToString()));
    }
    Deliver(std::move(paths));
  }

  void Cancel() override { Deliver({}); }

  // Takes the dialog back from the client; false if it already answered.
  bool Disconnect() { return browser_.Take() != nullptr; }

 private:
  // The first answer only.
  void Deliver(std::vector<QString> paths) {
    browser_.Answer([serial = serial_, paths = std::move(paths)](
                        BrowserImpl* browser) {
      browser->file_dialogs()->Answer(serial, paths);
    });
  }

  BrowserHold browser_;
  const int serial_;

  IMPLEMENT_REFCOUNTING(FileDialogCallbackImpl);
};

}  // namespace

FileDialogs::FileDialogs(BrowserImpl* browser) : browser_(browser) {}

void FileDialogs::OnChooserOpened(const QJsonObject& params) {
  const int node = params.value(QLatin1String("backendNodeId")).toInt();
  if (node <= 0) {
    // A picker of a script API, with no input to give the files to.
    if (!warned_no_input_) {
      warned_no_input_ = true;
      LOG(WARNING) << "A file chooser without an <input type=file> behind it "
                      "was cancelled: its files could not be delivered";
    }
    return;
  }
  if (pending_) {
    return;  // One at a time: the page's second chooser is cancelled.
  }
  Pending chooser;
  chooser.serial = ++last_serial_;
  chooser.frame_id = params.value(QLatin1String("frameId")).toString();
  chooser.backend_node_id = node;
  chooser.mode = params.value(QLatin1String("mode")).toString() ==
                         QLatin1String("selectMultiple")
                     ? FILE_DIALOG_OPEN_MULTIPLE
                     : FILE_DIALOG_OPEN;
  pending_ = chooser;
  // The attributes as the element has them, out of reach of page scripts.
  CefRefPtr<BrowserImpl> browser(browser_);
  const int serial = chooser.serial;
  // Node ids belong to the session of the chooser's frame.
  browser_->SendSessionCommand(
      browser_->SessionForFrame(chooser.frame_id),
      QStringLiteral("DOM.describeNode"), QJsonObject{{"backendNodeId", node}},
      [browser, serial](const QJsonObject& result, const QJsonObject& error) {
        if (browser->IsValid()) {
          browser->file_dialogs()->OnInputDescribed(
              serial, result.value(QLatin1String("node")).toObject(), error);
        }
      });
}

void FileDialogs::OnInputDescribed(int serial,
                                   const QJsonObject& node,
                                   const QJsonObject& error) {
  if (!pending_ || pending_->serial != serial) {
    return;
  }
  if (!error.isEmpty()) {
    // The input went with its document meanwhile.
    pending_.reset();
    return;
  }
  const QJsonArray attributes = node.value(QLatin1String("attributes")).toArray();
  QString accept;
  for (int i = 0; i + 1 < attributes.size(); i += 2) {
    const QString name = attributes.at(i).toString().toLower();
    if (name == QLatin1String("accept")) {
      accept = attributes.at(i + 1).toString();
    } else if (name == QLatin1String("webkitdirectory")) {
      pending_->mode = FILE_DIALOG_OPEN_FOLDER;
    }
  }
  Ask(CefString(), CefString(), AcceptAttributeFilters(accept));
}

void FileDialogs::OnFrameNavigated(const QString& frame_id, bool main) {
  if (pending_ && !pending_->run_callback &&
      (main || pending_->frame_id == frame_id)) {
    pending_.reset();
  }
}

void FileDialogs::Run(cef_file_dialog_mode_t mode,
                      const CefString& title,
                      const CefString& default_file_path,
                      const std::vector<CefString>& accept_filters,
                      CefRefPtr<CefRunFileDialogCallback> callback) {
  Pending dialog;
  dialog.serial = ++last_serial_;
  dialog.mode = mode;
  dialog.run_callback = callback;
  if (mode < FILE_DIALOG_OPEN || mode > FILE_DIALOG_SAVE) {
    LOG(ERROR) << "CefBrowserHost::RunFileDialog: no dialog mode " << mode;
    Finish(std::move(dialog), {});
    return;
  }
  if (pending_ || !browser_->IsValid()) {
    Finish(std::move(dialog), {});
    return;
  }
  QStringList filters;
  for (const CefString& filter : accept_filters) {
    filters << QString::fromStdString(filter.ToString());
  }
  pending_ = std::move(dialog);
  Ask(title, default_file_path, filters);
}

void FileDialogs::Ask(const CefString& title,
                      const CefString& default_file_path,
                      const QStringList& filters) {
  const int serial = pending_->serial;
  const cef_file_dialog_mode_t mode = pending_->mode;
  CefRefPtr<CefClient> client = browser_->client();
  CefRefPtr<CefDialogHandler> handler =
      client ? client->GetDialogHandler() : nullptr;
  if (handler) {
    const FileDialogFilters expanded = ExpandFileDialogFilters(filters);
    CefRefPtr<FileDialogCallbackImpl> callback =
        new FileDialogCallbackImpl(browser_, serial);
    if (handler->OnFileDialog(browser_, mode, title, default_file_path,
                              expanded.filters, expanded.extensions,
                              expanded.descriptions, callback.get())) {
      return;
    }
    if (!callback->Disconnect()) {
      LOG(WARNING) << "CefDialogHandler answered a file dialog and returned "
                      "false; it should return true when it answers";
      return;
    }
  }
  WarnNoHandler();
  // The handler may have closed the browser, which ended the dialog.
  Answer(serial, {});
}

void FileDialogs::Answer(int serial, const std::vector<QString>& paths) {
  if (!pending_ || pending_->serial != serial) {
    return;
  }
  Pending dialog = std::move(*pending_);
  pending_.reset();
  Finish(std::move(dialog), paths);
}

void FileDialogs::Finish(Pending dialog, std::vector<QString> paths) {
  const size_t wanted = IsSingleMode(dialog.mode) ? 1 : paths.size();
  if (dialog.run_callback) {
    std::vector<CefString> chosen;
    for (size_t i = 0; i < paths.size() && i < wanted; ++i) {
      chosen.push_back(Cef(paths[i]));
    }
    PostUiTask([callback = dialog.run_callback, chosen] {
      callback->OnFileDialogDismissed(chosen);
    });
    return;
  }
  QJsonArray files;
  for (const QString& path : paths) {
    // Chromium resolves relative paths against its own directory, and an
    // empty one would be this process's.
    if (!path.isEmpty() && static_cast<size_t>(files.size()) < wanted) {
      files.append(QFileInfo(path).absoluteFilePath());
    }
  }
  if (files.isEmpty()) {
    return;  // Cancelled: the input keeps what it had.
  }
  browser_->SendSessionCommand(
      browser_->SessionForFrame(dialog.frame_id),
      QStringLiteral("DOM.setFileInputFiles"),
      QJsonObject{{"files", files}, {"backendNodeId", dialog.backend_node_id}},
      [](const QJsonObject&, const QJsonObject& error) {
        if (!error.isEmpty()) {
          LOG(WARNING) << "The chosen files could not be given to the page: "
                       << error.value(QLatin1String("message"))
                              .toString()
                              .toStdString();
        }
      });
}

void FileDialogs::OnBrowserClosed() {
  if (pending_) {
    Pending dialog = std::move(*pending_);
    pending_.reset();
    Finish(std::move(dialog), {});
  }
}

void FileDialogs::Release() {
  pending_.reset();
}

void FileDialogs::WarnNoHandler() {
  if (warned_no_handler_) {
    return;
  }
  warned_no_handler_ = true;
  LOG(WARNING) << "File choosers are cancelled without a CefDialogHandler "
                  "that shows them: the engine has no dialog of its own";
}

}  // namespace cefengine
