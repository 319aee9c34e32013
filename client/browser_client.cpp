#include "client/browser_client.h"

#include "client/get_zoom_level_task.h"
#include "client/js_callbacks_manager.h"
#include "host/view_support/process_messages/cef_client_message.h"
#include "client/multi_threaded_future.h"
#include "host/view_support/process_messages/focused_node_changed_message.h"
#include "host/view_support/process_messages/repaint_sync_message.h"
#include "host/view_support/process_messages/repaint_sync_result_message.h"
#include "host/view_support/process_messages/run_java_script_message.h"
#include "host/view_support/process_messages/run_java_script_result_message.h"
#include "client/run_java_script_callback.h"
#include "host/view_support/conversions.h"
#include "engine/life_span_handler.h"
#include "handlers/cef_client_message_handler.h"
#include "handlers/context_menu_handler.h"
#include "handlers/display_handler.h"
#include "handlers/download_handler.h"
#include "handlers/drag_handler.h"
#include "handlers/find_handler.h"
#include "handlers/focus_handler.h"
#include "handlers/keyboard_handler.h"
#include "handlers/print_dialog_handler.h"
#include "handlers/file_dialog_handler.h"
#include "handlers/js_dialog_handler.h"
#include "handlers/load_handler.h"
#include "handlers/request_handler.h"

#include "include/cef_browser.h"
#include "include/cef_request_context.h"
#include "include/base/cef_bind.h"
#include "include/base/cef_callback.h"
#include "include/cef_task.h"
#include "include/wrapper/cef_closure_task.h"
#include "include/cef_values.h"
#include "host/instrument/instrument.h"
#include "host/view_support/dpi_watcher.h"
#include "render/render_handler.h"

#include <QElapsedTimer>
#include <QMetaType>

#include <algorithm>
#include <future>
#include <vector>

namespace
{
// Factors 0.25 and 5.
const double kSmallestZoomLevel = -7.6035680338478615;
const double kLargestZoomLevel = 8.827469119589406;

double clampZoomLevel(double level)
{
    return std::clamp(level, kSmallestZoomLevel, kLargestZoomLevel);
}
} // namespace

