// A page's alert, confirm, prompt and beforeunload dialogs, put to the
// client's CefJSDialogHandler and answered with Page.handleJavaScriptDialog.
// Chromium holds the page until the answer comes.

#ifndef CEF_LIBCEF_BROWSER_SCRIPT_DIALOGS_H_
#define CEF_LIBCEF_BROWSER_SCRIPT_DIALOGS_H_

#include <optional>

#include <QJsonObject>
#include <QString>

#include "include/cef_jsdialog_handler.h"

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class ScriptDialogs {
 public:
  explicit ScriptDialogs(BrowserImpl* browser);
  ScriptDialogs(const ScriptDialogs&) = delete;
  ScriptDialogs& operator=(const ScriptDialogs&) = delete;

  // Page.javascriptDialogOpening.
  void OnOpening(const QJsonObject& params);
  // Page.javascriptDialogClosed, which follows our own answers too.
  void OnClosed(const QJsonObject& params);

  // The browser is about to navigate (a reload when |reload|) or close the
  // page. A dialog still open is dismissed first: Chromium wedges a page
  // whose navigation starts while a dialog holds it.
  void BeforeLeaving(bool reload);
  // The page committed a new document, crashed or went: an answer the
  // client still owes is no longer wanted.
  void OnPageLeft();
  // The client's answer to dialog |serial|; a stale one is ignored.
  void Answer(int serial, bool success, const QString& user_input);
  // A beforeunload dialog waits for the client's answer.
  bool waiting_for_unload_answer() const;
  // CefShutdown: lets go of the handler without calling it.
  void Release();

 private:
  struct Pending {
    int serial = 0;
    bool beforeunload = false;
    bool prompt = false;
    // Null when the engine answers the dialog itself.
    CefRefPtr<CefJSDialogHandler> handler;
  };

  // Answers Chromium and tells the client and the browser.
  void Finish(Pending dialog, bool success, const QString& user_input);
  // Ends the pending dialog without the client's answer, dismissing it in
  // the page when |dismiss|; |unload_allowed| is how a beforeunload ended.
  void Drop(bool dismiss, bool unload_allowed);

  BrowserImpl* const browser_;
  std::optional<Pending> pending_;
  int last_serial_ = 0;
  bool expect_reload_ = false;
  bool warned_no_handler_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_SCRIPT_DIALOGS_H_
