#include "libcef/browser/page_zoom.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/browser_view.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

namespace {

// Chrome's zoom steps, as factors.
constexpr double kZoomFactors[] = {0.25, 1 / 3.0, 0.5, 2 / 3.0, 0.75, 0.8,
                                   0.9,  1.0,     1.1, 1.25,    1.5,  1.75,
                                   2.0,  2.5,     3.0, 4.0,     5.0};
constexpr double kMinFactor = kZoomFactors[0];
constexpr double kMaxFactor = kZoomFactors[std::size(kZoomFactors) - 1];

double ZoomFactor(double level) {
  return std::pow(1.2, level);
}

double ZoomLevel(double factor) {
  return std::log(factor) / std::log(1.2);
}

}  // namespace

PageZoom::PageZoom(BrowserImpl* browser) : browser_(browser) {}

bool PageZoom::CanZoom(cef_zoom_command_t command) const {
  const double factor = ZoomFactor(level());
  switch (command) {
    case CEF_ZOOM_COMMAND_OUT:
      return factor > kMinFactor + 1e-6;
    case CEF_ZOOM_COMMAND_RESET:
      return std::fabs(factor - 1.0) > 1e-6;
    case CEF_ZOOM_COMMAND_IN:
      return factor < kMaxFactor - 1e-6;
  }
  return false;
}

void PageZoom::Zoom(cef_zoom_command_t command) {
  CefRefPtr<BrowserImpl> self(browser_);
  // On the UI thread, so that commands from elsewhere step in turn.
  RunOnUiThread([self, this, command] {
    const double factor = ZoomFactor(level());
    double next = 1.0;
    if (command == CEF_ZOOM_COMMAND_IN) {
      next = kMaxFactor;
      for (double step : kZoomFactors) {
        if (step > factor + 1e-6) {
          next = step;
          break;
        }
      }
    } else if (command == CEF_ZOOM_COMMAND_OUT) {
      next = kMinFactor;
      for (double step : kZoomFactors) {
        if (step < factor - 1e-6) {
          next = step;
        }
      }
    }
    SetLevel(ZoomLevel(next));
  });
}

double PageZoom::level() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return level_;
}

void PageZoom::SetLevel(double level) {
  if (!std::isfinite(level)) {
    LOG(ERROR) << "CefBrowserHost::SetZoomLevel: not a zoom level";
    return;
  }
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (level_ == level) {
      return;
    }
    level_ = level;
  }
  CefRefPtr<BrowserImpl> self(browser_);
  // The task reads the level when it runs: the last one set wins.
  RunOnUiThread([self] {
    if (self->IsValid()) {
      self->view()->ApplyToPage();
    }
  });
}

double PageZoom::applied_factor() const {
  return std::clamp(ZoomFactor(level()), kMinFactor, kMaxFactor);
}

}  // namespace cefengine
