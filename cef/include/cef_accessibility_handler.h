// Accessibility events of an off-screen browser.

#ifndef CEF_INCLUDE_CEF_ACCESSIBILITY_HANDLER_H_
#define CEF_INCLUDE_CEF_ACCESSIBILITY_HANDLER_H_
#pragma once

#include "include/cef_values.h"

// Called on the UI thread once CefBrowserHost::SetAccessibilityState has
// enabled accessibility.
class CefAccessibilityHandler : public virtual CefBaseRefCounted {
 public:
  // Changes of the accessibility tree, as a list of updates.
  virtual void OnAccessibilityTreeChange(CefRefPtr<CefValue> value) = 0;

  // Changes of the positions of accessibility objects.
  virtual void OnAccessibilityLocationChange(CefRefPtr<CefValue> value) = 0;
};

#endif  // CEF_INCLUDE_CEF_ACCESSIBILITY_HANDLER_H_
