// Keyboard events of a browser, before and after the page sees them.

#ifndef CEF_INCLUDE_CEF_KEYBOARD_HANDLER_H_
#define CEF_INCLUDE_CEF_KEYBOARD_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"

// Called on the UI thread. |os_event| is null for off-screen browsers.
class CefKeyboardHandler : public virtual CefBaseRefCounted {
 public:
  // Before the page gets |event|. True consumes it. A key that is only a
  // shortcut may set |*is_keyboard_shortcut| and return false so that
  // OnKeyEvent sees it if the page does not take it.
  virtual bool OnPreKeyEvent(CefRefPtr<CefBrowser> browser,
                             const CefKeyEvent& event,
                             CefEventHandle os_event,
                             bool* is_keyboard_shortcut) {
    return false;
  }

  // After the page has left |event| unhandled. True if the client took it.
  virtual bool OnKeyEvent(CefRefPtr<CefBrowser> browser,
                          const CefKeyEvent& event,
                          CefEventHandle os_event) {
    return false;
  }
};

#endif  // CEF_INCLUDE_CEF_KEYBOARD_HANDLER_H_
