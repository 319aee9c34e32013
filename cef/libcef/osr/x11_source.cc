#include "libcef/osr/x11_source.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <utility>

#include "include/base/cef_logging.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xcomposite.h>
#include <X11/extensions/Xdamage.h>
#include <X11/extensions/Xfixes.h>
#include <X11/keysym.h>

namespace cefengine {

namespace {

using Clock = std::chrono::steady_clock;

// More rectangles than this become their bounding box.
constexpr size_t kMaxRects = 8;
// How long a page's window may take to appear once Chromium made it.
constexpr std::chrono::milliseconds kClaimTimeout{10000};
// After a resize the next damage brings the new size; without one in this
// time the window is copied anyway.
constexpr std::chrono::milliseconds kResizeFallback{150};
// A window that disappears while its browser still lives is reported after
// this grace, which a normal close uses to tell the browser first.
constexpr int64_t kLostGraceMs = 1500;

int64_t Now() {
  return Clock::now().time_since_epoch().count();
}

CefRect Bounds(const std::vector<CefRect>& rects) {
  int left = rects[0].x, top = rects[0].y;
  int right = rects[0].x + rects[0].width, bottom = rects[0].y + rects[0].height;
  for (const CefRect& r : rects) {
    left = std::min(left, r.x);
    top = std::min(top, r.y);
    right = std::max(right, r.x + r.width);
    bottom = std::max(bottom, r.y + r.height);
  }
  return CefRect(left, top, right - left, bottom - top);
}

// A shared memory segment the X server copies into.
struct ShmBuffer {
  XShmSegmentInfo info{};
  void* addr = nullptr;
  size_t size = 0;
};

// One redirected window: its pixmap, its damage, and the last frame copied.
struct Surface {
  Window window = 0;
  Pixmap pixmap = 0;
  Damage damage = 0;
  Visual* visual = nullptr;
  int depth = 24;
  int width = 0;
  int height = 0;
  // The frame: |pixels| in |buffer| (shared memory when the server has
  // MIT-SHM, else |heap|), 4 * width bytes a line.
  QImage frame;
  uint8_t* pixels = nullptr;
  ShmBuffer buffer;
  std::vector<uint8_t> heap;
  bool dirty = false;
  // Copies in a row, the last at |last_copy|, that changed most of the
  // window; copies trusted to damage since.
  int big_changes = 0;
  uint64_t trusted_copies = 0;
  std::chrono::steady_clock::time_point last_copy{};
  // The next copy takes the whole window and sends it whole.
  bool full = false;
  // Rectangles that go out with the next frame even if unchanged.
  std::vector<CefRect> forced;

