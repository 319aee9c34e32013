// Lets the application supply localized strings and resources.

#ifndef CEF_INCLUDE_CEF_RESOURCE_BUNDLE_HANDLER_H_
#define CEF_INCLUDE_CEF_RESOURCE_BUNDLE_HANDLER_H_
#pragma once

#include <cstddef>

#include "include/cef_base.h"

class CefResourceBundleHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_scale_factor_t ScaleFactor;

  // Each returns true if it supplied the value; the data stays owned by the
  // handler and must outlive the engine.
  virtual bool GetLocalizedString(int string_id, CefString& string) = 0;
  virtual bool GetDataResource(int resource_id,
                               void*& data,
                               size_t& data_size) = 0;
  virtual bool GetDataResourceForScale(int resource_id,
                                       ScaleFactor scale_factor,
                                       void*& data,
                                       size_t& data_size) = 0;
};

#endif  // CEF_INCLUDE_CEF_RESOURCE_BUNDLE_HANDLER_H_
