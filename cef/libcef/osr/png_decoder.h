// PNG to BGRA for screencast frames. Chromium's frames (8-bit RGB or RGBA,
// not interlaced) are inflated with libdeflate, about twenty times faster than
// zlib, and unfiltered straight into the image; any other PNG goes through Qt.

#ifndef CEF_LIBCEF_OSR_PNG_DECODER_H_
#define CEF_LIBCEF_OSR_PNG_DECODER_H_

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QImage>

struct libdeflate_decompressor;

namespace cefengine {

// One per thread: it keeps a scratch buffer between frames.
class PngDecoder {
 public:
  PngDecoder();
  PngDecoder(const PngDecoder&) = delete;
  PngDecoder& operator=(const PngDecoder&) = delete;
  ~PngDecoder();

  // A Format_ARGB32_Premultiplied image (BGRA bytes, width * 4 a line); null
  // if |png| is not a readable PNG.
  QImage Decode(const QByteArray& png);

  // Qt's reader alone, converted to the same format.
  static QImage DecodeWithQt(const QByteArray& png);

 private:
  enum class Outcome { kDone, kNotForUs, kBroken };
  Outcome DecodeFast(const QByteArray& png, QImage* image);

  libdeflate_decompressor* decompressor_;
  std::vector<uint8_t> idat_;     // the IDAT chunks joined, when split
  std::vector<uint8_t> raw_;      // inflated filtered scanlines
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_PNG_DECODER_H_
