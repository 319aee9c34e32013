// What the engine's page watchers report, in CEF's terms.

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>

#include "libcef/browser/drag_source.h"
#include "libcef/browser/pointer_feedback.h"

namespace engine_browser_test {
namespace {

using cefengine::PointerFeedback;

TEST(PointerFeedback, ComputedCursorsBecomeCefCursorTypes) {
  EXPECT_EQ(PointerFeedback::ParseCursor("pointer").keyword, CT_HAND);
  EXPECT_EQ(PointerFeedback::ParseCursor("text").keyword, CT_IBEAM);
  EXPECT_EQ(PointerFeedback::ParseCursor("nwse-resize").keyword,
            CT_NORTHWESTSOUTHEASTRESIZE);
  EXPECT_EQ(PointerFeedback::ParseCursor("not-allowed").keyword, CT_NOTALLOWED);
  EXPECT_EQ(PointerFeedback::ParseCursor("none").keyword, CT_NONE);
  EXPECT_EQ(PointerFeedback::ParseCursor("-webkit-grab-something").keyword,
            CT_POINTER);

  // A data URL holds commas of its own; the hot spot is optional.
  const auto image = PointerFeedback::ParseCursor(
      R"(url("data:image/png;base64,AA,BB") 3 4.6, url("b.png"), wait)");
  EXPECT_EQ(image.image_url, "data:image/png;base64,AA,BB");
  EXPECT_TRUE(image.has_hotspot);
  EXPECT_EQ(image.hotspot, QPoint(3, 5));
  EXPECT_EQ(image.keyword, CT_WAIT);
  const auto bare = PointerFeedback::ParseCursor(R"(url("a\"b.png"), crosshair)");
  EXPECT_EQ(bare.image_url, "a\"b.png");
  EXPECT_FALSE(bare.has_hotspot);
  EXPECT_EQ(bare.keyword, CT_CROSS);
}

TEST(PointerFeedback, CursorImagesDecodeAsBgraWithinTheSizeLimit) {
  auto png = [](int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(QColor(10, 20, 30));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
  };
  const QImage small = PointerFeedback::DecodeCursorImage(png(4, 2));
  ASSERT_EQ(small.size(), QSize(4, 2));
  // Blue, green, red, alpha in memory.
  EXPECT_EQ(small.constBits()[0], 30);
  EXPECT_EQ(small.constBits()[2], 10);
  EXPECT_EQ(small.constBits()[3], 255);
  EXPECT_TRUE(PointerFeedback::DecodeCursorImage(png(129, 2)).isNull());
  EXPECT_TRUE(PointerFeedback::DecodeCursorImage("not an image").isNull());
}

TEST(DragSource, InterceptedDragDataBecomesCefDragData) {
  const QJsonObject data{
      {"items",
       QJsonArray{
           QJsonObject{{"mimeType", "text/plain"}, {"data", "words"}},
           QJsonObject{{"mimeType", "text/uri-list"},
                       {"data", "# comment\nhttp://127.0.0.1/a\nhttp://x/b"},
                       {"title", "A"}},
           QJsonObject{{"mimeType", "text/html"},
                       {"data", "<b>words</b>"},
                       {"baseURL", "http://127.0.0.1/"}}}},
      {"dragOperationsMask", 17}};
  CefRefPtr<CefDragData> drag = cefengine::DragSource::ToDragData(data);
  EXPECT_TRUE(drag->IsReadOnly());
  EXPECT_EQ(drag->GetFragmentText().ToString(), "words");
  EXPECT_EQ(drag->GetFragmentHtml().ToString(), "<b>words</b>");
  EXPECT_TRUE(drag->IsLink());
  EXPECT_EQ(drag->GetLinkURL().ToString(), "http://127.0.0.1/a");
  EXPECT_EQ(drag->GetLinkTitle().ToString(), "A");
}

}  // namespace
}  // namespace engine_browser_test
