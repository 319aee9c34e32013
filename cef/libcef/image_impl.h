// CefImage over QImage: one bitmap per scale factor, kept as premultiplied
// BGRA (QImage::Format_ARGB32_Premultiplied on a little-endian machine).

#ifndef BROVIA_CEF_LIBCEF_IMAGE_IMPL_H_
#define BROVIA_CEF_LIBCEF_IMAGE_IMPL_H_

#include <QImage>

#include <map>
#include <mutex>

#include "include/cef_image.h"

namespace cefengine {

// Thread-safe: the representations are guarded by one mutex.
class ImageImpl : public CefImage {
 public:
  ImageImpl() = default;

  // Engine side: adds a decoded picture; false for a null image or a size
  // that disagrees with the representations already held.
  bool AddImage(float scale_factor, const QImage& image);

  bool IsEmpty() override;
  bool IsSame(CefRefPtr<CefImage> that) override;
  bool AddBitmap(float scale_factor,
                 int pixel_width,
                 int pixel_height,
                 cef_color_type_t color_type,
                 cef_alpha_type_t alpha_type,
                 const void* pixel_data,
                 size_t pixel_data_size) override;
  bool AddPNG(float scale_factor,
              const void* png_data,
              size_t png_data_size) override;
  bool AddJPEG(float scale_factor,
               const void* jpeg_data,
               size_t jpeg_data_size) override;
  size_t GetWidth() override;
  size_t GetHeight() override;
  bool HasRepresentation(float scale_factor) override;
  bool RemoveRepresentation(float scale_factor) override;
  bool GetRepresentationInfo(float scale_factor,
                             float& actual_scale_factor,
                             int& pixel_width,
                             int& pixel_height) override;
  CefRefPtr<CefBinaryValue> GetAsBitmap(float scale_factor,
                                        cef_color_type_t color_type,
                                        cef_alpha_type_t alpha_type,
                                        int& pixel_width,
                                        int& pixel_height) override;
  CefRefPtr<CefBinaryValue> GetAsPNG(float scale_factor,
                                     bool with_transparency,
                                     int& pixel_width,
                                     int& pixel_height) override;
  CefRefPtr<CefBinaryValue> GetAsJPEG(float scale_factor,
                                      int quality,
                                      int& pixel_width,
                                      int& pixel_height) override;

 private:
  bool addDecoded(float scale_factor,
                  const void* data,
                  size_t size,
                  const char* format);
  // The representation whose scale lies nearest to |scale_factor| (the
  // smaller one on a tie), or a null image. Call with m_mutex held.
  QImage nearest(float scale_factor, float* actual_scale_factor) const;
  // Encodes the nearest representation; null on failure or when empty.
  CefRefPtr<CefBinaryValue> encode(float scale_factor,
                                   QImage::Format format,
                                   const char* fileFormat,
                                   int quality,
                                   int& pixel_width,
                                   int& pixel_height);

  std::mutex m_mutex;
  std::map<float, QImage> m_representations;
  // Size in device-independent pixels, fixed by the first representation.
  QSize m_dipSize;

  IMPLEMENT_REFCOUNTING(ImageImpl);
};

}  // namespace cefengine

#endif  // BROVIA_CEF_LIBCEF_IMAGE_IMPL_H_
