// Commands and toolbar items of Chrome-style browsers. Alloy-style browsers,
// such as off-screen ones, never call it.

#ifndef CEF_INCLUDE_CEF_COMMAND_HANDLER_H_
#define CEF_INCLUDE_CEF_COMMAND_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"

// Called on the UI thread.
class CefCommandHandler : public virtual CefBaseRefCounted {
 public:
  // A Chrome command (IDC_*) is about to run; true if the client ran it.
  virtual bool OnChromeCommand(CefRefPtr<CefBrowser> browser,
                               int command_id,
                               cef_window_open_disposition_t disposition) {
    return false;
  }

  virtual bool IsChromeAppMenuItemVisible(CefRefPtr<CefBrowser> browser,
                                          int command_id) {
    return true;
  }

  virtual bool IsChromeAppMenuItemEnabled(CefRefPtr<CefBrowser> browser,
                                          int command_id) {
    return true;
  }

  virtual bool IsChromePageActionIconVisible(
      cef_chrome_page_action_icon_type_t icon_type) {
    return true;
  }

  virtual bool IsChromeToolbarButtonVisible(
      cef_chrome_toolbar_button_type_t button_type) {
    return true;
  }
};

#endif  // CEF_INCLUDE_CEF_COMMAND_HANDLER_H_
