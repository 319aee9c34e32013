#include "libcef/osr/png_decoder.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QRandomGenerator>
#include <QtEndian>

using cefengine::PngDecoder;

namespace {

uint32_t crc32(const QByteArray& bytes) {
  uint32_t crc = 0xffffffffu;
  for (char c : bytes) {
    crc ^= uint8_t(c);
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1)));
  }
  return ~crc;
}

QByteArray chunk(const char* type, const QByteArray& body) {
  QByteArray typed = QByteArray(type, 4) + body;
  QByteArray out(4, 0);
  qToBigEndian<uint32_t>(body.size(), out.data());
  QByteArray crc(4, 0);
  qToBigEndian<uint32_t>(crc32(typed), crc.data());
  return out + typed + crc;
}

// The predictor each PNG filter subtracts, from the left, upper and upper-left bytes.
int predict(int filter, int a, int b, int c) {
  switch (filter) {
    case 1: return a;
    case 2: return b;
    case 3: return (a + b) / 2;
    case 4: {
      const int p = a + b - c, pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
      return pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
    }
    default: return 0;
  }
}

// An 8-bit RGB(A) PNG of |pixels| (non-premultiplied ARGB), line y filtered with filters[y % n],
// its data split over |idatChunks| IDAT chunks.
QByteArray encode(const QImage& pixels, bool alpha, const std::vector<int>& filters, int idatChunks = 1) {
  const int bpp = alpha ? 4 : 3, w = pixels.width(), h = pixels.height();
  QByteArray raw;
  QByteArray previous(w * bpp, 0);
  for (int y = 0; y < h; ++y) {
    QByteArray line;
    for (int x = 0; x < w; ++x) {
      const QRgb p = pixels.pixel(x, y);
      line += char(qRed(p));
      line += char(qGreen(p));
      line += char(qBlue(p));
      if (alpha) line += char(qAlpha(p));
    }
    const int filter = filters[y % filters.size()];
    raw += char(filter);
    for (int i = 0; i < line.size(); ++i) {
      const int a = i >= bpp ? uint8_t(line[i - bpp]) : 0, b = uint8_t(previous[i]),
                c = i >= bpp ? uint8_t(previous[i - bpp]) : 0;
      raw += char(uint8_t(line[i]) - predict(filter, a, b, c));
    }
    previous = line;
  }
  QByteArray header(13, 0);
  qToBigEndian<uint32_t>(w, header.data());
  qToBigEndian<uint32_t>(h, header.data() + 4);
  header[8] = 8;
  header[9] = alpha ? 6 : 2;
  const QByteArray zlib = qCompress(raw).mid(4);  // qCompress puts a length first
  QByteArray png("\x89PNG\r\n\x1a\n", 8);
  png += chunk("IHDR", header);
  const int part = (zlib.size() + idatChunks - 1) / idatChunks;
  for (int i = 0; i < idatChunks; ++i) png += chunk("IDAT", zlib.mid(i * part, part));
  return png + chunk("IEND", {});
}

QImage noise(int w, int h, bool alpha) {
  QImage image(w, h, QImage::Format_ARGB32);
  QRandomGenerator random(42);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const uint32_t v = random.generate();
      image.setPixel(x, y, alpha ? v : (v | 0xff000000u));
    }
  // Opaque, clear and half-transparent pixels for certain.
  if (alpha) {
    image.setPixel(0, 0, qRgba(10, 20, 30, 0));
    image.setPixel(1, 0, qRgba(200, 100, 50, 128));
    image.setPixel(2, 0, qRgba(1, 2, 3, 255));
  }
  return image;
}

class PngDecoderTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!PngDecoder::HasFastInflate()) GTEST_SKIP() << "no libdeflate here: Qt decodes every frame";
  }
  PngDecoder decoder_;
};

}  // namespace

TEST_F(PngDecoderTest, EveryFilterOfRgbAndRgbaGivesThePixelsPremultiplied) {
  for (bool alpha : {false, true}) {
    const QImage pixels = noise(37, 23, alpha);
    const QImage expected = pixels.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (const std::vector<int>& filters : std::vector<std::vector<int>>{{0}, {1}, {2}, {3}, {4}, {4, 3, 2, 1, 0}}) {
      const QByteArray png = encode(pixels, alpha, filters, filters.size() == 1 ? 1 : 3);
      const QImage fast = decoder_.Decode(png);
      ASSERT_EQ(fast.format(), QImage::Format_ARGB32_Premultiplied);
      EXPECT_EQ(fast, expected) << "alpha " << alpha << " filter " << filters[0];
      EXPECT_EQ(fast, PngDecoder::DecodeWithQt(png)) << "alpha " << alpha << " filter " << filters[0];
    }
  }
}

TEST_F(PngDecoderTest, OtherPngsGoThroughQtAndBrokenOnesGiveNothing) {
  // A palette image, as Qt writes it.
  QImage indexed(5, 4, QImage::Format_Indexed8);
  indexed.setColorTable({qRgb(1, 2, 3), qRgb(250, 128, 7)});
  indexed.fill(1);
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  indexed.save(&buffer, "PNG");
  const QImage decoded = decoder_.Decode(png);
  ASSERT_EQ(decoded.format(), QImage::Format_ARGB32_Premultiplied);
  EXPECT_EQ(decoded.pixel(4, 3), qRgb(250, 128, 7));

  const QByteArray good = encode(noise(8, 8, false), false, {2});
  EXPECT_TRUE(decoder_.Decode(good.left(good.size() - 30)).isNull());  // data cut short
  QByteArray badFilter = encode(noise(8, 8, false), false, {2});
  EXPECT_TRUE(decoder_.Decode(encode(noise(8, 8, false), false, {7})).isNull());
  EXPECT_TRUE(decoder_.Decode("not a png").isNull());
  EXPECT_TRUE(decoder_.Decode(QByteArray()).isNull());
}
