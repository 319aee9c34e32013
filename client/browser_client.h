#pragma once

#include "handlers/context_menu_handler.h"
#include "host/view_interface/qcef_data_types.h"

#include "include/cef_client.h"

#include <QCursor>
#include <QImage>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QUrl>
#include <QVariantList>
#include <QVector>

#include "client/future.h"

#include <atomic>
#include <chrono>
#include <mutex>

class CefClientMessageHandler;
class ContextMenuHandler;
class JSCallBacksManager;
class JSDialogHandler;
class RunJavaScriptCallback;
class DisplayHandler;
class DownloadHandler;
class DragHandler;
class FindHandler;
class FocusHandler;
class KeyboardHandler;
class PrintDialogHandler;
class FileDialogHandler;
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

    CefRefPtr<CefContextMenuHandler> GetContextMenuHandler() override;
    CefRefPtr<CefDisplayHandler> GetDisplayHandler() override;
    CefRefPtr<CefDownloadHandler> GetDownloadHandler() override;
    CefRefPtr<CefDragHandler> GetDragHandler() override;
    CefRefPtr<CefFindHandler> GetFindHandler() override;
    CefRefPtr<CefFocusHandler> GetFocusHandler() override;
    CefRefPtr<CefJSDialogHandler> GetJSDialogHandler() override;
    CefRefPtr<CefDialogHandler> GetDialogHandler() override;
    CefRefPtr<CefPrintHandler> GetPrintHandler() override;
    CefRefPtr<CefKeyboardHandler> GetKeyboardHandler() override;
    // Null after cleanup.
    CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override;
    CefRefPtr<CefLoadHandler> GetLoadHandler() override;
    CefRefPtr<CefRenderHandler> GetRenderHandler() override;
    CefRefPtr<CefRequestHandler> GetRequestHandler() override;

    // Engine UI thread: the render side's answers and notifications. True for the names this
    // client knows, which are then handled; a message after cleanup counts as handled.
    bool OnProcessMessageReceived(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                  CefProcessId source_process, CefRefPtr<CefProcessMessage> message) override;

    // Qt main thread: the single orderly teardown, called by the view's destructor and by the
    // engine manager when the application quits. Closes the browser asynchronously and cuts the
    // handlers' signals; a second call does nothing more.
    void cleanup();

    // Any thread. Null before the engine reported the browser, after it closed and after cleanup.
    CefRefPtr<CefBrowser> GetBrowser();
    // Any thread; 0 without a browser.
    int GetBrowserId();

    int DeviceToLogical(int value) const;
    int LogicalToDevice(int value) const;
    void DisableDirtyRectHandling(bool disabled);

    // Evaluates script in the main frame; callback gets the value, by its mode. Any thread; a
    // browser must exist. After cleanup the callback is never called.
    void RunJavaScript(const QString& script, CefRefPtr<RunJavaScriptCallback> callback);

    // Qt main thread, blocking it up to timeout (-1: no limit). A round trip through the render
    // side, then a forced repaint: the first frame after it, or a null image when the time ran out.
    QImage RepaintSync(std::chrono::milliseconds timeout);
    // Holds frames back until one shows a pixel of the red value at (x, y); returns the part rect
    // of it, or a null image when the time ran out. dropFrame keeps that frame off the view.
    QImage RepaintSync2(int x, int y, int red, const QRect& rect, bool dropFrame, std::chrono::milliseconds timeout);

    // Zoom in the engine's levels (a factor of 1.2 to the power of the level), clamped to a
    // factor of 0.25 to 5. Nothing happens without a browser.
    void SetZoomLevel(double level);
    void ChangeZoomLevel(double delta);
    // 0.0 without a browser. Off the engine UI thread it blocks until that thread answers, for
    // kZoomReadTimeout at most; 0.0 when the engine can't answer in time or dropped the request.
    double GetZoomLevel();
    static constexpr std::chrono::milliseconds kZoomReadTimeout{5000};
    // Opens the engine's inspector at the point, through this client's handlers.
    void ShowInspector(const QPoint& point);
    // Sets every browsing-data preference the request context lets set; the caller's thread.
    void ClearBrowsingData();

    // The paint sink, for the view's geometry questions.
    CefRefPtr<RenderHandler> renderHandler() const;
    // The menu switches of the view.
    CefRefPtr<ContextMenuHandler> contextMenuHandler() const;
    // The view's answers to script dialogs and file dialogs.
    CefRefPtr<JSDialogHandler> jsDialogHandler() const;
    CefRefPtr<FileDialogHandler> fileDialogHandler() const;

    bool isCleanedUp() const { return m_cleanedUp; }

    // Whether the page's focused element takes text, as the page last reported; advisory, read
    // on the Qt main thread without a lock.
    bool IsFocusedNodeEditable() const { return m_focusedNodeEditable; }

