#pragma once

#include "host/view_interface/qcef_data_types.h"

#include "include/cef_client.h"

#include <QCursor>
#include <QImage>
#include <QObject>
#include <QRect>
#include <QString>
#include <QUrl>
#include <QVector>

#include <atomic>

class DisplayHandler;
class LifeSpanHandler;
class LoadHandler;
class RenderHandler;
class RequestHandler;
class QWidget;

// The hub of one view: owns the engine callback handlers and hands them to the engine, forwards
// their signals so that the view connects to one object, and carries the view's commands to the
// browser. Lives on the Qt main thread; the engine calls it on its UI thread, so every forwarded
// signal reaches this object, and through it the view, queued and in order.
class BrowserClient : public QObject, public CefClient
{
    Q_OBJECT

public:
    // Qt main thread. The view goes on to the handlers that need the widget.
    explicit BrowserClient(QWidget* view);
    ~BrowserClient() override;

    CefRefPtr<CefDisplayHandler> GetDisplayHandler() override;
    CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override;
    CefRefPtr<CefLoadHandler> GetLoadHandler() override;
    CefRefPtr<CefRenderHandler> GetRenderHandler() override;
    CefRefPtr<CefRequestHandler> GetRequestHandler() override;

    // Qt main thread: the single orderly teardown, called by the view's destructor and by the
    // engine manager when the application quits. Closes the browser asynchronously and cuts the
    // handlers' signals; a second call does nothing more.
    void cleanup();

    // Any thread. Null before the engine reported the browser, and after it closed.
    CefRefPtr<CefBrowser> GetBrowser();
    int GetBrowserId();

    int DeviceToLogical(int value) const;
    int LogicalToDevice(int value) const;
    void DisableDirtyRectHandling(bool disabled);

    // The paint sink, for the view's geometry questions.
    CefRefPtr<RenderHandler> renderHandler() const;

    bool isCleanedUp() const { return m_cleanedUp; }

Q_SIGNALS:
    void viewUpdated(QImage image, QVector<QRect> dirtyRects);
    void linkClicked(QUrl url);
    void renderProcessTerminated(QCefDataTypes::TerminationReason);
    void cursorChanged(QCursor cursor);
    void imeRectChanged(QRect rect);
    void dpiChanged(float deviceScaleFactor);
    void tooltipChanged(QString text);
    void javaScriptConsoleMessage(QString msg, QString src, int line);
    void loadStarted(QString sourceUrl);
    void loadFinished(QString sourceUrl, bool ok);
    void loadStateChanged(QString sourceUrl, bool isLoading, bool canGoBack, bool canGoForward);
    void titleChanged(QString title);
    void urlChanged(QUrl url);

private Q_SLOTS:
    void onDragFinished(Qt::DropAction dropAction);

private:
    CefRefPtr<DisplayHandler> m_displayHandler;
    CefRefPtr<LifeSpanHandler> m_lifeSpanHandler;
    CefRefPtr<LoadHandler> m_loadHandler;
    CefRefPtr<RenderHandler> m_renderHandler;
    CefRefPtr<RequestHandler> m_requestHandler;
    std::atomic<bool> m_cleanedUp{false};

    IMPLEMENT_REFCOUNTING(BrowserClient);
};
