#pragma once

#include "include/cef_download_handler.h"

#include <mutex>

// Downloads go to a folder the host may change; the engine then asks where to save through the
// file dialog, with that folder's path as the default. Engine UI thread; the location is written
// on the Qt main thread.
class DownloadHandler : public CefDownloadHandler
{
public:
    // The user's download folder.
    DownloadHandler();

    bool CanDownload(CefRefPtr<CefBrowser> browser, const CefString& url, const CefString& request_method) override;
    bool OnBeforeDownload(CefRefPtr<CefBrowser> browser, CefRefPtr<CefDownloadItem> download_item,
                          const CefString& suggested_name, CefRefPtr<CefBeforeDownloadCallback> callback) override;
    void OnDownloadUpdated(CefRefPtr<CefBrowser> browser, CefRefPtr<CefDownloadItem> download_item,
                           CefRefPtr<CefDownloadItemCallback> callback) override;

    // Any thread. Empty: names resolve against the current directory.
    void setDownloadLocation(const CefString& location);
    CefString downloadLocation() const;

private:
    mutable std::mutex m_mutex;
    CefString m_downloadLocation;

    IMPLEMENT_REFCOUNTING(DownloadHandler);
};
