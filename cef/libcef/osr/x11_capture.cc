#include "libcef/osr/x11_capture.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <X11/extensions/XTest.h>

namespace cefengine {

namespace {

using Clock = std::chrono::steady_clock;

// How long a page's window may take to appear once Chromium made it.
constexpr std::chrono::milliseconds kClaimTimeout{10000};
// After a resize the next damage brings the new size; without one in this
// time the window is copied anyway.
constexpr std::chrono::milliseconds kResizeFallback{150};
// A window that disappears while its browser still lives is reported after
// this grace, which a normal close uses to tell the browser first.
constexpr int64_t kLostGraceMs = 1500;

}  // namespace

X11Capture::X11Capture(XServer* server, pid_t pid, Callbacks callbacks)
    : server_(server),
      pid_(pid),
      callbacks_(std::move(callbacks)),
      copier_(server) {}

X11Capture::~X11Capture() {
  copier_.FreeShm(&view_.buffer);
  copier_.FreeShm(&popup_.buffer);
}

void X11Capture::NoteInput() {
  last_input_ = Clock::now().time_since_epoch().count();
}

void X11Capture::Attach() { server_->AddObserver(this); }

void X11Capture::Detach() {
  detached_ = true;
  FreeSurface(&view_, true);
  FreeSurface(&popup_, true);
  server_->RemoveObserver(this);
}

void X11Capture::Claim(int x, int y) {
  claim_x_ = x;
  claim_y_ = y;
  claiming_ = true;
  TryClaim();
  if (!claiming_)
    return;
  std::weak_ptr<X11Capture> weak = shared_from_this();
  server_->Post(
      [weak] {
        auto self = weak.lock();
        if (self && self->claiming_ && !self->detached_) {
          self->claiming_ = false;
          self->Lost("its window never appeared", 0);
        }
      },
      kClaimTimeout);
}

void X11Capture::SetSize(int width, int height) {
  want_width_ = width;
  want_height_ = height;
  ApplySize();
}

void X11Capture::SetRunning(bool running) {
  running_ = running;
  if (running)
    view_.full = true;
  Pump();
}

void X11Capture::Invalidate() {
  view_.full = true;
  Pump();
}

void X11Capture::SetMinInterval(std::chrono::microseconds interval) {
  min_interval_ = interval;
}

void X11Capture::Consumed() {
  copier_.Returned();
  Pump();
}

void X11Capture::Pointer(int x,
                         int y,
                         int button,
                         bool up,
                         int wheel_x,
                         int wheel_y) {
  if (!view_.valid())
    return;
  Display* display = server_->display();
  XWindowAttributes attributes;
  int root_x = x, root_y = y;
  const auto it = server_->windows().find(view_.window);
  if (it != server_->windows().end()) {
    root_x += it->second.x;
    root_y += it->second.y;
  } else if (XGetWindowAttributes(display, view_.window, &attributes)) {
    root_x += attributes.x;
    root_y += attributes.y;
  }
  XTestFakeMotionEvent(display, -1, root_x, root_y, CurrentTime);
  if (button > 0)
    XTestFakeButtonEvent(display, static_cast<unsigned>(button),
                         up ? False : True, CurrentTime);
  auto click = [&](unsigned b, int times) {
    for (int i = 0; i < times; ++i) {
      XTestFakeButtonEvent(display, b, True, CurrentTime);
      XTestFakeButtonEvent(display, b, False, CurrentTime);
    }
  };
  // A notch is 120; at least one for any movement.
  if (wheel_y)
    click(wheel_y > 0 ? 4 : 5, std::max(1, std::abs(wheel_y) / 120));
  if (wheel_x)
    click(wheel_x > 0 ? 6 : 7, std::max(1, std::abs(wheel_x) / 120));
  XFlush(display);
}

void X11Capture::OnWindowChanged(const XServer::WindowInfo& info,
                                 bool destroyed) {
  if (detached_)
    return;
  if (claiming_) {
    TryClaim();
    return;
  }
  if (info.id == popup_.window) {
    if (destroyed || !info.mapped) {
      ClosePopup(destroyed);
      return;
    }
    if (info.width != popup_.width || info.height != popup_.height) {
      copier_.Rename(&popup_, info.width, info.height);
    }
    popup_x_ = info.x;
    popup_y_ = info.y;
    TellPopup(true);
    popup_.full = true;
    Pump();
    return;
  }
  if (info.id != view_.window)
    return;
  if (destroyed) {
    view_.window = 0;
    view_.pixmap = 0;
    view_.damage = 0;
    ClosePopup(true);
    Lost("its window disappeared", kLostGraceMs);
    return;
  }
  if (!info.mapped)
    return;
  window_x_ = info.x;
  window_y_ = info.y;
  if (info.width != view_.width || info.height != view_.height) {
    copier_.Rename(&view_, info.width, info.height);
    // Chromium paints the new size next; its damage sends it whole.
    view_.full = true;
    view_.dirty = false;
    resize_pending_ = true;
    std::weak_ptr<X11Capture> weak = shared_from_this();
    const uint64_t generation = ++resize_generation_;
    server_->Post(
        [weak, generation] {
          auto self = weak.lock();
          if (self && self->resize_generation_ == generation &&
              self->resize_pending_) {
            self->resize_pending_ = false;
            self->Pump();
          }
        },
        kResizeFallback);
  }
}

void X11Capture::OnDamage(XServer::WindowId drawable) {
  if (detached_)
    return;
  if (drawable == view_.window && view_.valid()) {
    view_.dirty = true;
    resize_pending_ = false;
    Pump();
  } else if (drawable == popup_.window && popup_.valid()) {
    popup_.dirty = true;
    Pump();
  }
}

void X11Capture::OnMenuMapped(const XServer::WindowInfo& info) {
  if (detached_ || !view_.valid())
    return;
  if (popup_.window)
    ClosePopup(false);
  if (!server_->Claim(info.id, this))
    return;
  popup_.window = info.id;
  popup_x_ = info.x;
  popup_y_ = info.y;
  if (!copier_.Setup(&popup_, info.width, info.height)) {
    server_->Release(info.id, this);
    copier_.Clear(&popup_);
    return;
  }
  TellPopup(true);
  popup_.full = true;
  Pump();
}

void X11Capture::OnServerGone() {
  // The segments die with this process; the server has let go of them.
  view_ = Surface();
  popup_ = Surface();
  copier_.ServerGone();
  Lost("the engine's X server ended", 2 * kLostGraceMs);
}

void X11Capture::TryClaim() {
  for (const auto& [id, info] : server_->windows()) {
    if (!info.mapped || info.override_redirect ||
        (info.pid && info.pid != pid_) || std::abs(info.x - claim_x_) > 2 ||
        std::abs(info.y - claim_y_) > 2)
      continue;
    if (!server_->Claim(id, this))
      continue;
    claiming_ = false;
    view_.window = id;
    window_x_ = info.x;
    window_y_ = info.y;
    if (!copier_.Setup(&view_, info.width, info.height)) {
      server_->Release(id, this);
      copier_.Clear(&view_);
      Lost("its window cannot be copied", 0);
      return;
    }
    view_.full = true;
    ApplySize();
    Pump();
    return;
  }
}

void X11Capture::ApplySize() {
  if (!view_.window || want_width_ <= 0 || want_height_ <= 0)
    return;
  if (want_width_ == view_.width && want_height_ == view_.height)
    return;
  XResizeWindow(server_->display(), view_.window,
                static_cast<unsigned>(want_width_),
                static_cast<unsigned>(want_height_));
  XFlush(server_->display());
}

void X11Capture::FreeSurface(Surface* surface, bool release) {
  if (server_->display() && surface->window) {
    Display* display = server_->display();
    if (surface->damage)
      XDamageDestroy(display, surface->damage);
    if (surface->pixmap)
      XFreePixmap(display, surface->pixmap);
    if (release)
      server_->Release(surface->window, this);
  }
  copier_.Clear(surface);
}

void X11Capture::ClosePopup(bool destroyed) {
  if (!popup_.window)
    return;
  const CefRect area(popup_x_ - window_x_, popup_y_ - window_y_,
                     popup_.width, popup_.height);
  if (destroyed) {
    server_->Release(popup_.window, this);
    copier_.Clear(&popup_);
  } else {
    FreeSurface(&popup_, true);
  }
  TellPopup(false, area);
  // The X pointer leaves the page's window, where it would hover.
  Display* display = server_->display();
  XTestFakeMotionEvent(display, -1, DisplayWidth(display, 0) - 1,
                       DisplayHeight(display, 0) - 1, CurrentTime);
  // What the drop-down covered shows the page again.
  const CefRect clipped = SurfaceCopier::Clip(area, view_);
  if (!clipped.IsEmpty()) {
    view_.forced.push_back(clipped);
    view_.dirty = true;
  }
  Pump();
}

void X11Capture::TellPopup(bool show, CefRect area) {
  if (show) {
    area = CefRect(popup_x_ - window_x_, popup_y_ - window_y_, popup_.width,
                   popup_.height);
  }
  callbacks_.to_owner(
      [popup = callbacks_.popup, show, area] { popup(show, area); }, 0);
}

void X11Capture::Lost(const std::string& why, int64_t delay_ms) {
  callbacks_.to_owner([lost = callbacks_.lost, why] { lost(why); }, delay_ms);
}

void X11Capture::Pump() {
  if (detached_ || copier_.lent() || !running_ || !view_.valid())
    return;
  const bool want_view = view_.dirty || !view_.forced.empty() ||
                         (view_.full && !resize_pending_);
  const bool want_popup = popup_.valid() && (popup_.dirty || popup_.full);
  if (!want_view && !want_popup)
    return;
  const Clock::time_point now = Clock::now();
  if (min_interval_.count() > 0 && now < next_copy_) {
    if (!timer_armed_) {
      timer_armed_ = true;
      std::weak_ptr<X11Capture> weak = shared_from_this();
      server_->Post(
          [weak] {
            if (auto self = weak.lock()) {
              self->timer_armed_ = false;
              self->Pump();
            }
          },
          std::chrono::duration_cast<std::chrono::milliseconds>(next_copy_ -
                                                               now) +
              std::chrono::milliseconds(1));
    }
    return;
  }
  std::vector<CefRect> view_rects;
  std::vector<CefRect> popup_rects;
  if (want_view)
    view_rects = copier_.Capture(&view_);
  if (want_popup)
    popup_rects = copier_.Capture(&popup_);
  if (view_rects.empty() && popup_rects.empty())
    return;
  next_copy_ = now + min_interval_;
  copier_.Lend();
  std::weak_ptr<X11Capture> weak = shared_from_this();
  auto deliver = callbacks_.deliver;
  QImage view_frame = view_rects.empty() ? QImage() : view_.frame;
  QImage popup_frame = popup_rects.empty() ? QImage() : popup_.frame;
  XServer* server = server_;
  callbacks_.to_owner(
      [deliver, weak, server, view_frame = std::move(view_frame),
       view_rects = std::move(view_rects),
       popup_frame = std::move(popup_frame),
       popup_rects = std::move(popup_rects)]() mutable {
        if (!view_rects.empty())
          deliver(PET_VIEW, std::move(view_frame), std::move(view_rects));
        if (!popup_rects.empty())
          deliver(PET_POPUP, std::move(popup_frame), std::move(popup_rects));
        // The frames are released before the X thread writes again.
        view_frame = QImage();
        popup_frame = QImage();
        if (weak.lock()) {
          server->Post([weak] {
            if (auto self = weak.lock())
              self->Consumed();
          });
        }
      },
      0);
}

}  // namespace cefengine
