#include "handlers/cef_client_message_handler.h"

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
    else if (same(name, kOpenFolder) || same(name, kOpenIcon) || same(name, kOpenFile) || same(name, kSaveFile) ||
             same(name, kOpenFileTypes) || same(name, kSaveFileTypes) || same(name, kOpenMultipleFileTypes))
        // The file dialogs of the page are not served yet: the host hears of the call.
        handleUnhandled(browser, message);
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

void CefClientMessageHandler::AddRef() const
{
    m_refCount.fetch_add(1, std::memory_order_relaxed);
}

bool CefClientMessageHandler::Release() const
{
    if (m_refCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
    {
        delete this;
        return true;
    }
    return false;
}

bool CefClientMessageHandler::HasOneRef() const
{
    return m_refCount.load(std::memory_order_acquire) == 1;
}

bool CefClientMessageHandler::HasAtLeastOneRef() const
{
    return m_refCount.load(std::memory_order_acquire) > 0;
}
