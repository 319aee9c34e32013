#include "libcef/image_impl.h"

#include <QBuffer>
#include <QByteArray>

#include <cmath>
#include <climits>
#include <vector>

CefRefPtr<CefImage> CefImage::CreateImage() {
  return new cefengine::ImageImpl();
}

namespace cefengine {

namespace {

// The QImage format whose memory layout matches a CEF pixel description.
QImage::Format qtFormat(cef_color_type_t color_type,
                        cef_alpha_type_t alpha_type) {
  const bool bgra = color_type == CEF_COLOR_TYPE_BGRA_8888;
  switch (alpha_type) {
    case CEF_ALPHA_TYPE_OPAQUE:
      return bgra ? QImage::Format_RGB32 : QImage::Format_RGBX8888;
    case CEF_ALPHA_TYPE_PREMULTIPLIED:
      return bgra ? QImage::Format_ARGB32_Premultiplied
                  : QImage::Format_RGBA8888_Premultiplied;
    case CEF_ALPHA_TYPE_POSTMULTIPLIED:
      return bgra ? QImage::Format_ARGB32 : QImage::Format_RGBA8888;
  }
  return QImage::Format_Invalid;
}

QSize dipSize(const QImage& image, float scale_factor) {
  return QSize(static_cast<int>(image.width() / scale_factor),
               static_cast<int>(image.height() / scale_factor));
}

}  // namespace

bool ImageImpl::AddImage(float scale_factor, const QImage& image) {
  if (image.isNull() || !(scale_factor > 0.0f) || !std::isfinite(scale_factor))
    return false;
  const QSize dip = dipSize(image, scale_factor);
  if (dip.isEmpty())
    return false;
  QImage stored = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  std::lock_guard<std::mutex> lock(m_mutex);
  if (!m_representations.empty() && dip != m_dipSize)
    return false;
  m_dipSize = dip;
  m_representations[scale_factor] = stored;
  return true;
}

bool ImageImpl::IsEmpty() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_representations.empty();
}

bool ImageImpl::IsSame(CefRefPtr<CefImage> that) {
  return that.get() == this;
}

bool ImageImpl::AddBitmap(float scale_factor,
                          int pixel_width,
                          int pixel_height,
                          cef_color_type_t color_type,
                          cef_alpha_type_t alpha_type,
                          const void* pixel_data,
                          size_t pixel_data_size) {
  const QImage::Format format = qtFormat(color_type, alpha_type);
  if (format == QImage::Format_Invalid || pixel_width <= 0 ||
      pixel_height <= 0 || !pixel_data ||
      pixel_data_size != static_cast<size_t>(pixel_width) *
                             static_cast<size_t>(pixel_height) * 4) {
    return false;
  }
  // Own copy first: the caller's buffer outlives only this call.
  std::vector<unsigned char> pixels(
      static_cast<const unsigned char*>(pixel_data),
      static_cast<const unsigned char*>(pixel_data) + pixel_data_size);
  if (alpha_type == CEF_ALPHA_TYPE_OPAQUE) {
    // Qt's opaque formats expect the fourth byte to be 0xff.
    for (size_t i = 3; i < pixels.size(); i += 4)
      pixels[i] = 0xff;
  }
  const QImage wrapped(pixels.data(), pixel_width, pixel_height,
                       pixel_width * 4, format);
  // copy() detaches from |pixels| even when no conversion is needed.
  return AddImage(scale_factor, wrapped.copy());
}

bool ImageImpl::addDecoded(float scale_factor,
                           const void* data,
                           size_t size,
                           const char* format) {
  if (!data || size == 0 || size > static_cast<size_t>(INT_MAX))
    return false;
  QImage image;
  if (!image.loadFromData(static_cast<const uchar*>(data),
                          static_cast<int>(size), format)) {
    return false;
  }
  return AddImage(scale_factor, image);
}

bool ImageImpl::AddPNG(float scale_factor,
                       const void* png_data,
                       size_t png_data_size) {
  return addDecoded(scale_factor, png_data, png_data_size, "PNG");
}