  bool valid() const { return window != 0 && pixmap != 0; }
};

}  // namespace

// Lives on the X thread: every member and method, unless said otherwise.
class X11Capture : public XServer::Observer,
                   public std::enable_shared_from_this<X11Capture> {
 public:
  using Deliver = std::function<void(cef_paint_element_type_t type,
                                     QImage image,
                                     std::vector<CefRect> rects)>;

  X11Capture(XServer* server, pid_t pid) : server_(server), pid_(pid) {}
  ~X11Capture() override {
    FreeShm(&scratch_);
    for (ShmBuffer& buffer : retired_)
      FreeShm(&buffer);
    FreeShm(&view_.buffer);
    FreeShm(&popup_.buffer);
  }

  // Set once, before the first task; called on the X thread.
  std::function<void(std::function<void()>, int64_t)> to_owner;
  std::weak_ptr<X11Source*> owner;

  void Attach() { server_->AddObserver(this); }

  void Detach() {
    detached_ = true;
    FreeSurface(&view_, true);
    FreeSurface(&popup_, true);
    server_->RemoveObserver(this);
  }

  void Claim(int x, int y) {
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

  void SetSize(int width, int height) {
    want_width_ = width;
    want_height_ = height;
    ApplySize();
  }

  void SetRunning(bool running) {
    running_ = running;
    if (running)
      view_.full = true;
    Pump();
  }

  void Invalidate() {
    view_.full = true;
    Pump();
  }

  void SetMinInterval(std::chrono::microseconds interval) {
    min_interval_ = interval;
  }

  // The owner painted what it was given.
  void Consumed() {
    inflight_ = false;
    for (ShmBuffer& buffer : retired_)
      FreeShm(&buffer);
    retired_.clear();
    Pump();
  }

  // Input through the X server, at a point of the view in device pixels.
  void Pointer(int x, int y, int button, bool up, int wheel_x, int wheel_y) {
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
      XTestFakeButtonEvent(display, static_cast<unsigned>(button), up ? False : True,
                           CurrentTime);
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

  // --- XServer::Observer ------------------------------------------------
  int64_t LastInput() const override { return last_input_.load(); }
  pid_t ChromiumPid() const override { return pid_; }
  std::atomic<int64_t> last_input_{0};  // any thread

  void OnWindowChanged(const XServer::WindowInfo& info,
                       bool destroyed) override {
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
        Rename(&popup_, info.width, info.height);
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
      Rename(&view_, info.width, info.height);
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

  void OnDamage(XServer::WindowId drawable) override {
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

  void OnMenuMapped(const XServer::WindowInfo& info) override {
    if (detached_ || !view_.valid())
      return;
    if (popup_.window)
      ClosePopup(false);
    if (!server_->Claim(info.id, this))
      return;
    popup_.window = info.id;
    popup_x_ = info.x;
    popup_y_ = info.y;
    if (!Setup(&popup_, info.width, info.height)) {
      server_->Release(info.id, this);
      Clear(&popup_);
      return;
    }
    TellPopup(true);
    popup_.full = true;
    Pump();
  }

  void OnServerGone() override {
    // The segments die with this process; the server has let go of them.
    view_ = Surface();
    popup_ = Surface();
    scratch_ = ShmBuffer();
    retired_.clear();
    Lost("the engine's X server ended", 2 * kLostGraceMs);
  }

 private:
  void TryClaim() {
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
      if (!Setup(&view_, info.width, info.height)) {
        server_->Release(id, this);
        Clear(&view_);
        Lost("its window cannot be copied", 0);
        return;
      }
      view_.full = true;
      ApplySize();
      Pump();
      return;
    }
  }

  void ApplySize() {
    if (!view_.window || want_width_ <= 0 || want_height_ <= 0)
      return;
    if (want_width_ == view_.width && want_height_ == view_.height)
      return;
    XResizeWindow(server_->display(), view_.window,
                  static_cast<unsigned>(want_width_),
                  static_cast<unsigned>(want_height_));
    XFlush(server_->display());
  }

  // Names the window's pixmap and watches its damage.
  bool Setup(Surface* surface, int width, int height) {
    Display* display = server_->display();
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, surface->window, &attributes))
      return false;
    surface->visual = attributes.visual;
    surface->depth = attributes.depth;
    surface->damage =
        XDamageCreate(display, surface->window, XDamageReportNonEmpty);
    Rename(surface, width, height);
    return surface->pixmap != 0;
  }

  void Rename(Surface* surface, int width, int height) {
    Display* display = server_->display();
    if (surface->pixmap)
      XFreePixmap(display, surface->pixmap);
    surface->pixmap = XCompositeNameWindowPixmap(display, surface->window);
    surface->width = width;
    surface->height = height;
    if (surface->frame.width() == width && surface->frame.height() == height)
      return;
    Retire(&surface->buffer);
    surface->heap.clear();
    surface->pixels = nullptr;
    const size_t bytes = static_cast<size_t>(std::max(width, 1)) *
                         std::max(height, 1) * 4;
    if (AllocShm(&surface->buffer, bytes)) {
      surface->pixels = static_cast<uint8_t*>(surface->buffer.addr);
    } else {
      surface->heap.assign(bytes, 0);
      surface->pixels = surface->heap.data();
    }
    surface->frame = QImage(surface->pixels, std::max(width, 1),
                            std::max(height, 1), std::max(width, 1) * 4,
                            QImage::Format_ARGB32_Premultiplied);
  }

  void FreeSurface(Surface* surface, bool release) {
    if (server_->display() && surface->window) {
      Display* display = server_->display();
      if (surface->damage)
        XDamageDestroy(display, surface->damage);
      if (surface->pixmap)
        XFreePixmap(display, surface->pixmap);
      if (release)
        server_->Release(surface->window, this);
    }
    Clear(surface);
  }

  // Forgets the window; the frame's memory goes once the owner is done.
  void Clear(Surface* surface) {
    Retire(&surface->buffer);
    *surface = Surface();
  }

  void Retire(ShmBuffer* buffer) {
    if (!buffer->addr)
      return;
    if (inflight_)
      retired_.push_back(*buffer);
    else
      FreeShm(buffer);
    *buffer = ShmBuffer();
  }

  void ClosePopup(bool destroyed) {
    if (!popup_.window)
      return;
    const CefRect area(popup_x_ - window_x_, popup_y_ - window_y_,
                       popup_.width, popup_.height);
    if (destroyed) {
      server_->Release(popup_.window, this);
      Clear(&popup_);
    } else {
      FreeSurface(&popup_, true);
    }
    TellPopup(false, area);
    // The X pointer leaves the page's window, where it would hover.
    Display* display = server_->display();
    XTestFakeMotionEvent(display, -1, DisplayWidth(display, 0) - 1,
                         DisplayHeight(display, 0) - 1, CurrentTime);
    // What the drop-down covered shows the page again.
    const CefRect clipped = Clip(area, view_);
    if (!clipped.IsEmpty()) {
      view_.forced.push_back(clipped);
      view_.dirty = true;
    }
    Pump();
  }

  static CefRect Clip(const CefRect& rect, const Surface& surface) {
    const int left = std::max(rect.x, 0), top = std::max(rect.y, 0);
    const int right = std::min(rect.x + rect.width, surface.width);
    const int bottom = std::min(rect.y + rect.height, surface.height);
    if (right <= left || bottom <= top)
      return CefRect();
    return CefRect(left, top, right - left, bottom - top);
  }

  void TellPopup(bool show, CefRect area = CefRect()) {
    if (show) {
      area = CefRect(popup_x_ - window_x_, popup_y_ - window_y_, popup_.width,
                     popup_.height);
    }
    std::weak_ptr<X11Source*> weak = owner;
    to_owner(
        [weak, show, area] {
          if (auto self = weak.lock())
            (*self)->OnPopup(show, area);
        },
        0);
  }

  void Lost(const std::string& why, int64_t delay_ms) {
    std::weak_ptr<X11Source*> weak = owner;
    to_owner(
        [weak, why] {
          if (auto self = weak.lock())
            (*self)->Lost(why);
        },
        delay_ms);
  }

 public:
  Deliver deliver_;

 private:
  bool AllocShm(ShmBuffer* buffer, size_t bytes) {
    if (!server_->has_shm())
      return false;
    const int id = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (id < 0)
      return false;
    void* addr = shmat(id, nullptr, 0);
    // Gone with its last user, even if this process dies.
    shmctl(id, IPC_RMID, nullptr);
    if (addr == reinterpret_cast<void*>(-1))
      return false;
    buffer->info.shmid = id;
    buffer->info.shmaddr = static_cast<char*>(addr);
    buffer->info.readOnly = False;
    if (!XShmAttach(server_->display(), &buffer->info)) {
      shmdt(addr);
      return false;
    }
    XSync(server_->display(), False);
    buffer->addr = addr;
    buffer->size = bytes;
    return true;
  }

  void FreeShm(ShmBuffer* buffer) {
    if (!buffer->addr)
      return;
    if (server_->display())
      XShmDetach(server_->display(), &buffer->info);
    shmdt(buffer->addr);
    *buffer = ShmBuffer();
  }

  bool EnsureScratch(size_t bytes) {
    if (scratch_.addr && scratch_.size >= bytes)
      return true;
    FreeShm(&scratch_);
    return AllocShm(&scratch_, std::max<size_t>(bytes, 256 * 1024));
  }

  // The whole width of rows [top, top + height) straight into the frame,
  // where the server writes them (no copy here). False if it cannot.
  bool Band(Surface* surface, int top, int height) {
    if (!surface->buffer.addr || height <= 0)
      return false;
    Display* display = server_->display();
    XImage* image = XShmCreateImage(
        display, surface->visual, static_cast<unsigned>(surface->depth),
        ZPixmap,
        reinterpret_cast<char*>(surface->pixels +
                                static_cast<size_t>(top) * surface->width * 4),
        &surface->buffer.info, static_cast<unsigned>(surface->width),
        static_cast<unsigned>(height));
    if (!image)
      return false;
    const bool ok = image->bits_per_pixel == 32 &&
                    image->bytes_per_line == surface->width * 4 &&
                    XShmGetImage(display, surface->pixmap, image, 0, top,
                                 AllPlanes);
    XDestroyImage(image);
    return ok;
  }

  // Copies |rect| of the surface into its frame, alpha made opaque. The
  // part that changed, or an empty rectangle.
  CefRect Copy(Surface* surface, const CefRect& rect) {
    Display* display = server_->display();
    XImage* image = nullptr;
    const size_t bytes = static_cast<size_t>(rect.width) * rect.height * 4;
    bool shm = EnsureScratch(bytes);
    if (shm) {
      image = XShmCreateImage(display, surface->visual,
                              static_cast<unsigned>(surface->depth), ZPixmap,
                              static_cast<char*>(scratch_.addr), &scratch_.info,
                              static_cast<unsigned>(rect.width),
                              static_cast<unsigned>(rect.height));
      if (image && !XShmGetImage(display, surface->pixmap, image, rect.x,
                                 rect.y, AllPlanes)) {
        XDestroyImage(image);
        image = nullptr;
      }
    } else {
      image = XGetImage(display, surface->pixmap, rect.x, rect.y,
                        static_cast<unsigned>(rect.width),
                        static_cast<unsigned>(rect.height), AllPlanes,
                        ZPixmap);
    }
    if (!image)
      return CefRect();
    CefRect changed;
    if (image->bits_per_pixel == 32) {
      // Written through the raw pointer: the owner holds no frame now.
      uchar* bits = surface->pixels;
      const qsizetype stride = static_cast<qsizetype>(surface->width) * 4;
      int first = -1, last = -1;
      int left = rect.width, right = -1;
      for (int row = 0; row < rect.height; ++row) {
        const uint32_t* from = reinterpret_cast<const uint32_t*>(
            image->data + static_cast<size_t>(row) * image->bytes_per_line);
        uint32_t* to = reinterpret_cast<uint32_t*>(
            bits + (rect.y + row) * stride + static_cast<qsizetype>(rect.x) * 4);
        uint32_t differ = 0;
        for (int i = 0; i < rect.width; ++i)
          differ |= (from[i] | 0xff000000u) ^ to[i];
        if (!differ)
          continue;
        if (first < 0)
          first = row;
        last = row;
        int a = 0;
        while (a < left && (from[a] | 0xff000000u) == to[a])
          ++a;
        left = std::min(left, a);
        int b = rect.width - 1;
        while (b > right && (from[b] | 0xff000000u) == to[b])
          --b;
        right = std::max(right, b);
        for (int i = 0; i < rect.width; ++i)
          to[i] = from[i] | 0xff000000u;
      }
      if (first >= 0 && right >= left)
        changed = CefRect(rect.x + left, rect.y + first, right - left + 1,
                          last - first + 1);
    }
    XDestroyImage(image);
    return changed;
  }

  // The rows of |rects|, whole, straight into the frame. Chromium's pixels
  // come opaque (their alpha byte is 0xff), so they need no pass here.
  bool BigCopy(Surface* surface, const std::vector<CefRect>& rects) {
    std::vector<std::pair<int, int>> bands;
    for (const CefRect& r : rects)
      bands.emplace_back(r.y, r.y + r.height);
    std::sort(bands.begin(), bands.end());
    std::vector<std::pair<int, int>> merged;
    for (const auto& band : bands) {
      if (!merged.empty() && band.first <= merged.back().second)
        merged.back().second = std::max(merged.back().second, band.second);
      else
        merged.push_back(band);
    }
    for (const auto& [top, bottom] : merged) {
      if (!Band(surface, top, bottom - top))
        return false;
    }
    return true;
  }

  // The rectangles of one surface's frame to send, or none.
  std::vector<CefRect> Capture(Surface* surface) {
    Display* display = server_->display();
    std::vector<CefRect> damaged;
    if (surface->dirty && surface->damage) {
      if (!region_)
        region_ = XFixesCreateRegion(display, nullptr, 0);
      XDamageSubtract(display, surface->damage, 0, region_);
      int count = 0;
      XRectangle* parts = XFixesFetchRegion(display, region_, &count);
      for (int i = 0; i < count; ++i) {
        const CefRect r = Clip(
            CefRect(parts[i].x, parts[i].y, parts[i].width, parts[i].height),
            *surface);
        if (!r.IsEmpty())
          damaged.push_back(r);
      }
      if (parts)
        XFree(parts);
    }
    surface->dirty = false;
    const CefRect whole(0, 0, surface->width, surface->height);
    if (surface->full || damaged.size() > kMaxRects) {
      damaged.assign(1, surface->full ? whole : Bounds(damaged));
    }
    for (const CefRect& forced : surface->forced)
      damaged.push_back(forced);
    std::vector<CefRect> out;
    if (surface->width <= 0 || surface->height <= 0)
      return out;
    int64_t area = 0;
    for (const CefRect& r : damaged)
      area += static_cast<int64_t>(r.width) * r.height;
    const int64_t window_area =
        static_cast<int64_t>(surface->width) * surface->height;
    const Clock::time_point now = Clock::now();
    // While most of the window keeps changing (an animation), the server
    // copies the damaged rows into the frame itself and damage counts as
    // change. Otherwise each damaged pixel is compared, so that a repaint
    // of the same pixels, or Chromium's whole-window damage after a pause,
    // sends only what changed.
    if (now - surface->last_copy > std::chrono::milliseconds(100))
      surface->big_changes = 0;
    surface->last_copy = now;
    // Three compared copies in a row must have changed most of the window,
    // and every sixteenth copy is compared again.
    const bool streak = surface->big_changes >= 3 &&
                        ++surface->trusted_copies % 16 != 0;
    if (streak && area * 2 >= window_area && BigCopy(surface, damaged)) {
      out = surface->full ? std::vector<CefRect>{whole} : damaged;
      if (out.size() > kMaxRects)
        out.assign(1, Bounds(out));
      surface->full = false;
      surface->forced.clear();
      return out;
    }
    for (const CefRect& r : damaged) {
      const CefRect changed = Copy(surface, r);
      if (!changed.IsEmpty())
        out.push_back(changed);
    }
    int64_t changed_area = 0;
    for (const CefRect& r : out)
      changed_area += static_cast<int64_t>(r.width) * r.height;
    // A whole copy (a new window or size) says nothing about the page.
    surface->big_changes =
        !surface->full && changed_area * 2 >= window_area
            ? surface->big_changes + 1
            : 0;
    if (surface->full) {
      out.assign(1, whole);
    } else {
      for (const CefRect& forced : surface->forced)
        out.push_back(forced);
      if (out.size() > kMaxRects)
        out.assign(1, Bounds(out));
    }
    surface->full = false;
    surface->forced.clear();
    return out;
  }

  // Copies and sends what changed, one frame at a time: the next copy waits
  // until the owner has painted the last.
  void Pump() {
    if (detached_ || inflight_ || !running_ || !view_.valid())
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
      view_rects = Capture(&view_);
    if (want_popup)
      popup_rects = Capture(&popup_);
    if (view_rects.empty() && popup_rects.empty())
      return;
    next_copy_ = now + min_interval_;
    inflight_ = true;
    std::weak_ptr<X11Capture> weak = shared_from_this();
    auto deliver = deliver_;
    QImage view_frame = view_rects.empty() ? QImage() : view_.frame;
    QImage popup_frame = popup_rects.empty() ? QImage() : popup_.frame;
    XServer* server = server_;
    std::weak_ptr<X11Source*> owner_weak = owner;
    to_owner(
        [owner_weak, deliver, weak, server, view_frame = std::move(view_frame),
         view_rects = std::move(view_rects),
         popup_frame = std::move(popup_frame),
         popup_rects = std::move(popup_rects)]() mutable {
          if (owner_weak.lock()) {
            if (!view_rects.empty())
              deliver(PET_VIEW, std::move(view_frame), std::move(view_rects));
            if (!popup_rects.empty())
              deliver(PET_POPUP, std::move(popup_frame),
                      std::move(popup_rects));
          }
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

  XServer* const server_;
  const pid_t pid_;
  bool detached_ = false;
  bool claiming_ = false;
  int claim_x_ = 0;
  int claim_y_ = 0;
  int want_width_ = 0;
  int want_height_ = 0;
  int window_x_ = 0;
  int window_y_ = 0;
  int popup_x_ = 0;
  int popup_y_ = 0;
  bool running_ = false;
  bool inflight_ = false;
  bool timer_armed_ = false;
  uint64_t resize_generation_ = 0;
  // A resize waits for Chromium's paint (or the fallback) before a copy.
  bool resize_pending_ = false;
  std::chrono::microseconds min_interval_{0};
  Clock::time_point next_copy_{};
  Surface view_;
  Surface popup_;
  XserverRegion region_ = 0;
  // For the copies that compare with the last frame.
  ShmBuffer scratch_;
  // Frames the owner may still be painting from, freed once it is done.
  std::vector<ShmBuffer> retired_;
};

// --- X11Source ---------------------------------------------------------------

X11Source::X11Source(std::shared_ptr<XServer> server,
                     pid_t chromium_pid,
                     Post post,
                     Sinks sinks)
    : server_(std::move(server)),
      post_(std::move(post)),
      sinks_(std::move(sinks)),
      self_(std::make_shared<X11Source*>(this)),
      capture_(std::make_shared<X11Capture>(server_.get(), chromium_pid)) {
  capture_->to_owner = post_;
  capture_->owner = self_;
  std::weak_ptr<X11Source*> weak = self_;
  capture_->deliver_ = [weak](cef_paint_element_type_t type, QImage image,
                              std::vector<CefRect> rects) {
    if (auto self = weak.lock())
      (*self)->sinks_.paint(type, image, rects);
  };
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
  capture_->last_input_ = Now();
}

X11Source::Route X11Source::RouteMouse(int x, int y, int button, bool up) {
  if (!popup_open_)
    return Route::kPage;
  const bool inside = x >= popup_rect_.x && y >= popup_rect_.y &&
                      x < popup_rect_.x + popup_rect_.width &&
                      y < popup_rect_.y + popup_rect_.height;
  if (!inside)
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
  const bool inside = x >= popup_rect_.x && y >= popup_rect_.y &&
                      x < popup_rect_.x + popup_rect_.width &&
                      y < popup_rect_.y + popup_rect_.height;
  if (!inside)
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
