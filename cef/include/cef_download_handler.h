// Downloads started by a browser.

#ifndef CEF_INCLUDE_CEF_DOWNLOAD_HANDLER_H_
#define CEF_INCLUDE_CEF_DOWNLOAD_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_download_item.h"

// Lets a download start: |download_path| is the full target path (empty:
// the suggested name in the default folder); |show_dialog| asks the user.
class CefBeforeDownloadCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(const CefString& download_path, bool show_dialog) = 0;
};

// Controls a running download.
class CefDownloadItemCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Cancel() = 0;
  virtual void Pause() = 0;
  virtual void Resume() = 0;
};

// Called on the UI thread.
class CefDownloadHandler : public virtual CefBaseRefCounted {
 public:
  // Whether a download of |url| may start at all.
  virtual bool CanDownload(CefRefPtr<CefBrowser> browser,
                           const CefString& url,
                           const CefString& request_method) {
    return true;
  }

  // Before a download starts. True to handle it: then |callback| must be
  // continued (now or later) or the download stays pending. False cancels
  // it unless the engine has a default handling.
  virtual bool OnBeforeDownload(CefRefPtr<CefBrowser> browser,
                                CefRefPtr<CefDownloadItem> download_item,
                                const CefString& suggested_name,
                                CefRefPtr<CefBeforeDownloadCallback> callback) {
    return false;
  }

  // Progress or state of a download changed; may come before
  // OnBeforeDownload.
  virtual void OnDownloadUpdated(CefRefPtr<CefBrowser> browser,
                                 CefRefPtr<CefDownloadItem> download_item,
                                 CefRefPtr<CefDownloadItemCallback> callback) {}
};

#endif  // CEF_INCLUDE_CEF_DOWNLOAD_HANDLER_H_
