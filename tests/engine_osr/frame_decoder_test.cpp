#include "libcef/osr/frame_decoder.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <mutex>

#include "devtools/devtools_test_support.h"

using cefengine::FrameDecoder;
using devtools_test::waitUntil;

namespace {

QString png(QRgb colour) {
  QImage image(400, 300, QImage::Format_RGB32);
  image.fill(colour);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return QString::fromLatin1(bytes.toBase64());
}

}  // namespace

// What the paths through the engine cannot force: a burst, a broken frame, a repeated one.
TEST(FrameDecoderTest, ABurstDropsTheOldestTheLatestAlwaysComesAndNothingElseIsOutput) {
  std::mutex mutex;
  std::vector<int> reds;
  FrameDecoder decoder([&](FrameDecoder::Frame frame) {
    std::lock_guard<std::mutex> lock(mutex);
    reds.push_back(qRed(frame.image.pixel(0, 0)));
  });
  std::vector<QString> frames;
  for (int i = 0; i < 30; ++i) frames.push_back(png(qRgb(i, 0, 0)));
  frames.push_back("broken");
  frames.push_back(frames[29]);
  for (const QString& frame : frames) decoder.Submit(frame);
  ASSERT_TRUE(waitUntil([&] {
    const FrameDecoder::Stats s = decoder.stats();
    return s.superseded + s.output + s.broken + s.unchanged == 32;
  }));
  {
    std::lock_guard<std::mutex> lock(mutex);
    EXPECT_EQ(reds.back(), 29);
    EXPECT_TRUE(std::is_sorted(reds.begin(), reds.end()) && std::adjacent_find(reds.begin(), reds.end()) == reds.end());
  }
  EXPECT_GT(decoder.stats().superseded, 0u);
  // Asked for, an unchanged frame still goes out.
  const size_t before = decoder.stats().output;
  decoder.RequestFullFrame();
  decoder.Submit(frames[29]);
  EXPECT_TRUE(waitUntil([&] { return decoder.stats().output == before + 1; }));
}
