// File chooser dialogs that a page opens.

#ifndef CEF_INCLUDE_CEF_DIALOG_HANDLER_H_
#define CEF_INCLUDE_CEF_DIALOG_HANDLER_H_
#pragma once

#include <vector>

#include "include/cef_base.h"
#include "include/cef_browser.h"

// Ends a file dialog: Continue() with the chosen paths, Cancel() for none.
class CefFileDialogCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(const std::vector<CefString>& file_paths) = 0;
  virtual void Cancel() = 0;
};

// Called on the UI thread.
class CefDialogHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_file_dialog_mode_t FileDialogMode;

  // A file chooser is wanted. |accept_filters| holds MIME types (e.g.
  // "text/*"), extensions (".txt") or "description|.ext1;.ext2" entries;
  // |accept_extensions| and |accept_descriptions| run parallel to it. True
  // if the client shows the dialog and will answer |callback|; false for
  // the engine's dialog.
  virtual bool OnFileDialog(CefRefPtr<CefBrowser> browser,
                            FileDialogMode mode,
                            const CefString& title,
                            const CefString& default_file_path,
                            const std::vector<CefString>& accept_filters,
                            const std::vector<CefString>& accept_extensions,
                            const std::vector<CefString>& accept_descriptions,
                            CefRefPtr<CefFileDialogCallback> callback) {
    return false;
  }
};

#endif  // CEF_INCLUDE_CEF_DIALOG_HANDLER_H_
