#include "libcef/osr/screencast_source.h"

#include <gtest/gtest.h>

#include <QRegion>
#include <QTemporaryDir>
#include <QUrl>
#include <memory>
#include <vector>

#include "devtools/devtools_test_support.h"

using cefengine::DevToolsReply;
using cefengine::DevToolsSession;
using cefengine::ScreencastSource;
using namespace devtools_test;

namespace {

// Known colours at known CSS pixels: a 1-pixel dot, a box a script recolours,
// a canvas a script redraws with the same pixels.
const char kPage[] = R"(<html><body style="margin:0;background:#fe0102">
<div style="position:absolute;left:0;top:0;width:160px;height:120px;background:#102030"></div>
<div style="position:absolute;left:21px;top:7px;width:1px;height:1px;background:#abcdef"></div>
<div id="box" style="position:absolute;left:200px;top:150px;width:40px;height:30px;background:#00ff7f"></div>
<canvas id="c" width="20" height="20" style="position:absolute;left:280px;top:200px"></canvas>
<script>
function paintCanvas() { const x = c.getContext('2d'); x.fillStyle = '#336699'; x.fillRect(0, 0, 20, 20); }
paintCanvas();
</script></body></html>)";

struct Painted {
  QImage image;
  std::vector<CefRect> rects;
};

// BGRA bytes of one device pixel.
QByteArray bgraAt(const QImage& image, int x, int y) {
  return QByteArray(reinterpret_cast<const char*>(image.constScanLine(y)) + x * 4, 4);
}
QByteArray bgra(uint32_t rgb) {
  const char bytes[] = {char(rgb & 0xff), char((rgb >> 8) & 0xff), char((rgb >> 16) & 0xff), char(0xff)};
  return QByteArray(bytes, 4);
}

class ScreencastSourceTest : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    std::string error;
    cefengine::ChromiumProcess::Options options = chromiumOptions(profile_);
    options.deviceScaleFactor = scale();
    ASSERT_TRUE(session_->start(options, &error)) << error;
    const DevToolsReply target = sync("Target.createTarget", {{"url", "about:blank"}}, QString());
    page_ = sync("Target.attachToTarget", {{"targetId", target.result["targetId"]}, {"flatten", true}}, QString())
                .result["sessionId"]
                .toString();
    ASSERT_FALSE(page_.isEmpty());
    resize(320, 240);
    sync("Page.enable", {}, page_);
    source_ = std::make_unique<ScreencastSource>(
        session_.get(), page_, queue_.dispatcher(),
        [this](const QImage& image, const std::vector<CefRect>& rects) { painted_.push_back({image, rects}); });
    source_->Start();
    sync("Page.navigate", {{"url", "data:text/html," + QString::fromUtf8(QUrl::toPercentEncoding(kPage))}}, page_);
  }
  void TearDown() override {
    source_.reset();
    session_.reset();
  }

  int scale() const { return GetParam(); }
  DevToolsReply sync(const QString& method, const QJsonObject& params, const QString& session) {
    return session_->sendCommandSync(method, params, session, 10s);
  }
  void resize(int width, int height) {
    sync("Emulation.setDeviceMetricsOverride",
         {{"width", width}, {"height", height}, {"deviceScaleFactor", scale()}, {"mobile", false}}, page_);
  }
  void evaluate(const QString& script) { sync("Runtime.evaluate", {{"expression", script}}, page_); }
  // Runs the session's events until the last painted frame shows |rgb| at the CSS pixel (x, y).
  bool waitForColour(int x, int y, uint32_t rgb) {
    return queue_.runUntil([&] {
      return !painted_.empty() && painted_.back().image.width() > x * scale() &&
             bgraAt(painted_.back().image, x * scale(), y * scale()) == bgra(rgb);
    });
  }
  // Runs the session's events for a while, letting frames on their way arrive.
  void settle(std::chrono::milliseconds time) { queue_.runUntil([] { return false; }, time); }
  // The page as loaded, settled.
  void waitForPage() {
    ASSERT_TRUE(waitForColour(0, 0, 0x102030));
    ASSERT_TRUE(waitForColour(300, 20, 0xfe0102));
  }

  QTemporaryDir profile_;
  TestDispatcher queue_;
  std::unique_ptr<DevToolsSession> session_ = std::make_unique<DevToolsSession>(queue_.dispatcher());
  QString page_;
  std::unique_ptr<ScreencastSource> source_;
  std::vector<Painted> painted_;
};

}  // namespace

