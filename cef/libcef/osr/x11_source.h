// The frames of one page from the engine's X server: the page's window of a
// full Chromium, copied through MIT-SHM where XDamage says it changed, with no
// image encoding; its drop-downs (<select> lists) as popup frames. Copies
// happen on the X thread; the sinks run on the owner's thread.

#ifndef CEF_LIBCEF_OSR_X11_SOURCE_H_
#define CEF_LIBCEF_OSR_X11_SOURCE_H_

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QImage>

#include "include/internal/cef_types.h"
#include "include/internal/cef_types_wrappers.h"
#include "libcef/osr/x_server.h"

namespace cefengine {

class X11Capture;

// Everything but the destructor runs on the owner's thread (the engine UI
// thread), which is also the thread |post| runs tasks on.
class X11Source {
 public:
  using Post = std::function<void(std::function<void()> task, int64_t delayMs)>;
  struct Sinks {
    // A frame of the page (PET_VIEW) or of its open drop-down (PET_POPUP);
    // |rects| is never empty.
    std::function<void(cef_paint_element_type_t type,
                       const QImage& image,
                       const std::vector<CefRect>& rects)>
        paint;
    // A drop-down opened, moved (|show| with its rectangle in the view's
    // device pixels) or closed.
    std::function<void(bool show, const CefRect& rect)> popup;
    // The page's window is gone for good, or never came.
    std::function<void(const std::string& why)> lost;
  };

  X11Source(std::shared_ptr<XServer> server,
            pid_t chromium_pid,
            Post post,
            Sinks sinks);
  X11Source(const X11Source&) = delete;
  X11Source& operator=(const X11Source&) = delete;
  // No sink call afterwards; the X resources go on the X thread.
  ~X11Source();

  // The page's window is the top-level window of this Chromium at (x, y) on
  // the X screen, in device pixels (give or take a pixel of rounding): take
  // it, now or when it appears.
  void Claim(int x, int y);
  // The view's size in device pixels; the window follows.
  void SetSize(int width, int height);
  // While stopped no frame goes out; the first after Start is whole.
  void Start();
  void Stop();
  // The next frame goes out whole, changed or not.
  void Invalidate();
  // At most this many frames a second (1..60; 60: as Chromium paints).
  void SetFrameRate(int framesPerSecond);

  // A click or a key reached the page: a drop-down that opens now is its.
  void NoteInput();

  // What a mouse event (view device pixels) means while a drop-down is open.
  enum class Route {
    kPage,            // not the drop-down's: to the page as usual
    kClosePopupFirst, // a press outside it: close it, then to the page
    kTaken,           // sent to the drop-down through the X server
  };
  // |button|: 1 left, 2 middle, 3 right; 0 for a move.
  Route RouteMouse(int x, int y, int button, bool up);
  Route RouteWheel(int x, int y, int deltaX, int deltaY);
  bool popup_open() const { return popup_open_; }

 private:
  bool InPopup(int x, int y) const;
  void OnPopup(bool show, const CefRect& rect);
  void Lost(const std::string& why);

  const std::shared_ptr<XServer> server_;
  const Post post_;
  const Sinks sinks_;
  std::shared_ptr<X11Source*> self_;
  std::shared_ptr<X11Capture> capture_;
  bool popup_open_ = false;
  CefRect popup_rect_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_X11_SOURCE_H_
