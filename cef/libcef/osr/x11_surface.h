// A page's or a drop-down's window of the engine's X server as the X frame
// source copies it. Includes Xlib: only for .cc files of this folder.

#ifndef CEF_LIBCEF_OSR_X11_SURFACE_H_
#define CEF_LIBCEF_OSR_X11_SURFACE_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <QImage>

#include "include/internal/cef_types_wrappers.h"

#include <X11/Xlib.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/Xdamage.h>

namespace cefengine {

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

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_X11_SURFACE_H_