BrowserClient::BrowserClient(QWidget* view)
    : m_clientMessageHandler(new CefClientMessageHandler())
    , m_contextMenuHandler(new ContextMenuHandler(view))
    , m_displayHandler(new DisplayHandler())
    , m_downloadHandler(new DownloadHandler())
    , m_dragHandler(new DragHandler())
    , m_findHandler(new FindHandler())
    , m_focusHandler(new FocusHandler())
    , m_jsDialogHandler(new JSDialogHandler(view))
    , m_fileDialogHandler(new FileDialogHandler())
    , m_printDialogHandler(new PrintDialogHandler())
    , m_keyboardHandler(new KeyboardHandler())
    , m_lifeSpanHandler(new LifeSpanHandler())
    , m_loadHandler(new LoadHandler())
    , m_renderHandler(new RenderHandler(view))
    , m_requestHandler(new RequestHandler())
    , m_jsCallbacks(new JSCallBacksManager())
{
    connect(m_requestHandler.get(), &RequestHandler::linkClicked, this, &BrowserClient::linkClicked);
    connect(m_requestHandler.get(), &RequestHandler::renderProcessTerminated, this,
            &BrowserClient::renderProcessTerminated);
    connect(m_contextMenuHandler.get(), &ContextMenuHandler::showDevTools, this,
            qOverload<QPoint>(&BrowserClient::onShowDevTools));
    connect(m_focusHandler.get(), &FocusHandler::focusLost, this, &BrowserClient::focusLost);
    connect(m_jsDialogHandler.get(), &JSDialogHandler::jsDialogRequested, this, &BrowserClient::jsDialogRequested);
    // Through the event loop even when raised on the Qt main thread: the view opens a dialog.
    connect(m_fileDialogHandler.get(), &FileDialogHandler::cefFileDialogRequested, this,
            &BrowserClient::cefFileDialogRequested, Qt::QueuedConnection);
    connect(m_printDialogHandler.get(), &PrintDialogHandler::cefPrintDialogRequested, this,
            &BrowserClient::cefPrintDialogRequested);
    connect(m_renderHandler.get(), &RenderHandler::viewUpdated, this, &BrowserClient::viewUpdated);
    connect(m_renderHandler.get(), &RenderHandler::imeRectChanged, this, &BrowserClient::imeRectChanged);
    connect(m_renderHandler.get(), &RenderHandler::dpiChanged, this, &BrowserClient::dpiChanged);
    connect(m_renderHandler.get(), &RenderHandler::dragFinished, this, &BrowserClient::onDragFinished);
    connect(m_loadHandler.get(), &LoadHandler::loadStarted, this, &BrowserClient::loadStarted);
    connect(m_loadHandler.get(), &LoadHandler::loadFinished, this, &BrowserClient::loadFinished);
    connect(m_loadHandler.get(), &LoadHandler::loadStateChanged, this, &BrowserClient::loadStateChanged);
    connect(m_displayHandler.get(), &DisplayHandler::titleChanged, this, &BrowserClient::titleChanged);
    connect(m_displayHandler.get(), &DisplayHandler::urlChanged, this, &BrowserClient::urlChanged);
    connect(m_displayHandler.get(), &DisplayHandler::tooltipChanged, this, &BrowserClient::tooltipChanged);
    connect(m_displayHandler.get(), &DisplayHandler::javaScriptConsoleMessage, this,
            &BrowserClient::javaScriptConsoleMessage);
    connect(m_displayHandler.get(), &DisplayHandler::cursorChanged, this, &BrowserClient::cursorChanged);
    connect(m_clientMessageHandler.get(), &CefClientMessageHandler::unhandled, this,
            &BrowserClient::receivedCefClientMessage);
    connect(m_clientMessageHandler.get(), &CefClientMessageHandler::error, this, &BrowserClient::onMessageError);
    connect(m_clientMessageHandler.get(), qOverload<QPoint>(&CefClientMessageHandler::showDevTools), this,
            qOverload<QPoint>(&BrowserClient::onShowDevTools));
    connect(m_clientMessageHandler.get(), &CefClientMessageHandler::hideDevTools, this,
            &BrowserClient::onHideDevTools);
    connect(m_clientMessageHandler.get(), &CefClientMessageHandler::setZoomLevel, this,
            &BrowserClient::onSetZoomLevel);
    connect(m_clientMessageHandler.get(), &CefClientMessageHandler::changeZoomLevel, this,
            &BrowserClient::onChangeZoomLevel);
    connect(m_clientMessageHandler.get(), &CefClientMessageHandler::titleChanged, this,
            &BrowserClient::titleChanged);
    connect(m_clientMessageHandler.get(), &CefClientMessageHandler::setDownloadLocation, this,
            &BrowserClient::onSetDownloadLocation);
    connect(m_contextMenuHandler.get(), &ContextMenuHandler::cefContextMenuRequested, this,
            &BrowserClient::cefContextMenuRequested);
    connect(m_findHandler.get(), &FindHandler::searchResultsReady, this, &BrowserClient::searchResultsReady);

    // Frames cross from the engine UI thread queued, and need their types known by name.
    qRegisterMetaType<ContextMenuHandler::MenuModelState>("ContextMenuHandler::MenuModelState");
    qRegisterMetaType<QVector<QRect>>("QVector<QRect>");
}

BrowserClient::~BrowserClient() = default;

CefRefPtr<CefContextMenuHandler> BrowserClient::GetContextMenuHandler()
{
    return m_contextMenuHandler;
}

CefRefPtr<CefDisplayHandler> BrowserClient::GetDisplayHandler()
{
    return m_displayHandler;
}

