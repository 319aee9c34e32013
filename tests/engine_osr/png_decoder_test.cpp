#include "libcef/osr/png_decoder.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QRandomGenerator>
#include <QtEndian>

using cefengine::PngDecoder;

namespace {

// A chunk with a zero CRC: the fast road does not read it.
QByteArray chunk(const char* type, const QByteArray& body) {
  QByteArray length(4, 0);
  qToBigEndian<uint32_t>(body.size(), length.data());
  return length + QByteArray(type, 4) + body + QByteArray(4, 0);
}

int predictor(int filter, int left, int up, int upLeft) {
  const int p = left + up - upLeft, pa = std::abs(p - left), pb = std::abs(p - up), pc = std::abs(p - upLeft);
  const int paeth = pa <= pb && pa <= pc ? left : pb <= pc ? up : upLeft;
  const int predictors[] = {0, left, up, (left + up) / 2, paeth};
  return filter < 5 ? predictors[filter] : 0;
}

// An 8-bit RGB(A) PNG of |pixels|, line y filtered with filters[y % n], its data in |idats| chunks.
QByteArray encode(const QImage& pixels, bool alpha, const std::vector<int>& filters, int idats) {
  const int bpp = alpha ? 4 : 3;
  QByteArray raw, previous(pixels.width() * bpp, 0);
  for (int y = 0; y < pixels.height(); ++y) {
    QByteArray line;
    for (int x = 0; x < pixels.width(); ++x) {
      const QRgb p = pixels.pixel(x, y);
      const char rgba[] = {char(qRed(p)), char(qGreen(p)), char(qBlue(p)), char(qAlpha(p))};
      line += QByteArray(rgba, bpp);
    }
    const int filter = filters[y % filters.size()];
    raw += char(filter);
    for (int i = 0; i < line.size(); ++i) {
      const int left = i >= bpp ? uint8_t(line[i - bpp]) : 0, upLeft = i >= bpp ? uint8_t(previous[i - bpp]) : 0;
      raw += char(uint8_t(line[i]) - predictor(filter, left, uint8_t(previous[i]), upLeft));
    }
    previous = line;
  }
  QByteArray header(13, 0);
  qToBigEndian<uint32_t>(pixels.width(), header.data());
  qToBigEndian<uint32_t>(pixels.height(), header.data() + 4);
  header[8] = 8;
  header[9] = alpha ? 6 : 2;
  const QByteArray zlib = qCompress(raw).mid(4);  // without qCompress's length
  QByteArray png = QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk("IHDR", header);
  const int part = (zlib.size() + idats - 1) / idats;
  for (int i = 0; i < idats; ++i) png += chunk("IDAT", zlib.mid(i * part, part));
  return png + chunk("IEND", {});
}

QImage noise(int width, int height, bool alpha) {
  QImage image(width, height, QImage::Format_ARGB32);
  QRandomGenerator random(42);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) image.setPixel(x, y, random.generate() | (alpha ? 0 : 0xff000000u));
  image.setPixel(0, 0, qRgba(10, 20, 30, alpha ? 0 : 255));
  image.setPixel(1, 0, qRgba(200, 100, 50, alpha ? 128 : 255));
  return image;
}

}  // namespace

TEST(PngDecoderTest, EveryFilterOfRgbAndRgbaGivesPremultipliedBgra) {
  PngDecoder decoder;
  for (bool alpha : {false, true}) {
    const QImage pixels = noise(37, 23, alpha);
    const QImage expected = pixels.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (const std::vector<int>& filters : std::vector<std::vector<int>>{{0}, {1}, {2}, {3}, {4}, {4, 3, 2, 1, 0}}) {
      const QImage decoded = decoder.Decode(encode(pixels, alpha, filters, filters.size() == 1 ? 1 : 3));
      ASSERT_EQ(decoded.format(), QImage::Format_ARGB32_Premultiplied);
      EXPECT_EQ(decoded, expected) << "alpha " << alpha << ", filter " << filters[0];
    }
  }
}

TEST(PngDecoderTest, OtherPngsGoThroughQtAndBrokenOnesGiveNothing) {
  PngDecoder decoder;
  QImage indexed(5, 4, QImage::Format_Indexed8);
  indexed.setColorTable({qRgb(1, 2, 3), qRgb(250, 128, 7)});
  indexed.fill(1);
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  indexed.save(&buffer, "PNG");
  const QImage decoded = decoder.Decode(png);
  ASSERT_EQ(decoded.format(), QImage::Format_ARGB32_Premultiplied);
  EXPECT_EQ(decoded.pixel(4, 3), qRgb(250, 128, 7));

  const QByteArray good = encode(noise(8, 8, false), false, {2}, 1);
  EXPECT_FALSE(decoder.Decode(good).isNull());
  EXPECT_TRUE(decoder.Decode(good.left(good.size() - 30)).isNull());
  EXPECT_TRUE(decoder.Decode(encode(noise(8, 8, false), false, {7}, 1)).isNull());
  EXPECT_TRUE(decoder.Decode("not a png").isNull());
}
