#pragma once

#include "include/cef_display_handler.h"

#include <QCursor>
#include <QObject>
#include <QString>
#include <QUrl>

// Address, title, tooltip, console and cursor changes of one browser, as Qt signals. The engine
// calls it on its UI thread; the signals reach the Qt main thread queued.
class DisplayHandler : public QObject, public CefDisplayHandler
{
    Q_OBJECT

public:
    DisplayHandler() = default;

    void OnAddressChange(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, const CefString& url) override;
    void OnTitleChange(CefRefPtr<CefBrowser> browser, const CefString& title) override;
    bool OnTooltip(CefRefPtr<CefBrowser> browser, CefString& text) override;
    bool OnConsoleMessage(CefRefPtr<CefBrowser> browser, cef_log_severity_t level, const CefString& message,
                          const CefString& source, int line) override;
    bool OnCursorChange(CefRefPtr<CefBrowser> browser, CefCursorHandle cursor, cef_cursor_type_t type,
                        const CefCursorInfo& custom_cursor_info) override;

    // Writes a console message into the diagnostic log. Kept for hosts that want it; the handler
    // itself leaves console messages to the signal and the engine's own log.
    static void logConsoleMessage(int browserId, cef_log_severity_t level, const QString& message,
                                  const QString& source, int line);

Q_SIGNALS:
    void titleChanged(QString title);
    void urlChanged(QUrl url);
    void tooltipChanged(QString text);
    void javaScriptConsoleMessage(QString msg, QString src, int line);
    void cursorChanged(QCursor);

private:
    IMPLEMENT_REFCOUNTING(DisplayHandler);
};
