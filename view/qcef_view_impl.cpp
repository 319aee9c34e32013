#include "view/qcef_view_impl.h"

#include "client/browser_client.h"
#include "engine/cef_manager.h"
#include "handlers/js_dialog_handler.h"
#include "handlers/torvex_scheme_handler_factory.h"
#include "host/cef_common/allow_list.h"
#include "host/cef_common/cef_common_data.h"
#include "host/fl/codecvt_ustring_to_string.h"
#include "host/instrument/instrument.h"
#include "host/view_support/conversions.h"
#include "host/view_support/text_edit_done_event.h"
#include "render/render_handler.h"
#include "view/qcef_window.h"

#include "include/cef_browser.h"
#include "include/cef_app.h"
#include "include/cef_request_context.h"
#include "include/cef_request_context_handler.h"
#include "include/cef_task.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QPainter>
#include <QTemporaryFile>
#include <QThread>

#include <string>

namespace
{
const std::string blankUrl = "about:blank";
// The https origin of the loopback host, kept for hosts that build allow-list patterns from it.
[[maybe_unused]] const std::string loopbackOrigin = "https://127.0.0.1";

// The flag of the navigation bit field that adds every site the host navigates to the allow list.
constexpr int AddHostToAllowList = 8;

// How long, and how often, the first load waits for the engine to report the new browser.
constexpr qint64 kBrowserWaitMs = 29999;
constexpr unsigned long kBrowserPollMs = 10;

// How long setViewPortMinimumSizeSync waits for a frame of the new size at most.
constexpr qint64 kMinimumSizeWaitMs = 10000;

// Dims a disabled view when the paint flag asks for it.
const QColor kDimming(150, 150, 150, 80);
} // namespace

QCefViewImpl::QCefViewImpl(QWidget* parent, const QCefViewSettings& settings)
    : IQCefViewImpl(parent, settings)
    , m_renderingMode(settings.renderingMode)
    , m_keyboardMode(settings.keyboardMode)
    , m_cachePath(settings.cachePath)
{
    setAttribute(Qt::WA_InputMethodEnabled, true);
    setAcceptDrops(true);
    // A page needs the pointer when no button is down (hover), and the keys after a click.
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

QCefViewImpl::~QCefViewImpl()
{
    if (m_window)
    {
        m_window->setParent(nullptr);
        m_window->deleteLater();
    }
    if (m_client)
    {
        // Leave the manager's list first, so that a shutdown running afterwards can't reach a
        // dying client.
        CCefManager::getInstance().removeBrowserClient(m_client.get());
        m_client->cleanup();
        m_client = nullptr;
    }
    // The temporary files go with their handles.
    m_tempHtmlStore.clear();
}

// --- browser creation and wiring -----------------------------------------------------------------

void QCefViewImpl::initializeBrowserClient(const QUrl& url)
{
    BROVIA_INSTRUMENT_CONTEXT("initializeBrowserClient", "url", url.toString().toStdString());

    CefWindowInfo windowInfo;
    if (m_renderingMode != 2)
    {
        windowInfo.windowless_rendering_enabled = 1;
        windowInfo.runtime_style = CEF_RUNTIME_STYLE_ALLOY;
    }

    CefBrowserSettings browserSettings;
    browserSettings.windowless_frame_rate = 60;
    browserSettings.javascript = STATE_ENABLED;
    browserSettings.webgl = STATE_ENABLED;
    const cef_state_t clipboard = static_cast<cef_state_t>(2 - static_cast<int>(m_clipboardAccessEnabled));
    browserSettings.javascript_access_clipboard = clipboard;
    browserSettings.javascript_dom_paste = clipboard;

    const CefString cachePath = QDir::isRelativePath(m_cachePath) ? CCefManager::getInstance().cachePath(m_cachePath)
                                                                  : Conversions::convertString(m_cachePath);
    CefRequestContextSettings contextSettings;
    CefString(&contextSettings.cache_path) = cachePath;
    const CefString languages = cef_common::CefCommonData::getInstance()->acceptedLanguageList();
    if (!languages.empty())
        CefString(&contextSettings.accept_language_list) = languages;

    CefRefPtr<CefRequestContext> context = CefRequestContext::CreateContext(contextSettings, nullptr);
    if (!context)
        return;
    context->RegisterSchemeHandlerFactory("torvex", "", new TorvexSchemeHandlerFactory());

    m_client = new BrowserClient(this);
    CCefManager::getInstance().addBrowserClient(m_client.get());
    connectBrowserClient();

    const CefString startUrl = url.isValid() ? Conversions::convertString(url.toString()) : CefString(blankUrl);
    if (!CefBrowserHost::CreateBrowser(windowInfo, m_client, startUrl, browserSettings, nullptr, context))
        return;

    // Blocks the Qt main thread until the engine UI thread reports the browser, for at most 30 s.
    // Signals raised meanwhile stay queued until the event loop runs again.
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() <= kBrowserWaitMs)
    {
        QThread::msleep(kBrowserPollMs);
        if (m_client->GetBrowser())
            break;
    }
}

