#include "handlers/cef_client_message_handler.h"

#include "handlers/run_file_dialog_callback.h"
#include "host/instrument/instrument.h"
#include "host/view_support/conversions.h"

#include <cstring>
#include <string>

namespace
{
// Built once at load, in the order they are tried.
const std::string kOpenDevTools = "openDevTools";
const std::string kCloseDevTools = "closeDevTools";
const std::string kSetZoomLevel = "setZoomLevel";
const std::string kChangeZoomLevel = "changeZoomLevel";
const std::string kSetTitle = "setTitle";
const std::string kSetDownloadLocation = "setDownloadLocation";
const std::string kOpenFolder = "openFolder";
const std::string kOpenIcon = "openIcon";
const std::string kOpenFile = "openFile";
const std::string kSaveFile = "saveFile";
const std::string kOpenFileTypes = "openFileTypes";
const std::string kSaveFileTypes = "saveFileTypes";
const std::string kOpenMultipleFileTypes = "openMultipleFileTypes";
const std::string kEnableDragAndDrop = "enable-dragndrop";

bool same(const std::string& name, const std::string& constant)
{
    return name.size() == constant.size() && std::memcmp(name.data(), constant.data(), name.size()) == 0;
}
} // namespace

void CefClientMessageHandler::handleMessage(CefRefPtr<CefBrowser> browser,
                                            CefRefPtr<brovia::CefClientMessage> message) const
{
    const std::string name = message->method.empty() ? std::string() : message->method.ToString();
    BROVIA_INSTRUMENT_CONTEXT("handleMessage", "methodName", std::string(name));
    if (same(name, kOpenDevTools) || same(name, kCloseDevTools))
        handleDevTools(browser, message);
    else if (same(name, kSetZoomLevel) || same(name, kChangeZoomLevel))
        handleZoomLevel(browser, message);
    else if (same(name, kSetTitle))
        handleSetTitle(browser, message);
    else if (same(name, kSetDownloadLocation))
        handleSetDownloadLocation(browser, message);
    else if (same(name, kEnableDragAndDrop))
        return;
    else if (same(name, kOpenFolder))
        handleOpenFolder(browser, message);
    else if (same(name, kOpenIcon))
        handleOpenIcon(browser, message);
    else if (same(name, kOpenFile) || same(name, kSaveFile))
        handleFileOpenSave(browser, message);
    else if (same(name, kOpenFileTypes) || same(name, kSaveFileTypes) || same(name, kOpenMultipleFileTypes))
        handleFileTypes(browser, message);
    else
        handleUnhandled(browser, message);
}

void CefClientMessageHandler::handleDevTools(CefRefPtr<CefBrowser>, CefRefPtr<brovia::CefClientMessage> message) const
{
    const CefString open(kOpenDevTools);
    if (cef_string_utf16_cmp(message->method.GetStruct(), open.GetStruct()) == 0)
        Q_EMIT showDevTools(QPoint(0, 0));
    else
        Q_EMIT hideDevTools();
}

void CefClientMessageHandler::handleZoomLevel(CefRefPtr<CefBrowser>, CefRefPtr<brovia::CefClientMessage> message) const
{
    BROVIA_INSTRUMENT("handleZoomLevel");
    const QString method = Conversions::convertString(message->method);
    const QString failure =
        QStringLiteral("The first argument to %1 must be a list with one Integer zoom value.").arg(method);
    CefRefPtr<CefListValue> args = message->args;
    if (!args || args->GetSize() != 1 || args->GetType(0) != VTYPE_LIST)
    {
        Q_EMIT error(failure);
        return;
    }
    CefRefPtr<CefListValue> inner = args->GetList(0);
    if (inner->GetSize() != 1 || inner->GetType(0) != VTYPE_INT)
    {
        Q_EMIT error(failure);
        return;
    }
    // The page speaks in percent points.
    const double factor = inner->GetInt(0) / 100.0;
    if (method == QLatin1String("setZoomLevel"))
        Q_EMIT setZoomLevel(factor);
    else
        Q_EMIT changeZoomLevel(factor);
}

bool CefClientMessageHandler::singleString(CefRefPtr<CefListValue> args, bool& outerOk, CefString& value)
{
    outerOk = args && args->GetSize() == 1 && args->GetType(0) == VTYPE_LIST;
    if (!outerOk)
        return false;
    CefRefPtr<CefListValue> inner = args->GetList(0);
    if (inner->GetSize() != 1 || inner->GetType(0) != VTYPE_STRING)
        return false;
    value = inner->GetString(0);
    return true;
}

void CefClientMessageHandler::handleSetTitle(CefRefPtr<CefBrowser>, CefRefPtr<brovia::CefClientMessage> message) const
{
    bool outerOk = false;
    CefString title;
    if (singleString(message->args, outerOk, title))
        Q_EMIT titleChanged(Conversions::convertString(title));
    else if (!outerOk)
        Q_EMIT error(QStringLiteral(
            "The first argument to setTitle must be an array containing a string containing the new title."));
    else
        Q_EMIT error(QStringLiteral("The first argument to setTitle must be a string containing the new title."));
}

