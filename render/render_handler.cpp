#include "render/render_handler.h"

#include "engine/cef_manager.h"
#include "host/instrument/instrument.h"
#include "host/view_support/conversions.h"

#include "include/cef_task.h"

#include <QColor>
#include <QCoreApplication>
#include <QDrag>
#include <QEvent>
#include <QMetaObject>
#include <QMimeData>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{
// Frames arrive as the engine's BGRA buffer, which on a little-endian machine is this format
// byte for byte; nothing is ever swapped or converted.
constexpr QImage::Format kFrameFormat = QImage::Format_ARGB32_Premultiplied;

// A frame of the wrong size is refused at most this often in a row.
constexpr int kMaxStaleFrames = 3;
} // namespace

RenderHandler::RenderHandler(QWidget* view)
    : m_view(view)
    , m_renderedImageSize(-1, -1)
    , m_popupVisible(false)
    , m_expectedWidth(0)
    , m_expectedHeight(0)
    , m_staleFrames(0)
    , m_dirtyRectHandlingDisabled(false)
    , m_targetX(0)
    , m_targetY(0)
    , m_targetRed(0)
    , m_watchingTarget(false)
    , m_dropTargetFrame(false)
{
    const QCefGlobalSettings settings = CCefManager::getInstance().globalSettings();
    m_dpiWatcher = new DpiWatcher(view, settings.deviceScaleFactor);
    QObject::connect(m_dpiWatcher.get(), &DpiWatcher::dpiChanged, this, &RenderHandler::dpiChanged,
                     Qt::AutoConnection);
    // The drag crosses to the Qt main thread as a queued call by these names.
    qRegisterMetaType<QMimeData*>("QMimeData*");
    qRegisterMetaType<Qt::DropActions>("Qt::DropActions");
    if (view)
    {
        view->installEventFilter(this);
        watchWindow();
    }
    storeGeometry();
}

RenderHandler::~RenderHandler() = default;

void RenderHandler::GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect)
{
    // The factor must be fresh before it is used.
    m_dpiWatcher->forceUpdate();
    QSize size;
    {
        std::lock_guard<std::mutex> lock(m_geometryMutex);
        size = m_viewSize;
    }
    rect = Conversions::convertRect(QRect(QPoint(0, 0), size));
    rect.width = std::max(1, m_dpiWatcher->deviceToLogical(rect.width));
    rect.height = std::max(1, m_dpiWatcher->deviceToLogical(rect.height));
    // The engine rounds a logical size up to device pixels the same way.
    const float factor = m_dpiWatcher->m_deviceScaleFactor;
    m_expectedWidth = static_cast<int>(std::ceil(static_cast<float>(rect.width) * factor));
    m_expectedHeight = static_cast<int>(std::ceil(static_cast<float>(rect.height) * factor));
}

void RenderHandler::OnPaint(CefRefPtr<CefBrowser> browser, PaintElementType type, const RectList& dirtyRects,
                            const void* buffer, int width, int height)
{
    BROVIA_INSTRUMENT("OnPaint");
    QReadLocker viewLocker(&m_viewLock);

    // A frame of the old size after a resize: the engine sends another one. Popup frames count
    // too. The fourth in a row passes, whatever its size.
    const bool sizePending = m_expectedWidth != 0 || m_expectedHeight != 0;
    if (m_staleFrames < kMaxStaleFrames && sizePending && (m_expectedWidth != width || m_expectedHeight != height))
    {
        ++m_staleFrames;
        return;
    }
    m_staleFrames = 0;
    m_expectedWidth = 0;
    m_expectedHeight = 0;

    if (!m_view || !QCoreApplication::instance() || QCoreApplication::startingUp() ||
        QCoreApplication::closingDown())
        return;

    QReadLocker targetLocker(&m_targetLock);
    // Still the engine's buffer, not a copy.
    QImage image(static_cast<const uchar*>(buffer), width, height, width * 4, kFrameFormat);

    if (m_watchingTarget)
    {
        // Compared on the engine's buffer; only a matching frame's part is copied. The bounds
        // test lets a coordinate equal to the size pass; its colour is invalid, with red 0.
        if (m_targetX > width || m_targetY > height)
            return;
        if (image.pixelColor(m_targetX, m_targetY).red() != m_targetRed)
            return;
        m_watchingTarget = false;
        FoundTargetPixel(CropImage(image, m_targetRect));
        if (m_dropTargetFrame)
            return;
    }

    // The one copy of a frame; nothing refers to the engine's buffer after this.
    image = m_framePool->copy(image);

    if (type == PET_VIEW)
        SetRenderedImageSize(width, height);

    QVector<QRect> dirty;
    if (!m_popupVisible)
    {
        for (const CefRect& rect : dirtyRects)
            dirty.append(Conversions::convertRect(rect));
        for (const QRect& rect : m_pendingDirtyRects)
            dirty.append(rect);
        m_pendingDirtyRects.clear();
    }
    else
    {
        // The popup covers what changed beneath it; closed popups wait for its end.
        dirty.append(Conversions::convertRect(m_popupRect));
    }

    UpdateRenderImages(type, image);
    Q_EMIT viewUpdated(GetRenderImage(), dirty);
}

