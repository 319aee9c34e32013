#include "libcef/osr/png_decoder.h"

#include <cstdlib>
#include <cstring>

#include <QBuffer>
#include <QImageReader>

#include <libdeflate.h>

namespace cefengine {

namespace {

uint32_t ReadBigEndian(const uint8_t* p) {
  return (uint32_t(p[0]) << 24) | (uint32_t(p[1]) << 16) |
         (uint32_t(p[2]) << 8) | uint32_t(p[3]);
}

uint8_t Paeth(int a, int b, int c) {
  const int p = a + b - c;
  const int pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
  if (pa <= pb && pa <= pc)
    return uint8_t(a);
  return uint8_t(pb <= pc ? b : c);
}

// Undoes the filter of one scanline in place; |previous| is the line above,
// already unfiltered (all zeros for the first). False for an unknown filter.
bool Unfilter(uint8_t filter,
              uint8_t* line,
              const uint8_t* previous,
              size_t bytes,
              size_t pixelBytes) {
  switch (filter) {
    case 0:
      return true;
    case 1:
      for (size_t i = pixelBytes; i < bytes; ++i)
        line[i] = uint8_t(line[i] + line[i - pixelBytes]);
      return true;
    case 2:
      for (size_t i = 0; i < bytes; ++i)
        line[i] = uint8_t(line[i] + previous[i]);
      return true;
    case 3:
      for (size_t i = 0; i < bytes; ++i) {
        const int left = i >= pixelBytes ? line[i - pixelBytes] : 0;
        line[i] = uint8_t(line[i] + ((left + previous[i]) >> 1));
      }
      return true;
    case 4:
      for (size_t i = 0; i < bytes; ++i) {
        const int left = i >= pixelBytes ? line[i - pixelBytes] : 0;
        const int upLeft = i >= pixelBytes ? previous[i - pixelBytes] : 0;
        line[i] = uint8_t(line[i] + Paeth(left, previous[i], upLeft));
      }
      return true;
    default:
      return false;
  }
}

}  // namespace

// Without memory for a decompressor (null), every frame goes through Qt.
PngDecoder::PngDecoder()
    : decompressor_(libdeflate_alloc_decompressor()) {}

PngDecoder::~PngDecoder() {
  libdeflate_free_decompressor(decompressor_);
}

QImage PngDecoder::Decode(const QByteArray& png) {
  QImage image;
  switch (DecodeFast(png, &image)) {
    case Outcome::kDone:
      return image;
    case Outcome::kNotForUs:
      return DecodeWithQt(png);
    case Outcome::kBroken:
      break;
  }
  return QImage();
}

QImage PngDecoder::DecodeWithQt(const QByteArray& png) {
  QBuffer buffer;
  buffer.setData(png);
  QImageReader reader(&buffer, "png");
  // Pixels exactly as Chromium gave them: no gamma, no orientation.
  reader.setAutoTransform(false);
  QImage image;
  if (!reader.read(&image))
    return QImage();
  if (image.format() == QImage::Format_RGB32) {
    // The same bytes with alpha 0xff: no copy needed.
    image.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
  } else if (image.format() != QImage::Format_ARGB32_Premultiplied) {
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
  }
  return image;
}

PngDecoder::Outcome PngDecoder::DecodeFast(const QByteArray& png,
                                           QImage* image) {
  static const uint8_t kSignature[8] = {0x89, 'P', 'N', 'G',
                                        '\r', '\n', 0x1a, '\n'};
  // Frames are never larger; beyond this the sizes could overflow.
  constexpr uint32_t kMaxSide = 1 << 15;

  // Chunk CRCs are not checked: frames come from our own Chromium over a
  // pipe. A stream that does not inflate to the exact size is refused.
  const auto* data = reinterpret_cast<const uint8_t*>(png.constData());
  const size_t size = static_cast<size_t>(png.size());
  if (!decompressor_ || size < 8 || std::memcmp(data, kSignature, 8) != 0)
    return Outcome::kNotForUs;

  uint32_t width = 0, height = 0;
  size_t pixelBytes = 0;
  const uint8_t* idat = nullptr;
  size_t idatSize = 0;
  bool joined = false;
  idat_.clear();
  for (size_t pos = 8; pos + 12 <= size;) {
    const uint32_t length = ReadBigEndian(data + pos);
    const uint8_t* type = data + pos + 4;
    const uint8_t* body = data + pos + 8;
    if (length > size - pos - 12)
      return Outcome::kNotForUs;
    if (std::memcmp(type, "IHDR", 4) == 0) {
      if (length != 13)
        return Outcome::kNotForUs;
      width = ReadBigEndian(body);
      height = ReadBigEndian(body + 4);
      const uint8_t depth = body[8], colour = body[9], interlace = body[12];
      if (depth != 8 || (colour != 2 && colour != 6) || body[10] != 0 ||
          body[11] != 0 || interlace != 0 || width == 0 || height == 0 ||
          width > kMaxSide || height > kMaxSide) {
        return Outcome::kNotForUs;
      }
      pixelBytes = colour == 6 ? 4 : 3;
    } else if (std::memcmp(type, "IDAT", 4) == 0) {
      if (!idat) {
        idat = body;
        idatSize = length;
      } else {
        // Split data: join the chunks once.
        if (!joined)
          idat_.assign(idat, idat + idatSize);
        joined = true;
        idat_.insert(idat_.end(), body, body + length);
      }
    } else if (std::memcmp(type, "IEND", 4) == 0) {
      break;
    } else if (std::memcmp(type, "PLTE", 4) == 0 ||
               std::memcmp(type, "tRNS", 4) == 0 ||
               std::memcmp(type, "gAMA", 4) == 0 ||
               std::memcmp(type, "iCCP", 4) == 0) {
      // Chunks that change the colours: Qt knows what to do with them.
      return Outcome::kNotForUs;
    }
    pos += size_t(length) + 12;
  }
  if (!pixelBytes || !idat)
    return Outcome::kNotForUs;
  if (joined) {
    idat = idat_.data();
    idatSize = idat_.size();
  }

  const size_t lineBytes = size_t(width) * pixelBytes;
  const size_t rawSize = size_t(height) * (lineBytes + 1);
  raw_.resize(rawSize);
  size_t inflated = 0;
  if (libdeflate_zlib_decompress(decompressor_, idat, idatSize, raw_.data(),
                                 rawSize, &inflated) != LIBDEFLATE_SUCCESS ||
      inflated != rawSize) {
    return Outcome::kBroken;
  }

  QImage out(int(width), int(height), QImage::Format_ARGB32_Premultiplied);
  if (out.isNull())
    return Outcome::kBroken;
  const std::vector<uint8_t> zeros(lineBytes, 0);
  const uint8_t* previous = zeros.data();
  for (uint32_t y = 0; y < height; ++y) {
    uint8_t* line = raw_.data() + size_t(y) * (lineBytes + 1);
    if (!Unfilter(line[0], line + 1, previous, lineBytes, pixelBytes))
      return Outcome::kBroken;
    const uint8_t* in = line + 1;
    auto* target = reinterpret_cast<QRgb*>(out.scanLine(int(y)));
    if (pixelBytes == 3) {
      for (uint32_t x = 0; x < width; ++x, in += 3)
        target[x] = qRgb(in[0], in[1], in[2]);
    } else {
      for (uint32_t x = 0; x < width; ++x, in += 4) {
        const QRgb pixel = qRgba(in[0], in[1], in[2], in[3]);
        target[x] = in[3] == 255 ? pixel : qPremultiply(pixel);
      }
    }
    previous = line + 1;
  }
  *image = std::move(out);
  return Outcome::kDone;
}

}  // namespace cefengine
