#include "libcef/osr/dirty_rects.h"

#include <algorithm>
#include <cstring>

namespace cefengine {

namespace {

// Dirty tiles tx0..tx1-1 of one tile row, and the rectangle they extend.
struct Run {
  int tx0;
  int tx1;
  size_t rect;
};

}  // namespace

CefRect DirtyRects::BoundingBox(const std::vector<CefRect>& rects) {
  int left = rects.front().x, top = rects.front().y;
  int right = left + rects.front().width, bottom = top + rects.front().height;
  for (const CefRect& r : rects) {
    left = std::min(left, r.x);
    top = std::min(top, r.y);
    right = std::max(right, r.x + r.width);
    bottom = std::max(bottom, r.y + r.height);
  }
  return CefRect(left, top, right - left, bottom - top);
}

std::vector<CefRect> DirtyRects::Compute(const QImage& previous,
                                         const QImage& current) {
  if (current.isNull())
    return {};
  if (previous.isNull() || previous.size() != current.size() ||
      previous.depth() != current.depth()) {
    return {Whole(current)};
  }

  const int width = current.width();
  const int height = current.height();
  const int pixelBytes = current.depth() / 8;
  const size_t rowBytes = static_cast<size_t>(width) * pixelBytes;
  const int tilesX = (width + kTileSize - 1) / kTileSize;
  const int tilesY = (height + kTileSize - 1) / kTileSize;

  std::vector<CefRect> rects;
  std::vector<Run> open;  // runs of the tile row above
  std::vector<Run> runs;
  std::vector<char> dirty(tilesX);
  for (int ty = 0; ty < tilesY; ++ty) {
    const int y0 = ty * kTileSize;
    const int y1 = std::min(height, y0 + kTileSize);
    std::fill(dirty.begin(), dirty.end(), 0);
    int dirtyCount = 0;
    // Whole rows first: most rows of most frames are unchanged.
    for (int y = y0; y < y1 && dirtyCount < tilesX; ++y) {
      const uchar* before = previous.constScanLine(y);
      const uchar* after = current.constScanLine(y);
      if (std::memcmp(before, after, rowBytes) == 0)
        continue;
      for (int tx = 0; tx < tilesX; ++tx) {
        if (dirty[tx])
          continue;
        const size_t offset = static_cast<size_t>(tx) * kTileSize * pixelBytes;
        const size_t bytes =
            static_cast<size_t>(std::min(kTileSize, width - tx * kTileSize)) *
            pixelBytes;
        if (std::memcmp(before + offset, after + offset, bytes) != 0) {
          dirty[tx] = 1;
          ++dirtyCount;
        }
      }
    }

    // Horizontal runs; a run spanning the same tiles as one just above
    // extends that rectangle downwards.
    runs.clear();
    for (int tx = 0; tx < tilesX; ++tx) {
      if (!dirty[tx])
        continue;
      int end = tx;
      while (end < tilesX && dirty[end])
        ++end;
      auto above = std::find_if(open.begin(), open.end(), [&](const Run& r) {
        return r.tx0 == tx && r.tx1 == end;
      });
      if (above != open.end()) {
        CefRect& rect = rects[above->rect];
        rect.height = y1 - rect.y;
        runs.push_back({tx, end, above->rect});
      } else {
        const int x = tx * kTileSize;
        rects.emplace_back(x, y0, std::min(width, end * kTileSize) - x,
                           y1 - y0);
        runs.push_back({tx, end, rects.size() - 1});
      }
      tx = end;
    }
    open.swap(runs);
  }

  if (rects.size() > kMaxRects)
    return {BoundingBox(rects)};
  return rects;
}

}  // namespace cefengine
