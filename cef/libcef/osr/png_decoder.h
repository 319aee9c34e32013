// PNG to BGRA for screencast frames. Chromium's frames (8-bit RGB or RGBA,
// not interlaced) are inflated with the system's libdeflate when it has one,
// about twenty times faster than zlib, and unfiltered straight into the
// image; any other PNG, or a system without libdeflate, goes through Qt.

#ifndef CEF_LIBCEF_OSR_PNG_DECODER_H_
#define CEF_LIBCEF_OSR_PNG_DECODER_H_

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QImage>

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

  // Whether libdeflate was found, so that the fast road is open.
  static bool HasFastInflate();

  // Qt's reader alone, converted to the same format.
  static QImage DecodeWithQt(const QByteArray& png);

 private:
  enum class Outcome { kDone, kNotForUs, kBroken };
  Outcome DecodeFast(const QByteArray& png, QImage* image);

  void* decompressor_ = nullptr;  // libdeflate's; null without it
  std::vector<uint8_t> idat_;     // the IDAT chunks joined, when split
  std::vector<uint8_t> raw_;      // inflated filtered scanlines
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_PNG_DECODER_H_
