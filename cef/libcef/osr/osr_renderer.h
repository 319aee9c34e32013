// Off-screen rendering of one browser: its page's frames painted through the
// client's CefRenderHandler::OnPaint, from Chromium's PNG screencast or, with
// a full Chromium in the engine's X server, from its window there.

#ifndef CEF_LIBCEF_OSR_OSR_RENDERER_H_
#define CEF_LIBCEF_OSR_OSR_RENDERER_H_

#include <memory>
#include <vector>

#include <QImage>

#include "libcef/browser/render_observer.h"
#include "libcef/osr/screencast_source.h"
#include "libcef/osr/x11_source.h"

namespace cefengine {

// The browser's RenderObserver; every call on the engine UI thread. Destroyed
// without OnDetached (a browser still open at CefShutdown), it leaves the
// DevTools session alone, which is gone by then.
// Frames come in device pixels: the view's logical size times the browser's
// device scale factor (see BrowserImpl::chromium_scale_factor).
class OsrRenderer : public RenderObserver {
 public:
  OsrRenderer() = default;

  void OnAttached(BrowserImpl* browser) override;
  void OnAfterCreated(BrowserImpl* browser) override;
  void OnViewChanged(BrowserImpl* browser) override;
  void OnVisibilityChanged(BrowserImpl* browser, bool hidden) override;
  void OnInvalidate(BrowserImpl* browser,
                    cef_paint_element_type_t type) override;
  void OnFrameRateChanged(BrowserImpl* browser, int frame_rate) override;
  bool OnMouseEvent(BrowserImpl* browser,
                    const CefMouseEvent& event,
                    int button,
                    bool up,
                    int wheel_x,
                    int wheel_y) override;
  void OnKeyInput(BrowserImpl* browser) override;
  // Blocks until the decoder thread ends (at most one frame's decoding).
  void OnDetached(BrowserImpl* browser) override;

 private:
  void Paint(BrowserImpl* browser,
             cef_paint_element_type_t type,
             const QImage& image,
             const std::vector<CefRect>& dirtyRects);
  void AttachX11(BrowserImpl* browser);
  // The view's size in device pixels, as the client expects its frames.
  static CefSize DeviceSize(BrowserImpl* browser);

  std::unique_ptr<ScreencastSource> source_;
  std::unique_ptr<X11Source> x11_;
  // A frame was dropped before OnAfterCreated: the next goes out whole.
  std::shared_ptr<bool> owe_frame_ = std::make_shared<bool>(false);
  // Held only by this renderer: replies that come later find it gone.
  const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_OSR_RENDERER_H_
