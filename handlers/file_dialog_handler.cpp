#include "handlers/file_dialog_handler.h"

#include "host/view_support/conversions.h"

#include "include/base/cef_bind.h"
#include "include/base/cef_callback.h"
#include "include/cef_task.h"
#include "include/wrapper/cef_closure_task.h"

#include <string>

namespace
{
void replaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}
} // namespace

bool FileDialogHandler::OnFileDialog(CefRefPtr<CefBrowser> browser, FileDialogMode mode, const CefString& title,
                                     const CefString& default_file_path,
                                     const std::vector<CefString>& accept_filters,
                                     const std::vector<CefString>& accept_extensions,
                                     const std::vector<CefString>& accept_descriptions,
                                     CefRefPtr<CefFileDialogCallback> callback)
{
    const QString filter = convertFilters(accept_filters);
    m_callback = callback;
    Q_EMIT cefFileDialogRequested(static_cast<int>(mode), Conversions::convertString(default_file_path), filter);
    return true;
}

QString FileDialogHandler::convertFilters(const std::vector<CefString>& filters)
{
    QString result;
    for (const CefString& filter : filters)
    {
        std::string s = filter.ToString();
        // The catch-all filter comes at the end anyway.
        if (s.empty() || s == "All Files (*)" || s == "All Files|*")
            continue;
        if (s.find('|') == std::string::npos)
        {
            s += "*" + s + ";;";
        }
        else
        {
            replaceAll(s, "|", " (");
            replaceAll(s, ".", "*.");
            replaceAll(s, ";", " ");
            s += ");;";
        }
        // Read as Latin-1 although the bytes are UTF-8: that is how the filters have always come.
        result += QString::fromLatin1(s.c_str());
    }
    result += QStringLiteral("All Files (*.*)");
    return result;
}

void FileDialogHandler::setSelectedFiles(const QStringList& files)
{
    m_selectedFiles = files;
    continueDialog();
}

void FileDialogHandler::continueDialog()
{
    if (!CefCurrentlyOn(TID_UI))
    {
        CefPostTask(TID_UI,
                    base::BindOnce(&FileDialogHandler::continueDialog, CefRefPtr<FileDialogHandler>(this)));
        return;
    }
    if (m_selectedFiles.isEmpty())
    {
        m_callback->Cancel();
        return;
    }
    // A list of one empty path is no cancel: the engine hears of the empty path.
    std::vector<CefString> paths;
    for (const QString& file : m_selectedFiles)
        paths.push_back(Conversions::convertString(file));
    m_callback->Continue(paths);
}
