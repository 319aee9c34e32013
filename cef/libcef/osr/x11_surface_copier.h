// Copies the pixels of Surfaces into their frames: MIT-SHM segments, the
// damage a copy takes, which part of a frame changed. Includes Xlib: only
// for .cc files of this folder.

#ifndef CEF_LIBCEF_OSR_X11_SURFACE_COPIER_H_
#define CEF_LIBCEF_OSR_X11_SURFACE_COPIER_H_

#include <cstddef>
#include <vector>

#include "include/internal/cef_types_wrappers.h"
#include "libcef/osr/x11_surface.h"

#include <X11/extensions/Xfixes.h>

namespace cefengine {

class XServer;

// Lives on the X thread: every method.
class SurfaceCopier {
 public:
  explicit SurfaceCopier(XServer* server) : server_(server) {}
  SurfaceCopier(const SurfaceCopier&) = delete;
  SurfaceCopier& operator=(const SurfaceCopier&) = delete;
  ~SurfaceCopier();

  // Names the window's pixmap and watches its damage.
  bool Setup(Surface* surface, int width, int height);
  // Names the window's pixmap again, at a new size.
  void Rename(Surface* surface, int width, int height);
  // Forgets the window; the frame's memory goes once the owner is done.
  void Clear(Surface* surface);
  void FreeShm(ShmBuffer* buffer);

  // The rectangles of one surface's frame to send, or none.
  std::vector<CefRect> Capture(Surface* surface);

  // The frames went to the owner: their memory stays until Returned().
  void Lend() { lent_ = true; }
  // The owner painted what it was lent.
  void Returned();
  bool lent() const { return lent_; }

  // The X server ended: its segments die with this process.
  void ServerGone();

  static CefRect Clip(const CefRect& rect, const Surface& surface);

 private:
  void Retire(ShmBuffer* buffer);
  bool AllocShm(ShmBuffer* buffer, size_t bytes);
  bool EnsureScratch(size_t bytes);
  bool Band(Surface* surface, int top, int height);
  CefRect Copy(Surface* surface, const CefRect& rect);
  bool BigCopy(Surface* surface, const std::vector<CefRect>& rects);

  XServer* const server_;
  bool lent_ = false;
  XserverRegion region_ = 0;
  // For the copies that compare with the last frame.
  ShmBuffer scratch_;
  // Frames the owner may still be painting from, freed once it is done.
  std::vector<ShmBuffer> retired_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_X11_SURFACE_COPIER_H_
