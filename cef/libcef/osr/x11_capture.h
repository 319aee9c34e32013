// The X thread's half of the X frame source: finds the page's window,
// follows its size and its drop-downs, and sends the frames the copier
// makes, one at a time. Includes Xlib: only for .cc files of this folder.

#ifndef CEF_LIBCEF_OSR_X11_CAPTURE_H_
#define CEF_LIBCEF_OSR_X11_CAPTURE_H_

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QImage>

#include "include/internal/cef_types.h"
#include "include/internal/cef_types_wrappers.h"
#include "libcef/osr/x_server.h"
#include "libcef/osr/x11_surface.h"
#include "libcef/osr/x11_surface_copier.h"

namespace cefengine {

// Lives on the X thread: every member and method, unless said otherwise.
class X11Capture : public XServer::Observer,
                   public std::enable_shared_from_this<X11Capture> {
 public:
  // Where the capture reports to. |to_owner| is called on the X thread and
  // runs its task on the owner's thread after |delayMs|; the others are the
  // tasks' calls, so they run on the owner's thread.
  struct Callbacks {
    std::function<void(std::function<void()> task, int64_t delayMs)> to_owner;
    std::function<void(cef_paint_element_type_t type,
                       QImage image,
                       std::vector<CefRect> rects)>
        deliver;
    std::function<void(bool show, const CefRect& rect)> popup;
    std::function<void(const std::string& why)> lost;
  };

  X11Capture(XServer* server, pid_t pid, Callbacks callbacks);
  ~X11Capture() override;

  void Attach();
  void Detach();
  void Claim(int x, int y);
  void SetSize(int width, int height);
  void SetRunning(bool running);
  void Invalidate();
  void SetMinInterval(std::chrono::microseconds interval);
  // The owner painted what it was given.
  void Consumed();
  // Input through the X server, at a point of the view in device pixels.
  void Pointer(int x, int y, int button, bool up, int wheel_x, int wheel_y);
  // A click or a key reached the page; any thread.
  void NoteInput();

  // --- XServer::Observer ------------------------------------------------
  int64_t LastInput() const override { return last_input_.load(); }
  pid_t ChromiumPid() const override { return pid_; }
  void OnWindowChanged(const XServer::WindowInfo& info,
                       bool destroyed) override;
  void OnDamage(XServer::WindowId drawable) override;
  void OnMenuMapped(const XServer::WindowInfo& info) override;
  void OnServerGone() override;

 private:
  void TryClaim();
  void ApplySize();
  void FreeSurface(Surface* surface, bool release);
  void ClosePopup(bool destroyed);
  void TellPopup(bool show, CefRect area = CefRect());
  void Lost(const std::string& why, int64_t delay_ms);
  // Copies and sends what changed, one frame at a time: the next copy waits
  // until the owner has painted the last.
  void Pump();

  XServer* const server_;
  const pid_t pid_;
  const Callbacks callbacks_;
  std::atomic<int64_t> last_input_{0};  // any thread
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
  bool timer_armed_ = false;
  uint64_t resize_generation_ = 0;
  // A resize waits for Chromium's paint (or the fallback) before a copy.
  bool resize_pending_ = false;
  std::chrono::microseconds min_interval_{0};
  std::chrono::steady_clock::time_point next_copy_{};
  SurfaceCopier copier_;
  Surface view_;
  Surface popup_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_X11_CAPTURE_H_
