// What the off-screen renderer hears of a browser's page. Lets painting live
// apart from the browser core.

#ifndef CEF_LIBCEF_BROWSER_RENDER_OBSERVER_H_
#define CEF_LIBCEF_BROWSER_RENDER_OBSERVER_H_

#include <functional>
#include <memory>

#include "include/internal/cef_types.h"
#include "include/internal/cef_types_wrappers.h"

namespace cefengine {

class BrowserImpl;

// One per browser, owned by it. Every call comes on the engine UI thread, in
// this order: OnAttached first, OnDetached last, nothing after it.
class RenderObserver {
 public:
  virtual ~RenderObserver() = default;

  // The page target is attached and its domains enabled: the browser's
  // devtools() and session_id() are usable, the view metrics are applied,
  // and the page is still held before its first navigation. Before
  // OnAfterCreated, except after CreateBrowserSync, which returns (after
  // OnAfterCreated) before the page is attached.
  virtual void OnAttached(BrowserImpl* browser) {}

  // The client was told OnAfterCreated.
  virtual void OnAfterCreated(BrowserImpl* browser) {}

  // WasResized or NotifyScreenInfoChanged changed view_size() or
  // device_scale_factor(); the new metrics override has been sent.
  virtual void OnViewChanged(BrowserImpl* browser) {}

  // WasHidden(hidden).
  virtual void OnVisibilityChanged(BrowserImpl* browser, bool hidden) {}

  // Invalidate(type): the client wants a full frame again.
  virtual void OnInvalidate(BrowserImpl* browser,
                            cef_paint_element_type_t type) {}

  // SetWindowlessFrameRate; the value is already clamped to 1..60.
  virtual void OnFrameRateChanged(BrowserImpl* browser, int frame_rate) {}

  // SendExternalBeginFrame.
  virtual void OnExternalBeginFrame(BrowserImpl* browser) {}

  // A new document committed in the main frame (not a same-document
  // navigation).
  virtual void OnMainFrameNavigated(BrowserImpl* browser) {}

  // A mouse event for the page, in view coordinates, before it is sent:
  // true if the observer took it (one for an open drop-down). |button| is
  // 0 for a move or the wheel, else 1 left, 2 middle, 3 right. Only for a
  // browser whose Chromium runs in the engine's X server.
  virtual bool OnMouseEvent(BrowserImpl* browser,
                            const CefMouseEvent& event,
                            int button,
                            bool up,
                            int wheel_x,
                            int wheel_y) {
    return false;
  }

  // A key is on its way to the page.
  virtual void OnKeyInput(BrowserImpl* browser) {}

  // The page is going (closed, crashed or Chromium died): stop using the
  // session. Before OnBeforeClose.
  virtual void OnDetached(BrowserImpl* browser) {}
};

// Makes the observer of a new browser, or null for none. Engine UI thread.
using RenderObserverFactory =
    std::function<std::unique_ptr<RenderObserver>(BrowserImpl* browser)>;

// Sets the factory used for every browser created afterwards; the renderer
// registers itself once (a static registrar is fine). Any thread.
void SetRenderObserverFactory(RenderObserverFactory factory);
RenderObserverFactory GetRenderObserverFactory();

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_RENDER_OBSERVER_H_
