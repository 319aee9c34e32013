#include "libcef/osr/x11_surface_copier.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

#include "libcef/osr/dirty_rects.h"
#include "libcef/osr/x_server.h"

#include <X11/Xutil.h>
#include <X11/extensions/Xcomposite.h>

namespace cefengine {

namespace {

using Clock = std::chrono::steady_clock;

}  // namespace

SurfaceCopier::~SurfaceCopier() {
  FreeShm(&scratch_);
  for (ShmBuffer& buffer : retired_)
    FreeShm(&buffer);
}

void SurfaceCopier::Returned() {
  lent_ = false;
  for (ShmBuffer& buffer : retired_)
    FreeShm(&buffer);
  retired_.clear();
}

void SurfaceCopier::ServerGone() {
  scratch_ = ShmBuffer();
  retired_.clear();
}

bool SurfaceCopier::Setup(Surface* surface, int width, int height) {
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

void SurfaceCopier::Rename(Surface* surface, int width, int height) {
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

void SurfaceCopier::Clear(Surface* surface) {
  Retire(&surface->buffer);
  *surface = Surface();
}

void SurfaceCopier::Retire(ShmBuffer* buffer) {
  if (!buffer->addr)
    return;
  if (lent_)
    retired_.push_back(*buffer);
  else
    FreeShm(buffer);
  *buffer = ShmBuffer();
}

CefRect SurfaceCopier::Clip(const CefRect& rect, const Surface& surface) {
  const int left = std::max(rect.x, 0), top = std::max(rect.y, 0);
  const int right = std::min(rect.x + rect.width, surface.width);
  const int bottom = std::min(rect.y + rect.height, surface.height);
  if (right <= left || bottom <= top)
    return CefRect();
  return CefRect(left, top, right - left, bottom - top);
}

bool SurfaceCopier::AllocShm(ShmBuffer* buffer, size_t bytes) {
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

void SurfaceCopier::FreeShm(ShmBuffer* buffer) {
  if (!buffer->addr)
    return;
  if (server_->display())
    XShmDetach(server_->display(), &buffer->info);
  shmdt(buffer->addr);
  *buffer = ShmBuffer();
}

bool SurfaceCopier::EnsureScratch(size_t bytes) {
  if (scratch_.addr && scratch_.size >= bytes)
    return true;
  FreeShm(&scratch_);
  return AllocShm(&scratch_, std::max<size_t>(bytes, 256 * 1024));
}

// The whole width of rows [top, top + height) straight into the frame,
// where the server writes them (no copy here). False if it cannot.
bool SurfaceCopier::Band(Surface* surface, int top, int height) {
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
CefRect SurfaceCopier::Copy(Surface* surface, const CefRect& rect) {
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
bool SurfaceCopier::BigCopy(Surface* surface,
                            const std::vector<CefRect>& rects) {
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

std::vector<CefRect> SurfaceCopier::Capture(Surface* surface) {
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
  if (surface->full || damaged.size() > DirtyRects::kMaxRects) {
    damaged.assign(1, surface->full ? whole : DirtyRects::BoundingBox(damaged));
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
    if (out.size() > DirtyRects::kMaxRects)
      out.assign(1, DirtyRects::BoundingBox(out));
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
    if (out.size() > DirtyRects::kMaxRects)
      out.assign(1, DirtyRects::BoundingBox(out));
  }
  surface->full = false;
  surface->forced.clear();
  return out;
}

}  // namespace cefengine
