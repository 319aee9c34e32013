#include "handlers/download_handler.h"

#include "host/view_support/conversions.h"

#include <QDir>
#include <QStandardPaths>

DownloadHandler::DownloadHandler()
{
    const QStringList locations = QStandardPaths::standardLocations(QStandardPaths::DownloadLocation);
    if (!locations.isEmpty())
        m_downloadLocation = Conversions::convertString(locations.first());
}

bool DownloadHandler::CanDownload(CefRefPtr<CefBrowser>, const CefString&, const CefString&)
{
    return true;
}

bool DownloadHandler::OnBeforeDownload(CefRefPtr<CefBrowser>, CefRefPtr<CefDownloadItem>,
                                       const CefString& suggested_name, CefRefPtr<CefBeforeDownloadCallback> callback)
{
    const QDir folder(Conversions::convertString(downloadLocation()));
    const QString path = QDir::toNativeSeparators(folder.absoluteFilePath(Conversions::convertString(suggested_name)));
    // Always asks where to save, with this path as the default.
    callback->Continue(Conversions::convertString(path), true);
    return true;
}

void DownloadHandler::setDownloadLocation(const CefString& location)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_downloadLocation = location;
}

CefString DownloadHandler::downloadLocation() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_downloadLocation;
}

void DownloadHandler::OnDownloadUpdated(CefRefPtr<CefBrowser>, CefRefPtr<CefDownloadItem>,
                                        CefRefPtr<CefDownloadItemCallback>)
{
}
