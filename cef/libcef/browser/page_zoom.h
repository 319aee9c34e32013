// A browser's page zoom, in CEF's levels (factor 1.2 to the level) and
// Chrome's steps. The protocol has no page zoom: the view's metrics
// override makes it, and the page keeps it across navigations.

#ifndef CEF_LIBCEF_BROWSER_PAGE_ZOOM_H_
#define CEF_LIBCEF_BROWSER_PAGE_ZOOM_H_

#include <mutex>

#include "include/cef_browser.h"

namespace cefengine {

class BrowserImpl;

// Any thread. Owned by its browser.
class PageZoom {
 public:
  explicit PageZoom(BrowserImpl* browser);
  PageZoom(const PageZoom&) = delete;
  PageZoom& operator=(const PageZoom&) = delete;

  bool CanZoom(cef_zoom_command_t command) const;
  // One of Chrome's steps in or out, or back to 100%.
  void Zoom(cef_zoom_command_t command);
  double level() const;
  void SetLevel(double level);
  // View pixels per CSS pixel: the factor the level lays the page out at,
  // within Chrome's limits as Blink clamps it.
  double applied_factor() const;

 private:
  BrowserImpl* const browser_;
  mutable std::mutex mutex_;
  double level_ = 0;  // guarded by |mutex_|
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PAGE_ZOOM_H_