void QCefViewImpl::connectBrowserClient()
{
    if (!m_client)
        return;
    BrowserClient* client = m_client.get();
    connect(client, &BrowserClient::loadStarted, this, &IQCefViewImpl::loadStarted);
    connect(client, &BrowserClient::loadFinished, this, &IQCefViewImpl::loadFinished);
    connect(client, &BrowserClient::loadStateChanged, this, &IQCefViewImpl::loadStateChanged);
    connect(client, &BrowserClient::titleChanged, this, &IQCefViewImpl::titleChanged);
    connect(client, &BrowserClient::urlChanged, this, &QCefViewImpl::onUrlChanged);
    connect(client, &BrowserClient::linkClicked, this, &IQCefViewImpl::linkClicked);
    connect(client, &BrowserClient::renderProcessTerminated, this, &IQCefViewImpl::renderProcessTerminated);
    connect(client, &BrowserClient::javaScriptConsoleMessage, this, &IQCefViewImpl::javaScriptConsoleMessage);
    connect(client, &BrowserClient::viewUpdated, this, &QCefViewImpl::onViewUpdated);
    connect(client, &BrowserClient::cursorChanged, this, &QCefViewImpl::onCursorChanged);
    connect(client, &BrowserClient::imeRectChanged, this, &QCefViewImpl::onImeRectChanged);
    connect(client, &BrowserClient::dpiChanged, this, &QCefViewImpl::onDpiChanged);
    connect(client, &BrowserClient::tooltipChanged, this, &QCefViewImpl::onTooltipChanged);
    connect(client, &BrowserClient::focusLost, this, &QCefViewImpl::onFocusLost);
    connect(client, &BrowserClient::receivedCefClientMessage, this, &IQCefViewImpl::receivedCefClientMessage);
    connect(client, &BrowserClient::searchResultsReady, this, &IQCefViewImpl::searchResultsReady);
    connect(client, &BrowserClient::jsDialogRequested, this, &IQCefViewImpl::jsDialogRequested);
    connect(client, &BrowserClient::cefFileDialogRequested, this, &QCefViewImpl::onCefFileDialogRequested);
    // Decided once: a later change of the switch has no effect on this view.
    if (m_printDialogEnabled)
        connect(client, &BrowserClient::cefPrintDialogRequested, this, &QCefViewImpl::onCefPrintDialogRequested);
    connect(client, &BrowserClient::cefContextMenuRequested, this, &QCefViewImpl::onCefContextMenuRequested);
}

CefRefPtr<CefBrowser> QCefViewImpl::liveBrowser() const
{
    // The engine's shutdown cleans the client up before the widget goes, and Qt still sends the
    // widget events (a focus change, a resize) on its way out.
    if (!m_client || m_client->isCleanedUp())
        return nullptr;
    return m_client->GetBrowser();
}

CefRefPtr<CefBrowserHost> QCefViewImpl::browserHost() const
{
    CefRefPtr<CefBrowser> browser = liveBrowser();
    return browser ? browser->GetHost() : nullptr;
}

bool QCefViewImpl::event(QEvent* e)
{
    if (!m_eventsEnabled)
        return false;
    if (e->type() == QEvent::KeyPress)
    {
        // Key presses never reach QWidget::event, so that no shortcut handling takes them.
        keyPressEvent(static_cast<QKeyEvent*>(e));
        return true;
    }
    if (e->type() == Ivorn::TextEditDoneEventType())
    {
        Q_EMIT focusChanged(false, Qt::OtherFocusReason);
        return true;
    }
    m_clickCounter.update(e);
    return QWidget::event(e);
}

// --- navigation --------------------------------------------------------------------------------------

