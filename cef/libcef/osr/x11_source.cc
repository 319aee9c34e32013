#include "libcef/osr/x11_source.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "libcef/osr/x11_capture.h"

namespace cefengine {

X11Source::X11Source(std::shared_ptr<XServer> server,
                     pid_t chromium_pid,
                     Post post,
                     Sinks sinks)
    : server_(std::move(server)),
      post_(std::move(post)),
      sinks_(std::move(sinks)),
      self_(std::make_shared<X11Source*>(this)) {
  // The capture's reports run on this thread, and only while this lives.
  std::weak_ptr<X11Source*> weak = self_;
  X11Capture::Callbacks callbacks;
  callbacks.to_owner = post_;
  callbacks.deliver = [weak](cef_paint_element_type_t type, QImage image,
                             std::vector<CefRect> rects) {
    if (auto self = weak.lock())
      (*self)->sinks_.paint(type, image, rects);
  };
  callbacks.popup = [weak](bool show, const CefRect& rect) {
    if (auto self = weak.lock())
      (*self)->OnPopup(show, rect);
  };
  callbacks.lost = [weak](const std::string& why) {
    if (auto self = weak.lock())
      (*self)->Lost(why);
  };
  capture_ = std::make_shared<X11Capture>(server_.get(), chromium_pid,
                                          std::move(callbacks));
  std::shared_ptr<X11Capture> capture = capture_;
  server_->Post([capture] { capture->Attach(); });
}

X11Source::~X11Source() {
  self_.reset();
  std::shared_ptr<X11Capture> capture = std::move(capture_);
  // The X thread lets go of it; never destroyed here if a task holds it.
  server_->Post([capture] { capture->Detach(); });
}

void X11Source::Claim(int x, int y) {
  std::shared_ptr<X11Capture> capture = capture_;
  server_->Post([capture, x, y] { capture->Claim(x, y); });
}

void X11Source::SetSize(int width, int height) {
  std::shared_ptr<X11Capture> capture = capture_;
  server_->Post([capture, width, height] { capture->SetSize(width, height); });
}

void X11Source::Start() {
  std::shared_ptr<X11Capture> capture = capture_;
  server_->Post([capture] { capture->SetRunning(true); });
}

void X11Source::Stop() {
  std::shared_ptr<X11Capture> capture = capture_;
  server_->Post([capture] { capture->SetRunning(false); });
}

void X11Source::Invalidate() {
  std::shared_ptr<X11Capture> capture = capture_;
  server_->Post([capture] { capture->Invalidate(); });
}

void X11Source::SetFrameRate(int framesPerSecond) {
  const int rate = std::clamp(framesPerSecond, 1, 60);
  const std::chrono::microseconds interval(rate >= 60 ? 0 : 1000000 / rate);
  std::shared_ptr<X11Capture> capture = capture_;
  server_->Post([capture, interval] { capture->SetMinInterval(interval); });
}

void X11Source::NoteInput() {
  capture_->NoteInput();
}

bool X11Source::InPopup(int x, int y) const {
  return x >= popup_rect_.x && y >= popup_rect_.y &&
         x < popup_rect_.x + popup_rect_.width &&
         y < popup_rect_.y + popup_rect_.height;
}

X11Source::Route X11Source::RouteMouse(int x, int y, int button, bool up) {
  if (!popup_open_)
    return Route::kPage;
  if (!InPopup(x, y))
    return button > 0 && !up ? Route::kClosePopupFirst : Route::kPage;
  std::shared_ptr<X11Capture> capture = capture_;
  server_->Post([capture, x, y, button, up] {
    capture->Pointer(x, y, button, up, 0, 0);
  });
  return Route::kTaken;
}

X11Source::Route X11Source::RouteWheel(int x, int y, int deltaX, int deltaY) {
  if (!popup_open_)
    return Route::kPage;
  if (!InPopup(x, y))
    return Route::kPage;
  std::shared_ptr<X11Capture> capture = capture_;
  server_->Post([capture, x, y, deltaX, deltaY] {
    capture->Pointer(x, y, 0, false, deltaX, deltaY);
  });
  return Route::kTaken;
}

void X11Source::Lost(const std::string& why) {
  if (sinks_.lost)
    sinks_.lost(why);
}

void X11Source::OnPopup(bool show, const CefRect& rect) {
  popup_open_ = show;
  popup_rect_ = show ? rect : CefRect();
  if (sinks_.popup)
    sinks_.popup(show, rect);
}

}  // namespace cefengine
