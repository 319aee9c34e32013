// JavaScript alert, confirm and prompt dialogs, and the before-unload
// confirmation.

#ifndef CEF_INCLUDE_CEF_JSDIALOG_HANDLER_H_
#define CEF_INCLUDE_CEF_JSDIALOG_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"

// Ends a dialog: |success| is OK versus Cancel, |user_input| the text of a
// prompt.
class CefJSDialogCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(bool success, const CefString& user_input) = 0;
};

// Called on the UI thread.
class CefJSDialogHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_jsdialog_type_t JSDialogType;

  // A page dialog. True if the client shows it and will answer |callback|.
  // Otherwise setting |suppress_message| answers it at once as cancelled,
  // and leaving it false gets the engine's dialog.
  virtual bool OnJSDialog(CefRefPtr<CefBrowser> browser,
                          const CefString& origin_url,
                          JSDialogType dialog_type,
                          const CefString& message_text,
                          const CefString& default_prompt_text,
                          CefRefPtr<CefJSDialogCallback> callback,
                          bool& suppress_message) {
    return false;
  }

  // The page asks whether to leave it (or reload, |is_reload|). True if the
  // client answers |callback|.
  virtual bool OnBeforeUnloadDialog(CefRefPtr<CefBrowser> browser,
                                    const CefString& message_text,
                                    bool is_reload,
                                    CefRefPtr<CefJSDialogCallback> callback) {
    return false;
  }

  // Pending dialogs should be dropped, e.g. on navigation.
  virtual void OnResetDialogState(CefRefPtr<CefBrowser> browser) {}

  // The engine's own dialog closed.
  virtual void OnDialogClosed(CefRefPtr<CefBrowser> browser) {}
};

#endif  // CEF_INCLUDE_CEF_JSDIALOG_HANDLER_H_