CefRefPtr<CefDownloadHandler> BrowserClient::GetDownloadHandler()
{
    return m_downloadHandler;
}

CefRefPtr<CefDragHandler> BrowserClient::GetDragHandler()
{
    return m_dragHandler;
}

CefRefPtr<CefFindHandler> BrowserClient::GetFindHandler()
{
    return m_findHandler;
}

CefRefPtr<CefFocusHandler> BrowserClient::GetFocusHandler()
{
    return m_focusHandler;
}

CefRefPtr<CefPrintHandler> BrowserClient::GetPrintHandler()
{
    return m_printDialogHandler;
}

CefRefPtr<CefKeyboardHandler> BrowserClient::GetKeyboardHandler()
{
    return m_keyboardHandler;
}

CefRefPtr<CefJSDialogHandler> BrowserClient::GetJSDialogHandler()
{
    return m_jsDialogHandler;
}

CefRefPtr<CefDialogHandler> BrowserClient::GetDialogHandler()
{
    return m_fileDialogHandler;
}

CefRefPtr<CefLifeSpanHandler> BrowserClient::GetLifeSpanHandler()
{
    return lifeSpanHandler();
}

CefRefPtr<LifeSpanHandler> BrowserClient::lifeSpanHandler() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_lifeSpanHandler;
}

CefRefPtr<CefLoadHandler> BrowserClient::GetLoadHandler()
{
    return m_loadHandler;
}

CefRefPtr<CefRenderHandler> BrowserClient::GetRenderHandler()
{
    return m_renderHandler;
}

CefRefPtr<CefRequestHandler> BrowserClient::GetRequestHandler()
{
    return m_requestHandler;
}

void BrowserClient::cleanup()
{
    BROVIA_INSTRUMENT("cleanup");
    m_jsCallbacks->disconnectAll();
    CefRefPtr<LifeSpanHandler> lifeSpan = lifeSpanHandler();
    if (!lifeSpan)
        return;
    // Hops to the engine UI thread by itself; nothing here waits for the browser to go.
    lifeSpan->closeAllBrowsers(false);

    QObject::disconnect(m_requestHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_focusHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_jsDialogHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_fileDialogHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_printDialogHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_loadHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_displayHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_clientMessageHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_findHandler.get(), nullptr, nullptr, nullptr);

    // The widget is dying: no engine callback may touch it from here on.
    m_renderHandler->SetView(nullptr);
    m_contextMenuHandler->setView(nullptr);
    m_jsDialogHandler->setView(nullptr);

    QObject::disconnect(m_renderHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_contextMenuHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(this, nullptr, nullptr, nullptr);

    // Flagged before the handler goes, so that the engine UI thread never sees a live client
    // without one; queued slots that arrive later find no browser and do nothing.
    m_cleanedUp = true;
    // Released outside the lock: the last reference takes the browser with it.
    CefRefPtr<LifeSpanHandler> released;
    std::lock_guard<std::mutex> lock(m_mutex);
    released = m_lifeSpanHandler;
    m_lifeSpanHandler = nullptr;
}

bool BrowserClient::OnProcessMessageReceived(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                             CefProcessId source_process, CefRefPtr<CefProcessMessage> message)
{
    BROVIA_INSTRUMENT("OnProcessMessageReceived");
    if (m_cleanedUp)
        return true;
    const std::string name = message->GetName().ToString();
    if (name == brovia::CefClientMessage::kName)
    {
        CefRefPtr<brovia::CefClientMessage> call = new brovia::CefClientMessage();
        call->fromProcessMessage(message);
        // The client's own browser, whichever object the engine passed.
        m_clientMessageHandler->handleMessage(GetBrowser(), call);
        return true;
    }
    if (name == brovia::RunJavaScriptResultMessage::kName)
    {
        CefRefPtr<brovia::RunJavaScriptResultMessage> result = new brovia::RunJavaScriptResultMessage();
        result->fromProcessMessage(message);
        m_jsCallbacks->runCallback(result->replyTo, Conversions::convertValue(result->result));
        return true;
    }
    if (name == brovia::RepaintSyncResultMessage::kName)
    {
        CefRefPtr<brovia::RepaintSyncResultMessage> result = new brovia::RepaintSyncResultMessage();
        result->fromProcessMessage(message);
        // Any answer fulfils the current round trip; only RepaintSync sends the request. The
        // answer to an abandoned round trip may have fulfilled it already: this one then comes
        // late and is dropped, rather than taking the application down from the engine's thread.
        CefRefPtr<Future<bool>> current;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            current = m_repaintFuture;
        }
        if (current)
        {
            try
            {
                current->set(true);
            }
            catch (const std::future_error&)
            {
            }
        }
        return true;
    }
    if (name == brovia::FocusedNodeChangedMessage::kName)
    {
        CefRefPtr<brovia::FocusedNodeChangedMessage> focused = new brovia::FocusedNodeChangedMessage();
        focused->fromProcessMessage(message);
        // No signal: the view asks when a key comes.
        m_focusedNodeEditable = focused->editable;
        return true;
    }
    return false;
}