bool RenderHandler::GetScreenInfo(CefRefPtr<CefBrowser> browser, CefScreenInfo& screen_info)
{
    QReadLocker viewLocker(&m_viewLock);
    if (!m_view)
        return false;
    CefRect rect;
    GetViewRect(browser, rect);
    screen_info.device_scale_factor = m_dpiWatcher->m_deviceScaleFactor;
    screen_info.rect = rect;
    screen_info.available_rect = rect;
    return true;
}

bool RenderHandler::GetScreenPoint(CefRefPtr<CefBrowser> browser, int viewX, int viewY, int& screenX,
                                   int& screenY)
{
    QReadLocker viewLocker(&m_viewLock);
    if (!m_view)
        return false;
    QPoint origin;
    {
        std::lock_guard<std::mutex> lock(m_geometryMutex);
        origin = m_viewOrigin;
    }
    const QPoint global =
        origin + QPoint(m_dpiWatcher->logicalToDevice(viewX), m_dpiWatcher->logicalToDevice(viewY));
    screenX = global.x();
    screenY = global.y();
    return true;
}

void RenderHandler::OnImeCompositionRangeChanged(CefRefPtr<CefBrowser> browser, const CefRange& selected_range,
                                                 const RectList& character_bounds)
{
    // The caret sits behind the last character.
    CefRect bound = character_bounds.empty() ? CefRect() : character_bounds.back();
    bound.x = m_dpiWatcher->logicalToDevice(bound.x);
    bound.y = m_dpiWatcher->logicalToDevice(bound.y);
    bound.width = m_dpiWatcher->logicalToDevice(bound.width);
    bound.height = m_dpiWatcher->logicalToDevice(bound.height);
    Q_EMIT imeRectChanged(Conversions::convertRect(bound));
}

bool RenderHandler::StartDragging(CefRefPtr<CefBrowser> browser, CefRefPtr<CefDragData> drag_data,
                                  DragOperationsMask allowed_ops, int x, int y)
{
    QReadLocker viewLocker(&m_viewLock);
    // False makes the engine cancel the drag by itself.
    if (!m_view)
        return false;
    const Qt::DropActions actions = Conversions::convertDropActions(allowed_ops);
    QMimeData* mime = Conversions::convertMimeData(drag_data);
    QPixmap pixmap;
    QPoint hotspot(0, 0);
    if (drag_data->HasImage())
    {
        int pixelWidth = 0;
        int pixelHeight = 0;
        const CefRefPtr<CefImage> dragImage = drag_data->GetImage();
        const CefRefPtr<CefBinaryValue> png =
            dragImage ? dragImage->GetAsPNG(1.0f, true, pixelWidth, pixelHeight) : nullptr;
        const CefPoint imageHotspot = drag_data->GetImageHotspot();
        hotspot = QPoint(imageHotspot.x, imageHotspot.y);
        // An image that doesn't load leaves the drag without a picture.
        pixmap.loadFromData(Conversions::convertBinary(png));
    }
    // QDrag needs the Qt main thread, and blocks it.
    QMetaObject::invokeMethod(this, "StartDragging", Qt::QueuedConnection, Q_ARG(QMimeData*, mime),
                              Q_ARG(const Qt::DropActions, actions), Q_ARG(const QPixmap&, pixmap),
                              Q_ARG(const QPoint&, hotspot));
    return true;
}

void RenderHandler::OnPopupShow(CefRefPtr<CefBrowser> browser, bool show)
{
    // Visibility comes from OnPopupSize.
    if (show)
        return;
    // The next frame repaints what the popup covered.
    m_pendingDirtyRects.push_back(Conversions::convertRect(m_popupRect));
    m_popupVisible = false;
}

void RenderHandler::OnPopupSize(CefRefPtr<CefBrowser> browser, const CefRect& rect)
{
    // Logical from the engine, device pixels for drawing onto the frame.
    const double factor = m_dpiWatcher->m_deviceScaleFactor;
    m_popupRect = CefRect(static_cast<int>(rect.x * factor), static_cast<int>(rect.y * factor),
                          static_cast<int>(rect.width * factor), static_cast<int>(rect.height * factor));
    m_popupVisible = true;
}

void RenderHandler::SetView(QWidget* view)
{
    if (m_drag && view != m_view)
    {
        // The drag runs in a nested event loop further up this thread's stack: it ends there,
        // and must outlive the widget that is its parent.
        m_drag->setParent(nullptr);
        QDrag::cancel();
    }
    if (m_view)
        m_view->removeEventFilter(this);
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = nullptr;
    {
        QWriteLocker viewLocker(&m_viewLock);
        m_view = view;
        m_dpiWatcher->setView(view);
    }
    if (view)
    {
        view->installEventFilter(this);
        watchWindow();
    }
    storeGeometry();
}