bool ImageImpl::AddJPEG(float scale_factor,
                        const void* jpeg_data,
                        size_t jpeg_data_size) {
  return addDecoded(scale_factor, jpeg_data, jpeg_data_size, "JPEG");
}

size_t ImageImpl::GetWidth() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_representations.empty() ? 0 : m_dipSize.width();
}

size_t ImageImpl::GetHeight() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_representations.empty() ? 0 : m_dipSize.height();
}

bool ImageImpl::HasRepresentation(float scale_factor) {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_representations.count(scale_factor) != 0;
}

bool ImageImpl::RemoveRepresentation(float scale_factor) {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_representations.erase(scale_factor) != 0;
}

QImage ImageImpl::nearest(float scale_factor, float* actual_scale_factor) const {
  auto best = m_representations.end();
  float bestDistance = 0.0f;
  for (auto it = m_representations.begin(); it != m_representations.end();
       ++it) {
    const float distance = std::fabs(it->first - scale_factor);
    if (best == m_representations.end() || distance < bestDistance) {
      best = it;
      bestDistance = distance;
    }
  }
  if (best == m_representations.end())
    return QImage();
  if (actual_scale_factor)
    *actual_scale_factor = best->first;
  return best->second;
}

bool ImageImpl::GetRepresentationInfo(float scale_factor,
                                      float& actual_scale_factor,
                                      int& pixel_width,
                                      int& pixel_height) {
  std::lock_guard<std::mutex> lock(m_mutex);
  const QImage image = nearest(scale_factor, &actual_scale_factor);
  if (image.isNull())
    return false;
  pixel_width = image.width();
  pixel_height = image.height();
  return true;
}

CefRefPtr<CefBinaryValue> ImageImpl::GetAsBitmap(float scale_factor,
                                                 cef_color_type_t color_type,
                                                 cef_alpha_type_t alpha_type,
                                                 int& pixel_width,
                                                 int& pixel_height) {
  const QImage::Format format = qtFormat(color_type, alpha_type);
  if (format == QImage::Format_Invalid)
    return nullptr;
  QImage image;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    image = nearest(scale_factor, nullptr);
  }
  if (image.isNull())
    return nullptr;
  image = image.convertToFormat(format);
  pixel_width = image.width();
  pixel_height = image.height();
  // 32-bit lines are never padded, so the pixels are one block.
  return CefBinaryValue::Create(image.constBits(),
                                static_cast<size_t>(image.sizeInBytes()));
}

CefRefPtr<CefBinaryValue> ImageImpl::encode(float scale_factor,
                                            QImage::Format format,
                                            const char* fileFormat,
                                            int quality,
                                            int& pixel_width,
                                            int& pixel_height) {
  QImage image;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    image = nearest(scale_factor, nullptr);
  }
  if (image.isNull())
    return nullptr;
  QByteArray encoded;
  QBuffer buffer(&encoded);
  buffer.open(QIODevice::WriteOnly);
  if (!image.convertToFormat(format).save(&buffer, fileFormat, quality))
    return nullptr;
  pixel_width = image.width();
  pixel_height = image.height();
  return CefBinaryValue::Create(encoded.constData(),
                                static_cast<size_t>(encoded.size()));
}

CefRefPtr<CefBinaryValue> ImageImpl::GetAsPNG(float scale_factor,
                                              bool with_transparency,
                                              int& pixel_width,
                                              int& pixel_height) {
  return encode(scale_factor,
                with_transparency ? QImage::Format_ARGB32
                                  : QImage::Format_RGB32,
                "PNG", -1, pixel_width, pixel_height);
}

CefRefPtr<CefBinaryValue> ImageImpl::GetAsJPEG(float scale_factor,
                                               int quality,
                                               int& pixel_width,
                                               int& pixel_height) {
  const int clamped = quality < 1 ? 1 : (quality > 100 ? 100 : quality);
  return encode(scale_factor, QImage::Format_RGB32, "JPEG", clamped,
                pixel_width, pixel_height);
}

}  // namespace cefengine