void BrowserClient::RunJavaScript(const QString& script, CefRefPtr<RunJavaScriptCallback> callback)
{
    BROVIA_INSTRUMENT_CONTEXT("RunJavaScript", "script", script.toStdString());
    if (m_cleanedUp)
        return;
    if (!CefCurrentlyOn(TID_UI))
    {
        CefRefPtr<BrowserClient> self(this);
        CefPostTask(TID_UI, base::BindOnce(
                                [](CefRefPtr<BrowserClient> client, QString text,
                                   CefRefPtr<RunJavaScriptCallback> waiter) { client->RunJavaScript(text, waiter); },
                                self, script, callback));
        return;
    }
    CefRefPtr<CefBrowser> browser = GetBrowser();
    // The browser may have closed while the task was on its way.
    if (!browser)
        return;
    CefRefPtr<brovia::RunJavaScriptMessage> message = new brovia::RunJavaScriptMessage();
    message->browserId = browser->GetIdentifier();
    message->frameId = browser->GetMainFrame()->GetIdentifier();
    message->script = Conversions::convertString(script);
    if (!message->send(browser, browser->GetMainFrame()))
        return;
    // Before anything else runs on this thread, so no result can come first.
    callback->setId(message->requestId);
    m_jsCallbacks->addCallback(message->requestId, callback);
}

CefRefPtr<CefBrowser> BrowserClient::GetBrowser()
{
    CefRefPtr<LifeSpanHandler> lifeSpan = lifeSpanHandler();
    return lifeSpan ? lifeSpan->getBrowser() : nullptr;
}

int BrowserClient::GetBrowserId()
{
    CefRefPtr<LifeSpanHandler> lifeSpan = lifeSpanHandler();
    return lifeSpan ? lifeSpan->getBrowserId() : 0;
}

int BrowserClient::DeviceToLogical(int value) const
{
    return m_renderHandler->GetDpiWatcher()->deviceToLogical(value);
}

int BrowserClient::LogicalToDevice(int value) const
{
    return m_renderHandler->GetDpiWatcher()->logicalToDevice(value);
}

void BrowserClient::DisableDirtyRectHandling(bool disabled)
{
    m_renderHandler->DisableDirtyRectHandling(disabled);
}

CefRefPtr<RenderHandler> BrowserClient::renderHandler() const
{
    return m_renderHandler;
}

CefRefPtr<ContextMenuHandler> BrowserClient::contextMenuHandler() const
{
    return m_contextMenuHandler;
}

CefRefPtr<JSDialogHandler> BrowserClient::jsDialogHandler() const
{
    return m_jsDialogHandler;
}

CefRefPtr<FileDialogHandler> BrowserClient::fileDialogHandler() const
{
    return m_fileDialogHandler;
}

