#include "libcef/osr/dirty_rects.h"

#include <gtest/gtest.h>

using cefengine::DirtyRects;
using Rects = std::vector<CefRect>;

namespace {

QImage frame(int width, int height) {
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  image.fill(0xff204060);
  return image;
}

// Each changed pixel lies in exactly one rectangle; no rectangle leaves the frame.
void expectExactCover(const QImage& before, const QImage& after, const Rects& rects) {
  for (const CefRect& r : rects)
    EXPECT_TRUE(r.x >= 0 && r.y >= 0 && r.width > 0 && r.height > 0 && r.x + r.width <= after.width() &&
                r.y + r.height <= after.height());
  for (int y = 0; y < after.height(); ++y)
    for (int x = 0; x < after.width(); ++x) {
      int covering = 0;
      for (const CefRect& r : rects) covering += r.Contains(x, y);
      ASSERT_LE(covering, 1) << x << "," << y;
      if (before.pixel(x, y) != after.pixel(x, y)) {
        ASSERT_EQ(covering, 1) << x << "," << y;
      }
    }
}

}  // namespace

TEST(DirtyRectsTest, NothingChangedGivesNothingAndNoComparableFrameTheWhole) {
  const QImage a = frame(130, 70);
  EXPECT_TRUE(DirtyRects::Compute(a, a.copy()).empty());
  const Rects whole{CefRect(0, 0, 130, 70)};
  EXPECT_EQ(DirtyRects::Compute(QImage(), a), whole);
  EXPECT_EQ(DirtyRects::Compute(frame(131, 70), a), whole);
  EXPECT_EQ(DirtyRects::Compute(frame(130, 69), a), whole);
}

TEST(DirtyRectsTest, PixelsAtTheEdgesOfPartialTiles) {
  // 130 x 70: the last tile column is 2 pixels wide, the last tile row 6 high.
  const QImage before = frame(130, 70);
  for (QPoint p : {QPoint(0, 0), QPoint(129, 69), QPoint(63, 63), QPoint(64, 64), QPoint(128, 0)}) {
    QImage after = before.copy();
    after.setPixel(p, 0xff204061);
    const Rects rects = DirtyRects::Compute(before, after);
    ASSERT_EQ(rects.size(), 1u);
    EXPECT_LE(rects[0].width * rects[0].height, 64 * 64);
    expectExactCover(before, after, rects);
  }
  // Only the alpha byte, the last of a line.
  QImage after = before.copy();
  reinterpret_cast<uint32_t*>(after.scanLine(5))[129] = 0xfe204060;
  EXPECT_EQ(DirtyRects::Compute(before, after), Rects{CefRect(128, 0, 2, 64)});
}

TEST(DirtyRectsTest, RunsMergeDownwardsOnlyWhenTheySpanTheSameTiles) {
  const QImage before = frame(300, 300);
  QImage band = before.copy();
  for (int y = 60; y < 200; ++y)
    for (int x = 0; x < 300; ++x) band.setPixel(x, y, 0xff000000);
  EXPECT_EQ(DirtyRects::Compute(before, band), Rects{CefRect(0, 0, 300, 256)});

  QImage shapeL = before.copy();
  for (int y = 0; y < 200; ++y) shapeL.setPixel(5, y, 0xff000000);
  for (int x = 0; x < 300; ++x) shapeL.setPixel(x, 199, 0xff000000);
  shapeL.setPixel(290, 20, 0xff000000);
  const Rects rects = DirtyRects::Compute(before, shapeL);
  EXPECT_EQ(rects.size(), 3u);
  expectExactCover(before, shapeL, rects);
}

TEST(DirtyRectsTest, TooManyRectanglesBecomeTheirBoundingBox) {
  const QImage before = frame(640, 640);
  QImage after = before.copy();
  for (size_t i = 0; i < DirtyRects::kMaxRects; ++i) after.setPixel(i * 64 + 3, i * 64 + 9, 0xff000000);
  EXPECT_EQ(DirtyRects::Compute(before, after).size(), DirtyRects::kMaxRects);
  after.setPixel(100, 600, 0xff000000);
  EXPECT_EQ(DirtyRects::Compute(before, after), Rects{CefRect(0, 0, 512, 640)});
}
