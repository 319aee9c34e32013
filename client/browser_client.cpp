#include "client/browser_client.h"

#include "engine/life_span_handler.h"
#include "handlers/display_handler.h"
#include "handlers/load_handler.h"
#include "handlers/request_handler.h"

#include "include/cef_browser.h"
#include "host/instrument/instrument.h"
#include "host/view_support/dpi_watcher.h"
#include "render/render_handler.h"

#include <QMetaType>

BrowserClient::BrowserClient(QWidget* view)
    : m_displayHandler(new DisplayHandler())
    , m_lifeSpanHandler(new LifeSpanHandler())
    , m_loadHandler(new LoadHandler())
    , m_renderHandler(new RenderHandler(view))
    , m_requestHandler(new RequestHandler())
{
    connect(m_requestHandler.get(), &RequestHandler::linkClicked, this, &BrowserClient::linkClicked);
    connect(m_requestHandler.get(), &RequestHandler::renderProcessTerminated, this,
            &BrowserClient::renderProcessTerminated);
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

    // Frames cross from the engine UI thread queued, and need their types known by name.
    qRegisterMetaType<QVector<QRect>>("QVector<QRect>");
}

BrowserClient::~BrowserClient() = default;

CefRefPtr<CefDisplayHandler> BrowserClient::GetDisplayHandler()
{
    return m_displayHandler;
}

CefRefPtr<CefLifeSpanHandler> BrowserClient::GetLifeSpanHandler()
{
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
    if (!m_lifeSpanHandler)
        return;
    // Hops to the engine UI thread by itself; nothing here waits for the browser to go.
    m_lifeSpanHandler->closeAllBrowsers(false);

    QObject::disconnect(m_requestHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_loadHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(m_displayHandler.get(), nullptr, nullptr, nullptr);

    // The widget is dying: no engine callback may touch it from here on.
    m_renderHandler->SetView(nullptr);

    QObject::disconnect(m_renderHandler.get(), nullptr, nullptr, nullptr);
    QObject::disconnect(this, nullptr, nullptr, nullptr);

    m_lifeSpanHandler = nullptr;
    m_cleanedUp = true;
}

CefRefPtr<CefBrowser> BrowserClient::GetBrowser()
{
    return m_lifeSpanHandler->getBrowser();
}

int BrowserClient::GetBrowserId()
{
    return m_lifeSpanHandler->getBrowserId();
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