QImage BrowserClient::RepaintSync(std::chrono::milliseconds timeout)
{
    BROVIA_INSTRUMENT("RepaintSync");
    CefRefPtr<CefBrowser> browser = GetBrowser();
    if (!browser)
        return QImage();
    CefRefPtr<Future<bool>> answered = new MultiThreadedFuture<bool>();
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_repaintFuture = answered;
    }
    CefRefPtr<brovia::RepaintSyncMessage> message = new brovia::RepaintSyncMessage();
    message->browserId = browser->GetIdentifier();
    message->frameId = browser->GetMainFrame()->GetIdentifier();
    if (!message->send(browser, browser->GetMainFrame()))
        return QImage();

    QElapsedTimer clock;
    clock.start();
    // The value does not matter, only that the render side got this far.
    answered->get(timeout);
    if (timeout.count() != -1 && clock.hasExpired(timeout.count()))
        return QImage();

    CefRefPtr<Future<QImage>> frame = new MultiThreadedFuture<QImage>();
    // Written and read on the engine UI thread only, inside OnPaint.
    auto done = std::make_shared<bool>(false);
    const float scale = m_renderHandler->GetDeviceScaleFactor();
    QObject context;
    // Direct: the Qt main thread is blocked below; the first frame after the request is taken.
    connect(
        m_renderHandler.get(), &RenderHandler::viewUpdated, &context,
        [frame, done, scale](QImage image, QVector<QRect>) {
            Q_UNUSED(scale);
            if (*done)
                return;
            *done = true;
            frame->set(image);
        },
        Qt::DirectConnection);
    browser->GetHost()->Invalidate(PET_VIEW);
    const std::chrono::milliseconds remaining =
        timeout.count() == -1 ? timeout : timeout - std::chrono::milliseconds(clock.elapsed());
    return frame->get(remaining);
}

QImage BrowserClient::RepaintSync2(int x, int y, int red, const QRect& rect, bool dropFrame,
                                   std::chrono::milliseconds timeout)
{
    BROVIA_INSTRUMENT("RepaintSync2");
    CefRefPtr<CefBrowser> browser = GetBrowser();
    if (!browser)
        return QImage();
    CefRefPtr<Future<QImage>> found = new MultiThreadedFuture<QImage>();
    QObject context;
    connect(
        m_renderHandler.get(), &RenderHandler::targetPixelFound, &context,
        [found](QImage image) { found->set(image); }, Qt::DirectConnection);
    m_renderHandler->WatchForTargetPixel(x, y, red, rect, dropFrame);
    QImage image = found->get(timeout);
    if (image.isNull())
    {
        // The frames held back during the watch left the screen behind the page.
        m_renderHandler->StopWatchingTargetPixel();
        browser->GetHost()->Invalidate(PET_VIEW);
    }
    return image;
}

void BrowserClient::SetZoomLevel(double level)
{
    BROVIA_INSTRUMENT("SetZoomLevel");
    CefRefPtr<CefBrowser> browser = GetBrowser();
    if (!browser)
        return;
    browser->GetHost()->SetZoomLevel(clampZoomLevel(level));
}

void BrowserClient::ChangeZoomLevel(double delta)
{
    BROVIA_INSTRUMENT("ChangeZoomLevel");
    CefRefPtr<CefBrowser> browser = GetBrowser();
    if (!browser)
        return;
    browser->GetHost()->SetZoomLevel(clampZoomLevel(GetZoomLevel() + delta));
}

double BrowserClient::GetZoomLevel()
{
    CefRefPtr<CefBrowser> browser = GetBrowser();
    if (!browser)
        return 0.0;
    if (CefCurrentlyOn(TID_UI))
        return browser->GetHost()->GetZoomLevel();
    std::future<double> level;
    {
        CefRefPtr<GetZoomLevelTask> task(new GetZoomLevelTask(browser));
        level = task->promise.get_future();
        // A stopped engine takes no task.
        if (!CefPostTask(TID_UI, task.get()))
            return 0.0;
    }
    // The engine holds the only reference now: a task it drops unrun breaks the promise and ends
    // the wait at once; one it never gets to ends it at the deadline.
    if (level.wait_for(kZoomReadTimeout) != std::future_status::ready)
        return 0.0;
    try
    {
        return level.get();
    }
    catch (const std::future_error&)
    {
        return 0.0;
    }
}