Q_SIGNALS:
    void viewUpdated(QImage image, QVector<QRect> dirtyRects);
    void linkClicked(QUrl url);
    void renderProcessTerminated(QCefDataTypes::TerminationReason);
    void cursorChanged(QCursor cursor);
    void imeRectChanged(QRect rect);
    void dpiChanged(float deviceScaleFactor);
    void tooltipChanged(QString text);
    void focusLost(bool focusNext);
    void jsDialogRequested(QString orginalUrl, QCefDataTypes::JSDialogType type, QString messageText,
                           QString defaultPromptText);
    void cefFileDialogRequested(int mode, QString default_file_path, QString fileFilter);
    void cefContextMenuRequested(ContextMenuHandler::MenuModelState, QPoint);
    void cefPrintDialogRequested(int);
    void javaScriptConsoleMessage(QString msg, QString src, int line);
    void receivedCefClientMessage(QString method, QVariantList args);
    void loadStarted(QString sourceUrl);
    void loadFinished(QString sourceUrl, bool ok);
    void loadStateChanged(QString sourceUrl, bool isLoading, bool canGoBack, bool canGoForward);
    void titleChanged(QString title);
    void urlChanged(QUrl url);
    void searchResultsReady(int searchID, int count, QRect searchRect, int matchIndex, bool final);

private Q_SLOTS:
    void onShowDevTools(QPoint point);
    void onShowDevTools();
    void onHideDevTools();
    void onSetZoomLevel(double factor);
    void onChangeZoomLevel(double delta);
    void onDragFinished(Qt::DropAction dropAction);
    void onSetDownloadLocation(QString loc);
    void onMessageError(QString errorString);

private:
    CefRefPtr<LifeSpanHandler> lifeSpanHandler() const;

    CefRefPtr<CefClientMessageHandler> m_clientMessageHandler;
    CefRefPtr<ContextMenuHandler> m_contextMenuHandler;
    CefRefPtr<DisplayHandler> m_displayHandler;
    CefRefPtr<DownloadHandler> m_downloadHandler;
    CefRefPtr<DragHandler> m_dragHandler;
    CefRefPtr<FindHandler> m_findHandler;
    CefRefPtr<FocusHandler> m_focusHandler;
    CefRefPtr<JSDialogHandler> m_jsDialogHandler;
    CefRefPtr<FileDialogHandler> m_fileDialogHandler;
    CefRefPtr<PrintDialogHandler> m_printDialogHandler;
    CefRefPtr<KeyboardHandler> m_keyboardHandler;
    CefRefPtr<LifeSpanHandler> m_lifeSpanHandler;
    CefRefPtr<LoadHandler> m_loadHandler;
    CefRefPtr<RenderHandler> m_renderHandler;
    CefRefPtr<RequestHandler> m_requestHandler;
    CefRefPtr<JSCallBacksManager> m_jsCallbacks;
    CefRefPtr<Future<bool>> m_repaintFuture;
    // Guards m_lifeSpanHandler and m_repaintFuture, which the Qt main thread replaces while the
    // engine UI thread reads them. Held for a copy of the pointer only, never across a call.
    mutable std::mutex m_mutex;
    std::atomic<bool> m_focusedNodeEditable{false};
    std::atomic<bool> m_cleanedUp{false};

    IMPLEMENT_REFCOUNTING(BrowserClient);
};
