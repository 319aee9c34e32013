#pragma once

#include "host/view_support/dpi_watcher.h"
#include "render/frame_buffer_pool.h"

#include "include/cef_render_handler.h"

#include <QCursor>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QPoint>
#include <QPointer>
#include <QReadWriteLock>
#include <QRect>
#include <QSize>
#include <QVector>
#include <QWidget>

#include <memory>
#include <mutex>
#include <vector>

class QDrag;
class QMimeData;

// The off-screen paint sink of one view. The engine calls it on its UI thread: it answers the
// engine's geometry questions from the live widget, turns each frame into a QImage with its
// dirty rectangles, draws an open popup over the page and raises signals that reach the view
// queued. It refuses frames of a size other than the last one promised to the engine, at most
// three in a row, and can hold back all frames until a marker pixel shows.
//
// Locks, always taken in this order: m_viewLock, m_targetLock, m_sizeMutex. m_geometryMutex is
// taken alone. None is held across a nested event loop.
class RenderHandler : public QObject, public CefRenderHandler
{
    Q_OBJECT

public:
    // Qt main thread.
    explicit RenderHandler(QWidget* view);
    ~RenderHandler() override;

    // Engine UI thread, all of the overrides. Logical pixels toward the engine; frames come in
    // device pixels, which are the widget's own.
    // Always yields a rectangle, 1 by 1 at least, and promises the frame size it implies.
    void GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) override;
    void OnPaint(CefRefPtr<CefBrowser> browser, PaintElementType type, const RectList& dirtyRects,
                 const void* buffer, int width, int height) override;
    // The "screen" is the view itself.
    bool GetScreenInfo(CefRefPtr<CefBrowser> browser, CefScreenInfo& screen_info) override;
    bool GetScreenPoint(CefRefPtr<CefBrowser> browser, int viewX, int viewY, int& screenX, int& screenY) override;
    // Reports the caret as the last character bound.
    void OnImeCompositionRangeChanged(CefRefPtr<CefBrowser> browser, const CefRange& selected_range,
                                      const RectList& character_bounds) override;
    // Hands the drag to the Qt main thread and answers at once.
    bool StartDragging(CefRefPtr<CefBrowser> browser, CefRefPtr<CefDragData> drag_data,
                       DragOperationsMask allowed_ops, int x, int y) override;
    void OnPopupShow(CefRefPtr<CefBrowser> browser, bool show) override;
    void OnPopupSize(CefRefPtr<CefBrowser> browser, const CefRect& rect) override;

    // Qt main thread; null at clean-up. Waits for a frame in progress, and cancels a drag that
    // runs from the view.
    void SetView(QWidget* view);
    // Stored only: the view's flag of the same name decides.
    void DisableDirtyRectHandling(bool disabled);
    // Any thread: pixel size of the last published view frame, (-1, -1) before the first.
    QSize GetRenderedImageSize() const;
    void SetRenderedImageSize(int width, int height);
    // Keeps the frame, sharing its pixels.
    void UpdateRenderImages(CefRenderHandler::PaintElementType type, const QImage& image);
    // The last view frame, with an open popup drawn over a copy of it.
    QImage GetRenderImage() const;

    // Qt main thread: holds back every frame until one shows `red` in the red channel at (x, y),
    // then raises targetPixelFound with the part `rect` of it. A match in the last frame counts
    // at once. With dropFrame the matching frame isn't published either.
    void WatchForTargetPixel(int x, int y, int red, const QRect& rect, bool dropFrame);
    void FoundTargetPixel(const QImage& image);
    // Any thread; takes no lock, so a frame in progress may still find the marker.
    void StopWatchingTargetPixel();
    // A deep copy of the part `rect` of `image`, clipped to the image. A rect that misses it
    // gives a null image.
    QImage CropImage(const QImage& image, const QRect& rect) const;

    float GetDeviceScaleFactor() const;
    // The view's scale, for conversions between device and logical pixels.
    CefRefPtr<DpiWatcher> GetDpiWatcher() const;

public Q_SLOTS:
    // Qt main thread: runs the drag; blocks in a nested event loop until it ends.
    void StartDragging(QMimeData* mime_data, Qt::DropActions actions, QPixmap pixmap, QPoint hotspot);

protected:
    // Qt main thread: follows the view's and its window's geometry for the engine's questions.
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void viewUpdated(QImage image, QVector<QRect> dirtyRects);
    void imeRectChanged(QRect);
    void dpiChanged(float deviceScaleFactor);
    void dragFinished(Qt::DropAction dropAction);
    // Never raised: the cursor travels through the display handler.
    void cursorChanged(QCursor);
    void targetPixelFound(QImage);

private:
    // Qt main thread: takes the view's size and screen position for the engine UI thread, which
    // must not touch the widget, and watches the window the view sits in.
    void storeGeometry();
    void watchWindow();

    // The engine callbacks read under it for as long as they need the widget; SetView writes.
    QReadWriteLock m_viewLock;
    QPointer<QWidget> m_view;
    // The window whose moves move the view on the screen. Qt main thread only.
    QPointer<QWidget> m_window;
    // The drag that runs from the view, if any. Qt main thread only.
    QPointer<QDrag> m_drag;
    // The view's size and its top-left on the screen, as last seen on the Qt main thread.
    mutable std::mutex m_geometryMutex;
    QSize m_viewSize;
    QPoint m_viewOrigin;
    CefRefPtr<DpiWatcher> m_dpiWatcher;
    // Guards m_renderedImageSize against readers off the engine UI thread, which is the writer.
    mutable std::mutex m_sizeMutex;
    QSize m_renderedImageSize;
    // The popup and the frame state below are touched on the engine UI thread only.
    bool m_popupVisible;
    CefRect m_popupRect;
    QImage m_popupImage;
    QImage m_viewImage;
    // Where the frames' copies live.
    std::shared_ptr<FrameBufferPool> m_framePool = std::make_shared<FrameBufferPool>();
    // Areas of closed popups, repainted with the next frame.
    std::vector<QRect> m_pendingDirtyRects;
    // The size GetViewRect promised; (0, 0) when no size change is pending.
    int m_expectedWidth;
    int m_expectedHeight;
    int m_staleFrames;
    bool m_dirtyRectHandlingDisabled;
    // Makes setting a watch atomic against a frame in progress.
    QReadWriteLock m_targetLock;
    int m_targetX;
    int m_targetY;
    int m_targetRed;
    bool m_watchingTarget;
    QRect m_targetRect;
    bool m_dropTargetFrame;

    IMPLEMENT_REFCOUNTING(RenderHandler);
};
