// Settings of one print job.

#ifndef CEF_INCLUDE_CEF_PRINT_SETTINGS_H_
#define CEF_INCLUDE_CEF_PRINT_SETTINGS_H_
#pragma once

#include <vector>

#include "include/cef_base.h"

class CefPrintSettings : public virtual CefBaseRefCounted {
 public:
  typedef cef_color_model_t ColorModel;
  typedef cef_duplex_mode_t DuplexMode;
  typedef std::vector<CefRange> PageRangeList;

  static CefRefPtr<CefPrintSettings> Create();

  virtual bool IsValid() = 0;
  // Settings handed to a handler for reading only refuse changes.
  virtual bool IsReadOnly() = 0;

  virtual void SetOrientation(bool landscape) = 0;
  virtual bool IsLandscape() = 0;

  // The paper and its printable part, in device units. Used by print
  // handlers that size the page themselves.
  virtual void SetPrinterPrintableArea(
      const CefSize& physical_size_device_units,
      const CefRect& printable_area_device_units,
      bool landscape_needs_flip) = 0;

  virtual void SetDeviceName(const CefString& name) = 0;
  virtual CefString GetDeviceName() = 0;

  virtual void SetDPI(int dpi) = 0;
  virtual int GetDPI() = 0;

  // Zero-based inclusive page ranges; none means every page.
  virtual void SetPageRanges(const PageRangeList& ranges) = 0;
  virtual size_t GetPageRangesCount() = 0;
  virtual void GetPageRanges(PageRangeList& ranges) = 0;

  virtual void SetSelectionOnly(bool selection_only) = 0;
  virtual bool IsSelectionOnly() = 0;

  virtual void SetCollate(bool collate) = 0;
  virtual bool WillCollate() = 0;

  virtual void SetColorModel(ColorModel model) = 0;
  virtual ColorModel GetColorModel() = 0;

  virtual void SetCopies(int copies) = 0;
  virtual int GetCopies() = 0;

  virtual void SetDuplexMode(DuplexMode mode) = 0;
  virtual DuplexMode GetDuplexMode() = 0;
};

#endif  // CEF_INCLUDE_CEF_PRINT_SETTINGS_H_
