// A picture held in one or more representations, one per scale factor, as a
// toolkit would keep it for several screen densities.

#ifndef CEF_INCLUDE_CEF_IMAGE_H_
#define CEF_INCLUDE_CEF_IMAGE_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_values.h"

class CefImage : public virtual CefBaseRefCounted {
 public:
  // A new image with no representation. Any thread.
  static CefRefPtr<CefImage> CreateImage();

  virtual bool IsEmpty() = 0;
  // True if both share the same underlying storage.
  virtual bool IsSame(CefRefPtr<CefImage> that) = 0;

  // Adds raw pixels, 4 bytes each, rows without padding. All representations
  // of one image must have the same size in device-independent pixels.
  virtual bool AddBitmap(float scale_factor,
                         int pixel_width,
                         int pixel_height,
                         cef_color_type_t color_type,
                         cef_alpha_type_t alpha_type,
                         const void* pixel_data,
                         size_t pixel_data_size) = 0;
  // Adds a representation decoded from PNG data.
  virtual bool AddPNG(float scale_factor,
                      const void* png_data,
                      size_t png_data_size) = 0;
  // Adds a representation decoded from JPEG data.
  virtual bool AddJPEG(float scale_factor,
                       const void* jpeg_data,
                       size_t jpeg_data_size) = 0;

  // Size in device-independent pixels.
  virtual size_t GetWidth() = 0;
  virtual size_t GetHeight() = 0;

  virtual bool HasRepresentation(float scale_factor) = 0;
  virtual bool RemoveRepresentation(float scale_factor) = 0;
  // Describes the representation that best fits |scale_factor|.
  virtual bool GetRepresentationInfo(float scale_factor,
                                     float& actual_scale_factor,
                                     int& pixel_width,
                                     int& pixel_height) = 0;

  // The representation nearest to |scale_factor| as raw pixels, PNG or JPEG;
  // null if the image is empty or encoding fails.
  virtual CefRefPtr<CefBinaryValue> GetAsBitmap(float scale_factor,
                                                cef_color_type_t color_type,
                                                cef_alpha_type_t alpha_type,
                                                int& pixel_width,
                                                int& pixel_height) = 0;
  virtual CefRefPtr<CefBinaryValue> GetAsPNG(float scale_factor,
                                             bool with_transparency,
                                             int& pixel_width,
                                             int& pixel_height) = 0;
  // |quality| runs from 1 (smallest) to 100 (best).
  virtual CefRefPtr<CefBinaryValue> GetAsJPEG(float scale_factor,
                                              int quality,
                                              int& pixel_width,
                                              int& pixel_height) = 0;
};

#endif  // CEF_INCLUDE_CEF_IMAGE_H_