bool RenderHandler::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type())
    {
    case QEvent::ParentChange:
        if (watched == m_view)
            watchWindow();
        storeGeometry();
        break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
        storeGeometry();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void RenderHandler::watchWindow()
{
    QWidget* window = m_view ? m_view->window() : nullptr;
    if (window == m_window)
        return;
    if (m_window && m_window != m_view)
        m_window->removeEventFilter(this);
    m_window = window;
    if (m_window && m_window != m_view)
        m_window->installEventFilter(this);
}

void RenderHandler::storeGeometry()
{
    // Only this thread replaces m_view, so it needs no lock here.
    const QSize size = m_view ? m_view->size() : QSize(0, 0);
    const QPoint origin = m_view ? m_view->mapToGlobal(QPoint(0, 0)) : QPoint();
    std::lock_guard<std::mutex> lock(m_geometryMutex);
    m_viewSize = size;
    m_viewOrigin = origin;
}

void RenderHandler::DisableDirtyRectHandling(bool disabled)
{
    BROVIA_INSTRUMENT("DisableDirtyRectHandling");
    m_dirtyRectHandlingDisabled = disabled;
}

QSize RenderHandler::GetRenderedImageSize() const
{
    // The engine UI thread is the writer and needs no lock to read its own value.
    std::unique_lock<std::mutex> lock(m_sizeMutex, std::defer_lock);
    if (!CefCurrentlyOn(TID_UI))
        lock.lock();
    return m_renderedImageSize;
}

void RenderHandler::SetRenderedImageSize(int width, int height)
{
    BROVIA_INSTRUMENT("SetRenderedImageSize");
    std::unique_lock<std::mutex> lock(m_sizeMutex, std::defer_lock);
    if (!CefCurrentlyOn(TID_UI))
        lock.lock();
    m_renderedImageSize = QSize(width, height);
}

void RenderHandler::UpdateRenderImages(CefRenderHandler::PaintElementType type, const QImage& image)
{
    BROVIA_INSTRUMENT("UpdateRenderImages");
    if (type == PET_VIEW)
        m_viewImage = image;
    else if (type == PET_POPUP)
        m_popupImage = image;
}

QImage RenderHandler::GetRenderImage() const
{
    BROVIA_INSTRUMENT("GetRenderImage");
    QImage image = m_viewImage;
    if (m_popupVisible)
    {
        // Painting detaches the copy, so the stored view frame never holds the popup.
        QPainter painter(&image);
        painter.drawImage(QPoint(m_popupRect.x, m_popupRect.y), m_popupImage);
    }
    return image;
}

void RenderHandler::WatchForTargetPixel(int x, int y, int red, const QRect& rect, bool dropFrame)
{
    BROVIA_INSTRUMENT("WatchForTargetPixel");
    QWriteLocker targetLocker(&m_targetLock);
    m_targetX = x;
    m_targetY = y;
    m_targetRed = red;
    m_targetRect = rect;
    m_dropTargetFrame = dropFrame;
    m_watchingTarget = true;
    // The marker may be on the screen already.
    if (x <= m_viewImage.width() && y <= m_viewImage.height() && m_viewImage.pixelColor(x, y).red() == red)
        FoundTargetPixel(CropImage(m_viewImage, rect));
}

void RenderHandler::FoundTargetPixel(const QImage& image)
{
    BROVIA_INSTRUMENT("FoundTargetPixel");
    m_watchingTarget = false;
    Q_EMIT targetPixelFound(image);
}

void RenderHandler::StopWatchingTargetPixel()
{
    m_watchingTarget = false;
}

QImage RenderHandler::CropImage(const QImage& image, const QRect& wanted) const
{
    // The caller's rectangle may reach past the frame: only pixels of the frame are read.
    const QRect rect = wanted.intersected(image.rect());
    if (rect.isEmpty())
        return QImage();
    // The const bits leave `image` undetached.
    const uchar* origin = image.bits() + rect.y() * image.bytesPerLine() + (rect.x() * image.depth()) / 8;
    const QImage part(origin, rect.right() - rect.left() + 1, rect.bottom() - rect.top() + 1,
                      image.bytesPerLine(), image.format());
    return part.copy(QRect());
}

float RenderHandler::GetDeviceScaleFactor() const
{
    return m_dpiWatcher->m_deviceScaleFactor;
}

CefRefPtr<DpiWatcher> RenderHandler::GetDpiWatcher() const
{
    return m_dpiWatcher;
}

void RenderHandler::StartDragging(QMimeData* mime_data, Qt::DropActions actions, QPixmap pixmap, QPoint hotspot)
{
    // Only this thread replaces the view; the lock is not held across the drag, during which
    // the view may be destroyed.
    QWidget* view = m_view.data();
    if (!view || m_drag)
    {
        delete mime_data;
        return;
    }
    // The client and its handlers may lose their last other holder while the drag runs.
    CefRefPtr<RenderHandler> self(this);
    QDrag drag(view);
    drag.setMimeData(mime_data);
    drag.setHotSpot(hotspot);
    drag.setPixmap(pixmap);
    m_drag = &drag;
    // A nested event loop until the drag ends, or SetView cancels it.
    const Qt::DropAction action = drag.exec(actions);
    m_drag = nullptr;
    Q_EMIT dragFinished(action);
    // Let go through the event loop: this object must not die inside its own slot.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [self] {}, Qt::QueuedConnection);
}
