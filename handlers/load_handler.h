#pragma once

#include "include/cef_load_handler.h"

#include <QObject>
#include <QString>

// Turns the engine's load notifications of one browser into Qt signals, and logs failed loads.
// The engine calls it on its UI thread; the signals reach their receivers on the Qt main thread
// queued.
class LoadHandler : public QObject, public CefLoadHandler
{
    Q_OBJECT

public:
    LoadHandler();

    // Main frames only.
    void OnLoadStart(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                     TransitionType transition_type) override;
    // Main frames only; ok is httpStatusCode < 400.
    void OnLoadEnd(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, int httpStatusCode) override;
    // Any frame, unlike the two above: a failed sub-frame reports its own URL.
    void OnLoadError(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, ErrorCode errorCode,
                     const CefString& errorText, const CefString& failedUrl) override;
    // Reports the main frame's URL whichever frame changed.
    void OnLoadingStateChange(CefRefPtr<CefBrowser> browser, bool isLoading, bool canGoBack,
                              bool canGoForward) override;

Q_SIGNALS:
    void loadStarted(QString sourceUrl);
    void loadFinished(QString sourceUrl, bool ok);
    void loadStateChanged(QString sourceUrl, bool isLoading, bool canGoBack, bool canGoForward);

private:
    IMPLEMENT_REFCOUNTING(LoadHandler);
};
