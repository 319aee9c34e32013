#pragma once

#include "include/cef_dialog_handler.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <vector>

// Every file dialog of one browser, a page's file input or a host method of the page: the
// engine's filter list becomes a Qt filter, and the view shows the dialog and hands the chosen
// paths back. The engine calls it on its UI thread.
class FileDialogHandler : public QObject, public CefDialogHandler
{
    Q_OBJECT

public:
    FileDialogHandler() = default;

    // Engine UI thread. Always true: the answer comes through setSelectedFiles.
    bool OnFileDialog(CefRefPtr<CefBrowser> browser, FileDialogMode mode, const CefString& title,
                      const CefString& default_file_path, const std::vector<CefString>& accept_filters,
                      const std::vector<CefString>& accept_extensions,
                      const std::vector<CefString>& accept_descriptions,
                      CefRefPtr<CefFileDialogCallback> callback) override;

    // The engine's filters ("image/*", ".png", "Images|.png;.jpg") as one Qt filter string, which
    // always ends with the catch-all filter.
    static QString convertFilters(const std::vector<CefString>& filters);

    // Any thread: the paths chosen for the dialog requested last; none cancels it.
    void setSelectedFiles(const QStringList& files);
    // Hands the stored paths to the engine on its UI thread.
    void continueDialog();

Q_SIGNALS:
    void cefFileDialogRequested(int mode, QString default_file_path, QString fileFilter);

private:
    CefRefPtr<CefFileDialogCallback> m_callback;
    QStringList m_selectedFiles;

    IMPLEMENT_REFCOUNTING(FileDialogHandler);
};
