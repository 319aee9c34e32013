#pragma once

#include "host/view_support/process_messages/cef_client_message.h"

#include "include/cef_base.h"
#include "include/cef_browser.h"

#include <QObject>
#include <QPoint>
#include <QString>
#include <QVariantList>

#include <vector>

// Dispatches the host methods that a page calls ("cefclient" messages): a fixed set is served
// here, every other name goes to the host through unhandled. Runs on the engine UI thread; the
// signals reach the client queued.
class CefClientMessageHandler : public QObject, public CefBaseRefCounted
{
    Q_OBJECT

public:
    void handleMessage(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message) const;

    void handleDevTools(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message) const;
    void handleZoomLevel(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message) const;
    void handleSetTitle(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message) const;
    void handleSetDownloadLocation(CefRefPtr<CefBrowser> browser,
                                   CefRefPtr<brovia::CefClientMessage> message) const;
    void handleUnhandled(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message) const;
    // The page's file and folder dialogs; the chosen paths go back to the page as the answer.
    void handleOpenFolder(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message) const;
    void handleOpenIcon(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message) const;
    void handleFileOpenSave(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message) const;
    void handleFileTypes(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message) const;


Q_SIGNALS:
    void unhandled(QString method, QVariantList args) const;
    void error(QString msg) const;
    void showDevTools(QPoint point) const;
    void showDevTools() const;
    void hideDevTools() const;
    void setZoomLevel(double factor) const;
    void changeZoomLevel(double delta) const;
    void setDownloadLocation(QString loc) const;
    void titleChanged(QString title) const;

private:
    static void runFileDialog(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientMessage> message,
                              cef_file_dialog_mode_t mode, const CefString& title, const CefString& defaultPath,
                              const std::vector<CefString>& filters);
    // [[folder], title]: false (and error raised) when the shape is off.
    bool folderAndTitle(CefRefPtr<brovia::CefClientMessage> message, const QString& method, CefString& folder,
                        CefString& title) const;

    // The single string argument of [[string]], or false.
    static bool singleString(CefRefPtr<CefListValue> args, bool& outerOk, CefString& value);

    IMPLEMENT_REFCOUNTING(CefClientMessageHandler);
};
