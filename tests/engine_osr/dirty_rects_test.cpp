#include "libcef/osr/dirty_rects.h"

#include <gtest/gtest.h>

#include <QImage>

using cefengine::DirtyRects;

namespace {

QImage frame(int width, int height) {
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  image.fill(0xff204060);
  return image;
}

// Every changed pixel lies in exactly one rectangle, and every rectangle
// lies inside the frame.
void expectExactCover(const QImage& before, const QImage& after, const std::vector<CefRect>& rects) {
  for (const CefRect& r : rects) {
    EXPECT_GE(r.x, 0);
    EXPECT_GE(r.y, 0);
    EXPECT_GT(r.width, 0);
    EXPECT_GT(r.height, 0);
    EXPECT_LE(r.x + r.width, after.width());
    EXPECT_LE(r.y + r.height, after.height());
  }
  for (int y = 0; y < after.height(); ++y) {
    for (int x = 0; x < after.width(); ++x) {
      int covering = 0;
      for (const CefRect& r : rects) covering += r.Contains(x, y);
      EXPECT_LE(covering, 1) << x << "," << y;
      if (before.pixel(x, y) != after.pixel(x, y)) {
        ASSERT_EQ(covering, 1) << "changed pixel " << x << "," << y << " not covered";
      }
    }
  }
}

}  // namespace

TEST(DirtyRectsTest, NothingChangedGivesNothingAndNoPreviousGivesTheWhole) {
  const QImage a = frame(130, 70);
  EXPECT_TRUE(DirtyRects::Compute(a, a.copy()).empty());

  const std::vector<CefRect> whole{CefRect(0, 0, 130, 70)};
  EXPECT_EQ(DirtyRects::Compute(QImage(), a), whole);
  EXPECT_EQ(DirtyRects::Compute(frame(131, 70), a), whole);
  EXPECT_EQ(DirtyRects::Compute(frame(130, 69), a), whole);
  EXPECT_TRUE(DirtyRects::Compute(a, QImage()).empty());
}

TEST(DirtyRectsTest, SinglePixelsAtTheEdgesOfOddSizes) {
  // 130 x 70: the last tile column is 2 pixels wide, the last tile row 6 high.
  const QImage before = frame(130, 70);
  for (QPoint p : {QPoint(0, 0), QPoint(129, 69), QPoint(63, 63), QPoint(64, 64), QPoint(128, 0)}) {
    QImage after = before.copy();
    after.setPixel(p, 0xff204061);  // one bit of blue
    const std::vector<CefRect> rects = DirtyRects::Compute(before, after);
    ASSERT_EQ(rects.size(), 1u) << p.x() << "," << p.y();
    EXPECT_TRUE(rects[0].Contains(p.x(), p.y()));
    EXPECT_LE(rects[0].width, DirtyRects::kTileSize);
    EXPECT_LE(rects[0].height, DirtyRects::kTileSize);
    expectExactCover(before, after, rects);
  }
  // Only the alpha byte, the last of a line.
  QImage after = before.copy();
  reinterpret_cast<uint32_t*>(after.scanLine(5))[129] = 0xfe204060;
  const std::vector<CefRect> rects = DirtyRects::Compute(before, after);
  ASSERT_EQ(rects.size(), 1u);
  EXPECT_EQ(rects[0], CefRect(128, 0, 2, 64));
}

TEST(DirtyRectsTest, SeparateChangesStaySeparateAndStripesMerge) {
  const QImage before = frame(300, 300);
  QImage after = before.copy();
  after.setPixel(10, 10, 0xffff0000);
  after.setPixel(290, 290, 0xffff0000);
  std::vector<CefRect> rects = DirtyRects::Compute(before, after);
  ASSERT_EQ(rects.size(), 2u);
  expectExactCover(before, after, rects);

  // A full-width band over three tile rows is one rectangle.
  after = before.copy();
  for (int y = 60; y < 200; ++y)
    for (int x = 0; x < 300; ++x) after.setPixel(x, y, 0xff000000);
  rects = DirtyRects::Compute(before, after);
  ASSERT_EQ(rects.size(), 1u);
  EXPECT_EQ(rects[0], CefRect(0, 0, 300, 256));

  // An L shape: rows of different spans do not merge, but cover exactly.
  after = before.copy();
  for (int y = 0; y < 200; ++y) after.setPixel(5, y, 0xff000000);
  for (int x = 0; x < 300; ++x) after.setPixel(x, 199, 0xff000000);
  rects = DirtyRects::Compute(before, after);
  EXPECT_EQ(rects.size(), 2u);
  expectExactCover(before, after, rects);
}

TEST(DirtyRectsTest, ManyScatteredChangesBecomeTheirBoundingBox) {
  const QImage before = frame(640, 640);
  QImage after = before.copy();
  // A diagonal touches ten tiles that cannot merge.
  for (int i = 0; i < 10; ++i) after.setPixel(i * 64 + 3, i * 64 + 3, 0xff000000);
  after.setPixel(100, 500, 0xff000000);
  const std::vector<CefRect> rects = DirtyRects::Compute(before, after);
  ASSERT_EQ(rects.size(), 1u);
  EXPECT_EQ(rects[0], CefRect(0, 0, 640, 640));

  // Fewer than the limit stay apart.
  after = before.copy();
  for (int i = 0; i < static_cast<int>(DirtyRects::kMaxRects); ++i) after.setPixel(i * 64 + 3, i * 64 + 3, 0xff000000);
  EXPECT_EQ(DirtyRects::Compute(before, after).size(), DirtyRects::kMaxRects);
}