void QCefViewImpl::load(const QUrl& url)
{
    if (!m_client)
    {
        initializeBrowserClient(url);
        return;
    }
    CefRefPtr<CefBrowser> browser = liveBrowser();
    // A load while the browser is still being made is dropped, not kept for later.
    if (!browser)
        return;
    const CefString target = Conversions::convertString(url.toString());
    if (m_navigationFlags & AddHostToAllowList)
    {
        const std::string utf8 = target.ToString();
        if (!cef_common::isURLAllowed(utf8, false))
        {
            QString host = url.host(QUrl::FullyDecoded);
            if (host.startsWith(QLatin1String("www.")))
                host = host.mid(4);
            // Any subdomain and port of the site; the dots of the host match any character.
            const QString pattern = url.scheme() + QStringLiteral("://") + QStringLiteral("([\\w-]*.)?") + host +
                                    QStringLiteral("(:\\d{1,5})?/");
            cef_common::addHostsToAllowList({pattern.toStdString()});
        }
    }
    browser->GetMainFrame()->LoadURL(target);
}

void QCefViewImpl::setUrl(const QUrl& url)
{
    load(url);
}

void QCefViewImpl::setHtml(const QString& html)
{
    // Made private to the user (0600) and written through the handle that created it, which
    // stays open with the view: nobody can slip another file in under its name.
    auto file = std::make_unique<QTemporaryFile>(QDir::tempPath() + QDir::separator() + QStringLiteral("XXXXXX.html"));
    file->setAutoRemove(true);
    if (file->open())
    {
        const fl::i18n::codecvt_ustring_to_string toUtf8("UTF-8", true);
        const std::string text =
            toUtf8.do_convert(reinterpret_cast<const char16_t*>(html.utf16()), static_cast<unsigned long>(html.size()));
        file->write(text.data(), static_cast<qint64>(text.size()));
        file->write("\n", 1);
        file->flush();
    }
    const QString path = file->fileName();
    m_tempHtmlFiles.push_back(path);
    m_tempHtmlStore.push_back(std::move(file));
    load(QUrl::fromLocalFile(path));
}

QUrl QCefViewImpl::url() const
{
    CefRefPtr<CefBrowser> browser = liveBrowser();
    if (!browser)
        return QUrl();
    const QString text = Conversions::convertString(browser->GetMainFrame()->GetURL());
    // Compares with the files' paths, not their URLs: a page of setHtml is returned as its file URL.
    for (const QString& file : m_tempHtmlFiles)
    {
        if (text == file)
            return QUrl();
    }
    return QUrl(text);
}

void QCefViewImpl::onUrlChanged(QUrl url)
{
    BROVIA_INSTRUMENT_CONTEXT("onUrlChanged", "url", url.toString().toStdString());
    for (const QString& file : m_tempHtmlFiles)
    {
        if (QUrl(QUrl::fromLocalFile(file).toString()) == url)
        {
            Q_EMIT urlChanged(QUrl());
            return;
        }
    }
    Q_EMIT urlChanged(url);
}

bool QCefViewImpl::canGoBack() const
{
    CefRefPtr<CefBrowser> browser = liveBrowser();
    return browser && browser->CanGoBack();
}

bool QCefViewImpl::canGoForward() const
{
    CefRefPtr<CefBrowser> browser = liveBrowser();
    return browser && browser->CanGoForward();
}

void QCefViewImpl::back()
{
    CefRefPtr<CefBrowser> browser = liveBrowser();
    if (browser && browser->CanGoBack())
        browser->GoBack();
}

void QCefViewImpl::forward()
{
    CefRefPtr<CefBrowser> browser = liveBrowser();
    if (browser && browser->CanGoForward())
        browser->GoForward();
}

void QCefViewImpl::reload()
{
    if (CefRefPtr<CefBrowser> browser = liveBrowser())
        browser->Reload();
}

void QCefViewImpl::stop()
{
    if (CefRefPtr<CefBrowser> browser = liveBrowser())
        browser->StopLoad();
}

// --- painting and geometry ---------------------------------------------------------------------------

