#include "libcef/browser/browser_view.h"

#include <algorithm>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/render_observer.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

namespace {

constexpr int kDefaultWidth = 800;
constexpr int kDefaultHeight = 600;

// Chromium rasterizes at its process's factor only; a page of another factor
// is laid out at its own and zoomed by the ratio into a view of the right
// number of device pixels.
double ScaleZoom(float scale, float painted) {
  return painted > 0 ? static_cast<double>(scale) / painted : 1.0;
}

}  // namespace

BrowserView::BrowserView(BrowserImpl* browser,
                         int frame_rate,
                         const CefSize& popup_size)
    : browser_(browser), popup_size_(popup_size) {
  if (frame_rate > 0) {
    frame_rate_ = std::clamp(frame_rate, 1, 60);
  }
}

CefSize BrowserView::view_size() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return view_size_;
}

float BrowserView::device_scale_factor() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return device_scale_factor_;
}

float BrowserView::chromium_scale_factor() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return chromium_scale_factor_;
}

void BrowserView::set_chromium_scale_factor(float factor) {
  std::lock_guard<std::mutex> lock(mutex_);
  chromium_scale_factor_ = factor;
}

bool BrowserView::is_hidden() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return hidden_;
}

int BrowserView::frame_rate() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return frame_rate_;
}

bool BrowserView::UpdateFromClient() {
  CefSize size(kDefaultWidth, kDefaultHeight);
  float scale = 1;
  if (CefRefPtr<CefRenderHandler> handler = browser_->render_handler()) {
    CefRect rect;
    handler->GetViewRect(browser_, rect);
    if (rect.width > 0 && rect.height > 0) {
      size = CefSize(rect.width, rect.height);
    }
    CefScreenInfo screen;
    if (handler->GetScreenInfo(browser_, screen) &&
        screen.device_scale_factor > 0) {
      scale = screen.device_scale_factor;
    }
  } else if (popup_size_.width > 0 && popup_size_.height > 0) {
    size = popup_size_;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  const bool changed = size != view_size_ || scale != device_scale_factor_;
  view_size_ = size;
  device_scale_factor_ = scale;
  return changed;
}

QJsonObject BrowserView::MetricsOverride() {
  const CefSize size = view_size();
  const float scale = device_scale_factor();
  const float painted = chromium_scale_factor();
  // Page zoom as Chromium's: the page is laid out smaller by the factor and
  // at a ratio larger by it, into the same visible size.
  const double zoom = browser_->css_to_view_scale();
  if (scale > painted && !warned_soft_scale_) {
    // Above the process's factor the zoom enlarges.
    warned_soft_scale_ = true;
    LOG(WARNING) << "Device scale factor " << scale
                 << " is above the factor its Chromium paints at (" << painted
                 << "): the page is enlarged and less sharp";
  }
  // Width 0 would end the override.
  QJsonObject metrics{{"width", std::max(1, qRound(size.width / zoom))},
                      {"height", std::max(1, qRound(size.height / zoom))},
                      {"deviceScaleFactor", scale * zoom},
                      {"mobile", false},
                      {"scale", ScaleZoom(scale, painted) * zoom}};
  if (zoom != 1.0) {
    // Chromium's zoom leaves scrollbars their size on screen, while classic
    // ones would grow with the ratio here and crowd the view: a zoomed page
    // gets overlay scrollbars, which take no room.
    metrics.insert(QStringLiteral("scrollbarType"), QStringLiteral("overlay"));
  }
  return metrics;
}

QJsonObject BrowserView::VisibleSize() const {
  const CefSize size = view_size();
  const double zoom = ScaleZoom(device_scale_factor(), chromium_scale_factor());
  return QJsonObject{{"width", qRound(size.width * zoom)},
                     {"height", qRound(size.height * zoom)}};
}

void BrowserView::ApplyToPage() {
  // The metrics override resets the visible size: both go again.
  browser_->SendPageCommand(QStringLiteral("Emulation.setDeviceMetricsOverride"),
                            MetricsOverride());
  browser_->SendPageCommand(QStringLiteral("Emulation.setVisibleSize"),
                            VisibleSize());
  if (RenderObserver* observer = browser_->render_observer()) {
    observer->OnViewChanged(browser_);
  }
}

QJsonObject BrowserView::ToPagePoint(QJsonObject params) const {
  // The protocol takes input points in the zoomed view's pixels; the page
  // divides them by the whole scale, its zoom included.
  const double zoom = ScaleZoom(device_scale_factor(), chromium_scale_factor());
  if (zoom != 1.0) {
    for (const char* key : {"x", "y"}) {
      params.insert(QLatin1String(key), params.value(key).toDouble() * zoom);
    }
  }
  return params;
}

void BrowserView::WasResized() {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, this] {
    if (!self->IsValid() || !UpdateFromClient()) {
      return;
    }
    ApplyToPage();
  });
}

void BrowserView::WasHidden(bool hidden) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    hidden_ = hidden;
  }
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, hidden] {
    if (RenderObserver* observer = self->render_observer()) {
      observer->OnVisibilityChanged(self.get(), hidden);
    }
  });
}

void BrowserView::Invalidate(cef_paint_element_type_t type) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, type] {
    if (RenderObserver* observer = self->render_observer()) {
      observer->OnInvalidate(self.get(), type);
    }
  });
}

void BrowserView::SendExternalBeginFrame() {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self] {
    if (RenderObserver* observer = self->render_observer()) {
      observer->OnExternalBeginFrame(self.get());
    }
  });
}

void BrowserView::SetFrameRate(int frame_rate) {
  const int clamped = std::clamp(frame_rate, 1, 60);
  {
    std::lock_guard<std::mutex> lock(mutex_);
    frame_rate_ = clamped;
  }
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, clamped] {
    if (RenderObserver* observer = self->render_observer()) {
      observer->OnFrameRateChanged(self.get(), clamped);
    }
  });
}

}  // namespace cefengine
