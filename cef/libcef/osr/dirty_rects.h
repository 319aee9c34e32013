// Which parts of a frame changed since the previous one.

#ifndef CEF_LIBCEF_OSR_DIRTY_RECTS_H_
#define CEF_LIBCEF_OSR_DIRTY_RECTS_H_

#include <QImage>
#include <vector>

#include "include/internal/cef_types_wrappers.h"

namespace cefengine {

// Grid of square tiles compared between two frames. Any thread; no state.
class DirtyRects {
 public:
  static constexpr int kTileSize = 64;
  // More rectangles than this become their bounding box: a long list costs
  // the client more (one copy each) than painting a bit too much.
  static constexpr size_t kMaxRects = 8;

  // The areas of |current| that differ from |previous|, as rectangles made
  // of whole tiles clipped to the frame, each pixel in at most one of them.
  // Empty when nothing changed; the whole frame when |previous| is null or of
  // another size. Both frames are 32 bits a pixel.
  static std::vector<CefRect> Compute(const QImage& previous,
                                      const QImage& current);

  // The smallest rectangle holding all of |rects|, which is not empty.
  static CefRect BoundingBox(const std::vector<CefRect>& rects);

  static CefRect Whole(const QImage& frame) {
    return CefRect(0, 0, frame.width(), frame.height());
  }
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_DIRTY_RECTS_H_