void QCefViewImpl::onViewUpdated(QImage image, QVector<QRect> dirtyRects)
{
    BROVIA_INSTRUMENT("onViewUpdated");
    if (!liveBrowser())
        return;
    QImage frame = image;
    // The sub-images point into the pixels of the frames: they go first.
    m_pendingUpdates.clear();
    m_repaintImages.clear();
    if (m_dirtyRectHandlingDisabled)
    {
        m_repaintImages.push_back(frame);
        update();
        return;
    }
    for (const QRect& r : dirtyRects)
    {
        const qsizetype offset = static_cast<qsizetype>(r.y()) * frame.bytesPerLine() + (r.x() * frame.depth()) / 8;
        // The first non-const bits() detaches the frame from the engine thread's copy: the
        // frame's second and last deep copy.
        uchar* bits = frame.bits();
        m_pendingUpdates.emplace_back(r, QImage(bits + offset, r.width(), r.height(), frame.bytesPerLine(),
                                                frame.format()));
        update(r);
    }
    m_repaintImages.push_back(frame);
}

void QCefViewImpl::paintEvent(QPaintEvent* event)
{
    BROVIA_INSTRUMENT("paintEvent");
    QPainter painter(this);
    // The frame replaces what the widget showed: a plain copy, no blending.
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (m_dirtyRectHandlingDisabled)
    {
        if (!m_repaintImages.empty())
            painter.drawImage(0, 0, m_repaintImages.back());
    }
    else
    {
        bool drawn = false;
        for (const auto& pending : m_pendingUpdates)
        {
            if (pending.first == event->rect())
            {
                painter.drawImage(event->rect().topLeft(), pending.second);
                drawn = true;
                break;
            }
        }
        // A merged or Qt-raised paint draws the whole frame; the painter clips it to the region.
        if (!drawn && !m_repaintImages.empty())
            painter.drawImage(0, 0, m_repaintImages.back());
    }
    if (m_paintFlag && !isEnabled())
    {
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.fillRect(rect(), kDimming);
    }
}

void QCefViewImpl::resizeEvent(QResizeEvent* event)
{
    BROVIA_INSTRUMENT("resizeEvent");
    if (CefRefPtr<CefBrowserHost> host = browserHost())
    {
        host->NotifyMoveOrResizeStarted();
        host->WasResized();
    }
    QWidget::resizeEvent(event);
}

void QCefViewImpl::showEvent(QShowEvent* event)
{
    BROVIA_INSTRUMENT("showEvent");
    if (CefRefPtr<CefBrowserHost> host = browserHost())
        host->WasHidden(false);
    QWidget::showEvent(event);
}

void QCefViewImpl::hideEvent(QHideEvent* event)
{
    // The browser keeps painting while hidden: it is never told.
    QWidget::hideEvent(event);
}

void QCefViewImpl::onDpiChanged(float)
{
    BROVIA_INSTRUMENT("onDpiChanged");
    if (CefRefPtr<CefBrowserHost> host = browserHost())
    {
        host->NotifyScreenInfoChanged();
        host->WasResized();
    }
}

void QCefViewImpl::onCursorChanged(QCursor cursor)
{
    BROVIA_INSTRUMENT("onCursorChanged");
    setCursor(cursor);
}

void QCefViewImpl::onTooltipChanged(QString text)
{
    BROVIA_INSTRUMENT("onTooltipChanged");
    setToolTip(text);
}

void QCefViewImpl::onImeRectChanged(QRect rect)
{
    BROVIA_INSTRUMENT("onImeRectChanged");
    m_imeRect = rect;
    if (QInputMethod* inputMethod = QGuiApplication::inputMethod())
        inputMethod->update(Qt::ImCursorRectangle);
}

QVariant QCefViewImpl::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query == Qt::ImCursorRectangle)
        return QVariant(m_imeRect);
    return QWidget::inputMethodQuery(query);
}

bool QCefViewImpl::applyViewPortMinimumSize(const QSize& size)
{
    CefRefPtr<CefBrowserHost> host = browserHost();
    if (!host)
        return false;
    setMinimumSize(size.width(), size.height());
    host->NotifyMoveOrResizeStarted();
    host->WasResized();
    return true;
}

void QCefViewImpl::setViewPortMinimumSize(const QSize& size)
{
    BROVIA_INSTRUMENT("setViewPortMinimumSize");
    applyViewPortMinimumSize(size);
}

