// Off-screen rendering of one browser: its page's screencast painted through
// the client's CefRenderHandler::OnPaint.

#ifndef CEF_LIBCEF_OSR_OSR_RENDERER_H_
#define CEF_LIBCEF_OSR_OSR_RENDERER_H_

#include <memory>
#include <vector>

#include <QImage>

#include "libcef/browser/render_observer.h"
#include "libcef/osr/screencast_source.h"

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
  void OnViewChanged(BrowserImpl* browser) override;
  void OnVisibilityChanged(BrowserImpl* browser, bool hidden) override;
  void OnInvalidate(BrowserImpl* browser,
                    cef_paint_element_type_t type) override;
  void OnFrameRateChanged(BrowserImpl* browser, int frame_rate) override;
  // Blocks until the decoder thread ends (at most one frame's decoding).
  void OnDetached(BrowserImpl* browser) override;

 private:
  void Paint(BrowserImpl* browser,
             const QImage& image,
             const std::vector<CefRect>& dirtyRects);

  std::unique_ptr<ScreencastSource> source_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_OSR_RENDERER_H_