void BrowserClient::ShowInspector(const QPoint& point)
{
    BROVIA_INSTRUMENT("ShowInspector");
    CefWindowInfo windowInfo;
    CefBrowserSettings settings;
    const CefPoint at(point.x(), point.y());
    CefRefPtr<CefBrowser> browser = GetBrowser();
    if (!browser)
        return;
    browser->GetHost()->ShowDevTools(windowInfo, this, settings, at);
}

void BrowserClient::ClearBrowsingData()
{
    static const std::vector<CefString> kPreferences = {
        "browser.clear_data.browsing_history", "browser.clear_data.browsing_history_basic",
        "browser.clear_data.download_history", "browser.clear_data.cache",
        "browser.clear_data.cache_basic",      "browser.clear_data.cookies",
        "browser.clear_data.cookies_basic",    "browser.clear_data.passwords",
        "browser.clear_data.form_data",        "browser.clear_data.hosted_apps_data",
        "browser.clear_data.media_licenses",   "browser.clear_data.site_settings",
    };
    // One browser for the whole run: it may close between two looks.
    CefRefPtr<CefBrowser> browser = GetBrowser();
    if (!browser)
        return;
    CefRefPtr<CefRequestContext> context = browser->GetHost()->GetRequestContext();
    if (!context)
        return;
    CefString error;
    for (const CefString& name : kPreferences)
    {
        if (!context->CanSetPreference(name))
            continue;
        CefRefPtr<CefValue> value = CefValue::Create();
        value->SetBool(true);
        context->SetPreference(name, value, error);
    }
}

void BrowserClient::onShowDevTools(QPoint point)
{
    ShowInspector(point);
}

void BrowserClient::onShowDevTools()
{
    ShowInspector(QPoint(0, 0));
}

void BrowserClient::onHideDevTools()
{
    // Queued from the engine: the browser may be gone by now.
    if (CefRefPtr<CefBrowser> browser = GetBrowser())
        browser->GetHost()->CloseDevTools();
}

void BrowserClient::onSetDownloadLocation(QString loc)
{
    // Empty clears it.
    m_downloadHandler->setDownloadLocation(Conversions::convertString(loc));
}

void BrowserClient::onMessageError(QString errorString)
{
    BROVIA_INSTRUMENT_CONTEXT("onMessageError", "errorString", errorString.toStdString());
    // Unescaped on purpose: the page's console shows the text as it came.
    const QString statement = QStringLiteral("console.warn('") + errorString + QStringLiteral("');");
    // Queued from the engine: the browser may be gone by now.
    CefRefPtr<CefBrowser> browser = GetBrowser();
    if (!browser)
        return;
    CefRefPtr<CefFrame> frame = browser->GetMainFrame();
    frame->ExecuteJavaScript(Conversions::convertString(statement), frame->GetURL(), 0);
}

void BrowserClient::onSetZoomLevel(double factor)
{
    SetZoomLevel(factor);
}

void BrowserClient::onChangeZoomLevel(double delta)
{
    ChangeZoomLevel(delta);
}

void BrowserClient::onDragFinished(Qt::DropAction dropAction)
{
    CefRefPtr<CefBrowser> browser = GetBrowser();
    if (!browser)
        return;
    // A successful drop only ends the system drag: the engine is not told where it landed.
    if (dropAction == Qt::IgnoreAction)
        browser->GetHost()->DragSourceEndedAt(0, 0, DRAG_OPERATION_NONE);
    browser->GetHost()->DragSourceSystemDragEnded();
}
