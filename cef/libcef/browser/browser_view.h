// The view a client shows its page in: the size and scale its render
// handler gives, visibility and frame rate, and the Emulation commands that
// lay the page out to fit them.

#ifndef CEF_LIBCEF_BROWSER_BROWSER_VIEW_H_
#define CEF_LIBCEF_BROWSER_BROWSER_VIEW_H_

#include <mutex>

#include <QJsonObject>

#include "include/cef_browser.h"

namespace cefengine {

class BrowserImpl;

// Owned by its browser; the thread of each call is named below.
class BrowserView {
 public:
  // |popup_size| is used when the client has no render handler.
  BrowserView(BrowserImpl* browser, int frame_rate, const CefSize& popup_size);
  BrowserView(const BrowserView&) = delete;
  BrowserView& operator=(const BrowserView&) = delete;

  // The view as last applied: logical size from GetViewRect and the scale
  // from GetScreenInfo (1 when the handler gives none). Any thread.
  CefSize view_size() const;
  float device_scale_factor() const;
  // The scale Chromium paints at (--force-device-scale-factor of its
  // process). Any thread.
  float chromium_scale_factor() const;
  void set_chromium_scale_factor(float factor);
  bool is_hidden() const;
  int frame_rate() const;

  // Asks the render handler for the view again; true if it changed. Engine
  // UI thread.
  bool UpdateFromClient();
  // The two commands that apply the view and the zoom level to the page:
  // Emulation.setDeviceMetricsOverride, then Emulation.setVisibleSize.
  // Engine UI thread.
  QJsonObject MetricsOverride();
  QJsonObject VisibleSize() const;
  // Sends both, and tells the render observer. Engine UI thread.
  void ApplyToPage();
  // |params| of an input event with its point ("x", "y") in view
  // coordinates, moved to the page's zoomed view. Any thread.
  QJsonObject ToPagePoint(QJsonObject params) const;

  // CefBrowserHost's calls about the view. Any thread.
  void WasResized();
  void WasHidden(bool hidden);
  void Invalidate(cef_paint_element_type_t type);
  void SendExternalBeginFrame();
  void SetFrameRate(int frame_rate);

 private:
  BrowserImpl* const browser_;
  const CefSize popup_size_;
  // The page was once told it paints softer than its Chromium could.
  // Engine UI thread.
  bool warned_soft_scale_ = false;

  mutable std::mutex mutex_;
  // Guarded by |mutex_|.
  CefSize view_size_{800, 600};
  float device_scale_factor_ = 1;
  float chromium_scale_factor_ = 1;
  bool hidden_ = false;
  int frame_rate_ = 30;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_BROWSER_VIEW_H_
