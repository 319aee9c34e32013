#include "libcef/osr/frame_decoder.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <mutex>
#include <vector>

#include "devtools/devtools_test_support.h"

using cefengine::FrameDecoder;
using devtools_test::waitUntil;

namespace {

QString pngBase64(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return QString::fromLatin1(bytes.toBase64());
}

QImage solid(int width, int height, QRgb colour, QImage::Format format = QImage::Format_RGB32) {
  QImage image(width, height, format);
  image.fill(colour);
  return image;
}

class FrameDecoderTest : public testing::Test {
 protected:
  std::vector<FrameDecoder::Frame> outputs() {
    std::lock_guard<std::mutex> lock(mutex_);
    return outputs_;
  }
  std::mutex mutex_;
  std::vector<FrameDecoder::Frame> outputs_;
  FrameDecoder decoder_{[this](FrameDecoder::Frame frame) {
    std::lock_guard<std::mutex> lock(mutex_);
    outputs_.push_back(std::move(frame));
  }};
};

}  // namespace

TEST_F(FrameDecoderTest, UnchangedFramesAreDroppedAndWholeFramesOnRequest) {
  const QString red = pngBase64(solid(70, 10, qRgb(255, 0, 0)));
  decoder_.Submit(red);
  ASSERT_TRUE(waitUntil([&] { return outputs().size() == 1; }));
  EXPECT_EQ(outputs()[0].dirtyRects, std::vector<CefRect>{CefRect(0, 0, 70, 10)});

  decoder_.Submit(red);
  ASSERT_TRUE(waitUntil([&] { return decoder_.stats().unchanged == 1; }));
  EXPECT_EQ(outputs().size(), 1u);
  EXPECT_FALSE(decoder_.RequestFullFrame());  // idle: nothing to make whole

  QImage dot = solid(70, 10, qRgb(255, 0, 0));
  dot.setPixel(69, 9, qRgb(0, 0, 1));
  decoder_.Submit(pngBase64(dot));
  ASSERT_TRUE(waitUntil([&] { return outputs().size() == 2; }));
  EXPECT_EQ(outputs()[1].dirtyRects, std::vector<CefRect>{CefRect(64, 0, 6, 10)});

  decoder_.Reset();
  decoder_.Submit(pngBase64(dot));
  ASSERT_TRUE(waitUntil([&] { return outputs().size() == 3; }));
  EXPECT_EQ(outputs()[2].dirtyRects, std::vector<CefRect>{CefRect(0, 0, 70, 10)});

  decoder_.Submit("broken");
  ASSERT_TRUE(waitUntil([&] { return decoder_.stats().broken == 1; }));
  EXPECT_EQ(outputs().size(), 3u);
}

TEST_F(FrameDecoderTest, TheLatestFrameWinsAndIsNeverLost) {
  std::vector<QString> frames;
  for (int i = 0; i < 30; ++i) frames.push_back(pngBase64(solid(400, 300, qRgb(i, 0, 0))));
  for (const QString& frame : frames) decoder_.Submit(frame);
  ASSERT_TRUE(waitUntil([&] {
    const FrameDecoder::Stats s = decoder_.stats();
    return s.superseded + s.output + s.unchanged == 30;
  }));
  const std::vector<FrameDecoder::Frame> out = outputs();
  EXPECT_EQ(qRed(out.back().image.pixel(0, 0)), 29);
  for (size_t i = 1; i < out.size(); ++i) EXPECT_GT(qRed(out[i].image.pixel(0, 0)), qRed(out[i - 1].image.pixel(0, 0)));
}