TEST_P(ScreencastSourceTest, FramesCarryThePagesExactColoursAtDevicePixels) {
  waitForPage();
  const QImage& image = painted_.back().image;
  const int s = scale();
  EXPECT_EQ(image.size(), QSize(320 * s, 240 * s));
  EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
  EXPECT_EQ(image.bytesPerLine(), image.width() * 4);
  EXPECT_EQ(bgraAt(image, 159 * s + s - 1, 119 * s + s - 1), bgra(0x102030));
  EXPECT_EQ(bgraAt(image, 160 * s, 119 * s), bgra(0xfe0102));
  EXPECT_EQ(bgraAt(image, 210 * s, 160 * s), bgra(0x00ff7f));
  EXPECT_EQ(bgraAt(image, 319 * s + s - 1, 239 * s + s - 1), bgra(0xfe0102));
  // The dot fills exactly s x s device pixels.
  for (int dy = 0; dy < s; ++dy)
    for (int dx = 0; dx < s; ++dx) EXPECT_EQ(bgraAt(image, 21 * s + dx, 7 * s + dy), bgra(0xabcdef));
  EXPECT_EQ(bgraAt(image, 21 * s - 1, 7 * s), bgra(0x102030));
  EXPECT_EQ(bgraAt(image, 22 * s, 7 * s), bgra(0x102030));
  EXPECT_EQ(bgraAt(image, 21 * s, 7 * s - 1), bgra(0x102030));
  EXPECT_EQ(bgraAt(image, 21 * s, 8 * s), bgra(0x102030));
  // Each painted frame starts whole or lists what changed.
  EXPECT_EQ(painted_.front().rects, std::vector<CefRect>{CefRect(0, 0, painted_.front().image.width(), painted_.front().image.height())});
  EXPECT_EQ(source_->stats().delivered, painted_.size());
  EXPECT_GE(source_->stats().produced, painted_.size());
}

TEST_P(ScreencastSourceTest, AChangeIsCoveredAndAnUnchangedFrameIsNotPainted) {
  waitForPage();
  const size_t before = painted_.size();
  evaluate("box.style.background = '#0000fe'");
  ASSERT_TRUE(waitForColour(210, 160, 0x0000fe));
  const int s = scale();
  const QRect box(200 * s, 150 * s, 40 * s, 30 * s);
  QRegion covered;
  for (size_t i = before; i < painted_.size(); ++i)
    for (const CefRect& r : painted_[i].rects) covered += QRect(r.x, r.y, r.width, r.height);
  EXPECT_TRUE((QRegion(box) - covered).isEmpty());
  EXPECT_LT(covered.boundingRect().width() * covered.boundingRect().height(), 320 * s * 240 * s / 2);

  // Same pixels drawn again: Chromium sends a frame, nobody is painted.
  const size_t painted = painted_.size();
  const uint64_t unchanged = source_->stats().decoder.unchanged;
  evaluate("paintCanvas()");
  EXPECT_TRUE(queue_.runUntil([&] { return source_->stats().decoder.unchanged > unchanged; }));
  EXPECT_EQ(painted_.size(), painted);
}

TEST_P(ScreencastSourceTest, InvalidateRepaintsTheWholeLastFrame) {
  waitForPage();
  settle(300ms);
  const size_t painted = painted_.size();
  source_->Invalidate();
  ASSERT_TRUE(queue_.runUntil([&] { return painted_.size() > painted; }));
  const Painted& last = painted_.back();
  EXPECT_EQ(last.rects, std::vector<CefRect>{CefRect(0, 0, 320 * scale(), 240 * scale())});
  EXPECT_EQ(bgraAt(last.image, 0, 0), bgra(0x102030));
}

TEST_P(ScreencastSourceTest, ResizeBringsFramesOfTheNewSize) {
  waitForPage();
  resize(200, 100);
  ASSERT_TRUE(queue_.runUntil([&] { return painted_.back().image.width() == 200 * scale(); }));
  EXPECT_EQ(painted_.back().image.height(), 100 * scale());
  EXPECT_EQ(painted_.back().rects, std::vector<CefRect>{CefRect(0, 0, 200 * scale(), 100 * scale())});
}

TEST_P(ScreencastSourceTest, NothingIsPaintedWhileStoppedAndStartRepaintsWhole) {
  waitForPage();
  source_->Stop();
  settle(200ms);
  const size_t painted = painted_.size();
  evaluate("box.style.background = '#0000fe'");
  settle(300ms);
  EXPECT_EQ(painted_.size(), painted);
  source_->Start();
  ASSERT_TRUE(waitForColour(210, 160, 0x0000fe));
  EXPECT_EQ(painted_[painted].rects.size(), 1u);
  EXPECT_EQ(painted_[painted].rects[0], CefRect(0, 0, 320 * scale(), 240 * scale()));
}

INSTANTIATE_TEST_SUITE_P(Scales, ScreencastSourceTest, testing::Values(1, 2),
                         [](const testing::TestParamInfo<int>& info) { return "x" + std::to_string(info.param); });
