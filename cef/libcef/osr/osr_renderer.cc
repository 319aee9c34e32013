#include "libcef/osr/osr_renderer.h"

#include "include/cef_render_handler.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

namespace {

// Every browser paints through an OsrRenderer.
[[maybe_unused]] const bool kRegistered = [] {
  SetRenderObserverFactory([](BrowserImpl*) -> std::unique_ptr<RenderObserver> {
    return std::make_unique<OsrRenderer>();
  });
  return true;
}();

}  // namespace

void OsrRenderer::OnAttached(BrowserImpl* browser) {
  // No page, or nobody to paint for: Chromium need not make frames at all.
  DevToolsSession* session = browser->devtools();
  if (!session || !browser->render_handler())
    return;
  source_ = std::make_unique<ScreencastSource>(
      session, browser->session_id(),
      [](std::function<void()> task, int64_t delayMs) {
        PostUiTask(std::move(task), delayMs);
      },
      [this, browser](const QImage& image,
                      const std::vector<CefRect>& dirtyRects) {
        Paint(browser, image, dirtyRects);
      });
  source_->SetFrameRate(browser->windowless_frame_rate());
  if (!browser->is_hidden())
    source_->Start();
}

void OsrRenderer::OnViewChanged(BrowserImpl* browser) {
  if (source_)
    source_->ExpectFrame();
}

void OsrRenderer::OnVisibilityChanged(BrowserImpl* browser, bool hidden) {
  if (!source_)
    return;
  if (hidden)
    source_->Stop();
  else
    source_->Start();
}

void OsrRenderer::OnInvalidate(BrowserImpl* browser,
                               cef_paint_element_type_t type) {
  // No popup is ever painted: headless Chromium draws no <select> list.
  if (source_ && type == PET_VIEW)
    source_->Invalidate();
}

void OsrRenderer::OnFrameRateChanged(BrowserImpl* browser, int frame_rate) {
  if (source_)
    source_->SetFrameRate(frame_rate);
}

void OsrRenderer::OnDetached(BrowserImpl* browser) {
  if (source_) {
    source_->Detach();
    source_.reset();
  }
}

void OsrRenderer::Paint(BrowserImpl* browser,
                        const QImage& image,
                        const std::vector<CefRect>& dirtyRects) {
  CefRefPtr<CefRenderHandler> handler = browser->render_handler();
  if (!handler)
    return;
  // The buffer is ours again when OnPaint returns; the image keeps it alive
  // until then.
  handler->OnPaint(browser, PET_VIEW, dirtyRects, image.constBits(),
                   image.width(), image.height());
}

}  // namespace cefengine
