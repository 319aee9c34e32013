// Keyboard focus moving into and out of a browser.

#ifndef CEF_INCLUDE_CEF_FOCUS_HANDLER_H_
#define CEF_INCLUDE_CEF_FOCUS_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"

// Called on the UI thread.
class CefFocusHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_focus_source_t FocusSource;

  // Tabbing left the page: forward (|next|) or backward.
  virtual void OnTakeFocus(CefRefPtr<CefBrowser> browser, bool next) {}

  // The browser wants the focus. True refuses it.
  virtual bool OnSetFocus(CefRefPtr<CefBrowser> browser, FocusSource source) {
    return false;
  }

  virtual void OnGotFocus(CefRefPtr<CefBrowser> browser) {}
};

#endif  // CEF_INCLUDE_CEF_FOCUS_HANDLER_H_
