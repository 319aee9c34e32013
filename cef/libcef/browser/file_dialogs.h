// File choosers, put to the client's CefDialogHandler: a page's
// <input type=file>, which Chromium reports as Page.fileChooserOpened while
// interception is on and which gets its files through DOM.setFileInputFiles,
// and CefBrowserHost::RunFileDialog. There is no chooser of the engine's
// own: without a handler that shows one, each is cancelled.

#ifndef CEF_LIBCEF_BROWSER_FILE_DIALOGS_H_
#define CEF_LIBCEF_BROWSER_FILE_DIALOGS_H_

#include <optional>
#include <vector>

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include "include/cef_browser.h"
#include "include/cef_dialog_handler.h"

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class FileDialogs {
 public:
  explicit FileDialogs(BrowserImpl* browser);
  FileDialogs(const FileDialogs&) = delete;
  FileDialogs& operator=(const FileDialogs&) = delete;

  // Page.fileChooserOpened.
  void OnChooserOpened(const QJsonObject& params);
  // A frame committed a new document (every frame's, for the main frame):
  // the inputs of the old one are gone.
  void OnFrameNavigated(const QString& frame_id, bool main);
  // CefBrowserHost::RunFileDialog.
  void Run(cef_file_dialog_mode_t mode,
           const CefString& title,
           const CefString& default_file_path,
           const std::vector<CefString>& accept_filters,
           CefRefPtr<CefRunFileDialogCallback> callback);
  // The client's answer to dialog |serial|; no paths cancel. A stale one
  // is ignored.
  void Answer(int serial, const std::vector<QString>& paths);
  // The browser closes: a RunFileDialog still open is dismissed.
  void OnBrowserClosed();
  // CefShutdown: lets go of the callbacks without calling them.
  void Release();

 private:
  struct Pending {
    int serial = 0;
    cef_file_dialog_mode_t mode = FILE_DIALOG_OPEN;
    // A page's chooser: its input.
    QString frame_id;
    int backend_node_id = 0;
    // RunFileDialog's.
    CefRefPtr<CefRunFileDialogCallback> run_callback;
  };

  // DOM.describeNode answered for the chooser |serial|.
  void OnInputDescribed(int serial,
                        const QJsonObject& node,
                        const QJsonObject& error);
  // Puts the pending dialog to the client; cancels it when no handler
  // takes it.
  void Ask(const CefString& title,
           const CefString& default_file_path,
           const QStringList& filters);
  void Finish(Pending dialog, std::vector<QString> paths);
  void WarnNoHandler();

  BrowserImpl* const browser_;
  // CEF runs one file dialog at a time.
  std::optional<Pending> pending_;
  int last_serial_ = 0;
  bool warned_no_handler_ = false;
  bool warned_no_input_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_FILE_DIALOGS_H_
