#pragma once

#include "host/export/brovia_export.h"
#include "host/view_interface/qcef_data_types.h"
#include "host/view_interface/qcef_view_settings.h"

#include <QImage>
#include <QList>
#include <QRect>
#include <QSize>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <QWidget>

#include <chrono>
#include <functional>

// The web view as the host programs against it. The implementation is a widget of the library;
// every operation is for the Qt main thread, the thread that owns the widget.
class BROVIA_EXPORT IQCefViewImpl : public QWidget
{
    Q_OBJECT

public:
    // The settings are the implementation's to read.
    IQCefViewImpl(QWidget* parent, const QCefViewSettings& settings);
    ~IQCefViewImpl() override;

    virtual void load(const QUrl& url) = 0;
    virtual void setHtml(const QString& html) = 0;
    // Blocks the Qt main thread until the engine answers; a request it drops gives a null string.
    virtual QString html() = 0;
    virtual void setUrl(const QUrl& url) = 0;
    virtual QUrl url() const = 0;
    virtual void setZoomLevel(double level) = 0;
    // Blocks the Qt main thread for up to 5 s; 0.0 without a browser or without an answer.
    virtual double zoomLevel() = 0;
    virtual bool canGoBack() const = 0;
    virtual bool canGoForward() const = 0;
    virtual void runJavaScript(const QString& script, std::function<void(const QVariant&)> callback) = 0;
    // Blocks the Qt main thread for up to `timeout` (-1: no limit).
    virtual QVariant runJavaScriptSync(const QString& cmd, std::chrono::milliseconds timeout) = 0;
    // Blocks the Qt main thread for up to `timeout` (-1: no limit).
    virtual void repaintSync(std::chrono::milliseconds timeout) = 0;
    // Blocks the Qt main thread until the pixel (x, y) shows the red value, for up to `timeout`.
    virtual QImage repaintSync2(int x, int y, int red, const QRect& rect, bool dropFrame,
                                std::chrono::milliseconds timeout) = 0;
    virtual void showDevTools() = 0;
    virtual void clearBrowsingData() = 0;
    virtual void setContextMenuEnabled(bool enabled) = 0;
    virtual void setInspectEnabled(bool enabled) = 0;
    virtual void setClipboardAccessEnabled(bool enabled) = 0;
    virtual void setStoredFlag(bool value) = 0;
    virtual void setNavigationFlags(int flags) = 0;
    virtual void setKeyboardFlag(int value) = 0;
    virtual void setCachePath(const QString& path) = 0;
    virtual void setPaintFlag(bool enabled) = 0;
    virtual void find(int identifier, const QString& text, bool forward, bool matchCase, bool findNext) = 0;
    virtual void setJSDialogHandledByHost(bool handled) = 0;
    virtual void continueJSDialog(bool success, const QString& userInput) = 0;
    // Blocks the Qt main thread until a frame of at least that size is painted, for up to 10 s.
    virtual void setViewPortMinimumSizeSync(const QSize& size) = 0;
    virtual void setViewPortMinimumSize(const QSize& size) = 0;
    virtual void setDirtyRectHandlingDisabled(bool disabled) = 0;
    virtual QSize getRenderedImageSize() const = 0;
    virtual void setPrintDialogEnabled(bool enabled) = 0;
    virtual QString cachePath() = 0;
    virtual void disableEvents() = 0;

public Q_SLOTS:
    virtual void back() = 0;
    virtual void forward() = 0;
    virtual void reload() = 0;
    virtual void stop() = 0;

Q_SIGNALS:
    void loadStarted(const QString& sourceUrl);
    void loadFinished(const QString& sourceUrl, bool ok);
    void loadStateChanged(const QString& sourceUrl, bool isLoading, bool canGoBack, bool canGoForward);
    void titleChanged(const QString& title);
    void urlChanged(const QUrl& url);
    void linkClicked(const QUrl& url);
    void renderProcessTerminated(QCefDataTypes::TerminationReason);
    void javaScriptConsoleMessage(const QString& msg, const QString& src, int line);
    void receivedCefClientMessage(const QString& method, const QList<QVariant>& args);
    void jsDialogRequested(const QString& orginalUrl, QCefDataTypes::JSDialogType type, const QString& messageText,
                           const QString& defaultPromptText);
    void searchResultsReady(int searchID, int count, const QRect& searchRect, int matchIndex, bool final);
    void loadPrintDialogFinished(bool);
    void focusChanged(bool, Qt::FocusReason);
    void searchTriggered();
    void zoomInRequested(double);
    void zoomOutRequested(double);
    void zoomRestoreRequested(double);
};