void QCefViewImpl::setViewPortMinimumSizeSync(const QSize& size)
{
    BROVIA_INSTRUMENT("setViewPortMinimumSizeSync");
    if (!applyViewPortMinimumSize(size))
        return;
    // Blocks the calling thread, without Qt events, until a frame of at least that size is
    // painted; a page that never paints one (its renderer gone or hung) lets go at the deadline.
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kMinimumSizeWaitMs)
    {
        if (CefCurrentlyOn(TID_UI))
            CefDoMessageLoopWork();
        const QSize rendered = m_client->renderHandler()->GetRenderedImageSize();
        if (rendered.width() >= size.width() && rendered.height() >= size.height())
            break;
        QThread::yieldCurrentThread();
    }
}

QSize QCefViewImpl::getRenderedImageSize() const
{
    BROVIA_INSTRUMENT("getRenderedImageSize");
    if (liveBrowser())
        return m_client->renderHandler()->GetRenderedImageSize();
    return QSize(-1, -1);
}

void QCefViewImpl::setDirtyRectHandlingDisabled(bool disabled)
{
    m_dirtyRectHandlingDisabled = disabled;
    if (liveBrowser())
        m_client->DisableDirtyRectHandling(disabled);
}

void QCefViewImpl::setPaintFlag(bool enabled)
{
    m_paintFlag = enabled;
}

// --- settings -----------------------------------------------------------------------------------------

void QCefViewImpl::setClipboardAccessEnabled(bool enabled)
{
    m_clipboardAccessEnabled = enabled;
}

void QCefViewImpl::setStoredFlag(bool value)
{
    m_storedFlag = value;
}

void QCefViewImpl::setNavigationFlags(int flags)
{
    m_navigationFlags = flags;
}

void QCefViewImpl::setKeyboardFlag(int value)
{
    m_keyboardFlag = value;
}

void QCefViewImpl::setCachePath(const QString& path)
{
    m_cachePath = path;
}

void QCefViewImpl::setPrintDialogEnabled(bool enabled)
{
    m_printDialogEnabled = enabled;
}

QString QCefViewImpl::cachePath()
{
    // The engine's cache root, not this view's own path.
    return Conversions::convertString(CCefManager::getInstance().cachePath(QString()));
}

void QCefViewImpl::disableEvents()
{
    m_eventsEnabled = false;
}

// --- page access that later parts of the view provide ------------------------------------------------

// The commands below are quiet without a browser: before the first load, while the browser is
// being made, and once the view is cleaned up (after the application's aboutToQuit too).

void QCefViewImpl::setZoomLevel(double level)
{
    if (liveBrowser())
        m_client->SetZoomLevel(level);
}

double QCefViewImpl::zoomLevel()
{
    return liveBrowser() ? m_client->GetZoomLevel() : 0.0;
}

void QCefViewImpl::repaintSync(std::chrono::milliseconds timeout)
{
    BROVIA_INSTRUMENT("repaintSync");
    if (!liveBrowser())
        return;
    QImage image = m_client->RepaintSync(timeout);
    // Also a null image: the widget then keeps what it shows.
    m_repaintImages.push_back(std::move(image));
    {
        BROVIA_INSTRUMENT("repaint()");
        repaint();
    }
}

QImage QCefViewImpl::repaintSync2(int x, int y, int red, const QRect& rect, bool dropFrame,
                                  std::chrono::milliseconds timeout)
{
    BROVIA_INSTRUMENT("repaintSync2");
    if (!liveBrowser())
        return QImage();
    return m_client->RepaintSync2(x, y, red, rect, dropFrame, timeout);
}

void QCefViewImpl::showDevTools()
{
    if (liveBrowser())
        m_client->ShowInspector(QPoint(0, 0));
}

void QCefViewImpl::clearBrowsingData()
{
    if (liveBrowser())
        m_client->ClearBrowsingData();
}

void QCefViewImpl::setContextMenuEnabled(bool enabled)
{
    if (m_client)
        m_client->contextMenuHandler()->setContextMenuEnabled(enabled);
}

void QCefViewImpl::setInspectEnabled(bool enabled)
{
    if (m_client)
        m_client->contextMenuHandler()->setInspectEnabled(enabled);
}

void QCefViewImpl::setJSDialogHandledByHost(bool handled)
{
    if (m_client)
        m_client->jsDialogHandler()->setHandledByHost(handled);
}

void QCefViewImpl::continueJSDialog(bool success, const QString& userInput)
{
    if (m_client)
        m_client->jsDialogHandler()->continueDialog(success, userInput);
}