void CefClientMessageHandler::handleSetDownloadLocation(CefRefPtr<CefBrowser>,
                                                        CefRefPtr<brovia::CefClientMessage> message) const
{
    bool outerOk = false;
    CefString path;
    if (singleString(message->args, outerOk, path))
        Q_EMIT setDownloadLocation(Conversions::convertString(path));
    else
        Q_EMIT error(
            QStringLiteral("The first argument to setDownloadPath must be a string containing the download path."));
}

void CefClientMessageHandler::handleUnhandled(CefRefPtr<CefBrowser>, CefRefPtr<brovia::CefClientMessage> message) const
{
    Q_EMIT unhandled(Conversions::convertString(message->method), Conversions::convertList(message->args));
}

void CefClientMessageHandler::runFileDialog(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message,
                                            cef_file_dialog_mode_t mode, const CefString& title,
                                            const CefString& defaultPath, const std::vector<CefString>& filters)
{
    // The browser may have closed while the call was on its way.
    CefRefPtr<CefBrowserHost> host = browser ? browser->GetHost() : nullptr;
    if (!host)
        return;
    CefRefPtr<RunFileDialogCallback> callback = new RunFileDialogCallback(browser, message->reply());
    host->RunFileDialog(mode, title, defaultPath, filters, callback);
}

bool CefClientMessageHandler::folderAndTitle(CefRefPtr<brovia::CefClientMessage> message, const QString& method,
                                             CefString& folder, CefString& title) const
{
    CefRefPtr<CefListValue> args = message->args;
    if (!args || args->GetSize() != 2 || args->GetType(0) != VTYPE_LIST || args->GetType(1) != VTYPE_STRING)
    {
        Q_EMIT error(QStringLiteral("The first argument to %1 is a list with the first element a string containing "
                                    "the initial folder. The second argument is a string containing the title.")
                         .arg(method));
        return false;
    }
    CefRefPtr<CefListValue> inner = args->GetList(0);
    if (inner->GetSize() != 1 || inner->GetType(0) != VTYPE_STRING)
    {
        Q_EMIT error(
            QStringLiteral("The first argument to %1 is a list with the first element a string containing the initial "
                           "folder.")
                .arg(method));
        return false;
    }
    folder = inner->GetString(0);
    title = args->GetString(1);
    return true;
}

void CefClientMessageHandler::handleOpenFolder(CefRefPtr<CefBrowser> browser,
                                               CefRefPtr<brovia::CefClientMessage> message) const
{
    CefString folder;
    CefString title;
    if (folderAndTitle(message, QStringLiteral("openFolder"), folder, title))
        runFileDialog(browser, message, FILE_DIALOG_OPEN_FOLDER, title, folder, {});
}

void CefClientMessageHandler::handleOpenIcon(CefRefPtr<CefBrowser> browser,
                                             CefRefPtr<brovia::CefClientMessage> message) const
{
    runFileDialog(browser, message, FILE_DIALOG_OPEN, "Open Icon File", CefString(),
                  {"image/jpeg", "image/png", "image/gif"});
}

void CefClientMessageHandler::handleFileOpenSave(CefRefPtr<CefBrowser> browser,
                                                 CefRefPtr<brovia::CefClientMessage> message) const
{
    const QString method = Conversions::convertString(message->method);
    CefString folder;
    CefString title;
    if (!folderAndTitle(message, method, folder, title))
        return;
    const cef_file_dialog_mode_t mode = message->method.ToString() == kOpenFile ? FILE_DIALOG_OPEN : FILE_DIALOG_SAVE;
    runFileDialog(browser, message, mode, title, folder, {".txapp"});
}

void CefClientMessageHandler::handleFileTypes(CefRefPtr<CefBrowser> browser,
                                              CefRefPtr<brovia::CefClientMessage> message) const
{
    const QString method = Conversions::convertString(message->method);
    CefRefPtr<CefListValue> args = message->args;
    // The third argument is not checked: of another type it reads as no initial directory.
    if (!args || args->GetSize() != 3 || args->GetType(0) != VTYPE_LIST || args->GetType(1) != VTYPE_STRING)
    {
        Q_EMIT error(QStringLiteral("%1 takes three arguments, a list of file types, the title, and the initial "
                                    "directory.")
                         .arg(method));
        return;
    }
    std::vector<CefString> filters;
    CefRefPtr<CefListValue> types = args->GetList(0);
    for (size_t index = 0; index < types->GetSize(); ++index)
    {
        if (types->GetType(index) != VTYPE_STRING)
        {
            Q_EMIT error(QStringLiteral("All file type filters must be strings."));
            return;
        }
        filters.push_back(types->GetString(index));
    }
    const std::string name = message->method.ToString();
    const cef_file_dialog_mode_t mode = name == kOpenMultipleFileTypes ? FILE_DIALOG_OPEN_MULTIPLE
                                        : name == kSaveFileTypes       ? FILE_DIALOG_SAVE
                                                                       : FILE_DIALOG_OPEN;
    runFileDialog(browser, message, mode, args->GetString(1), args->GetString(2), filters);
}
