// Client side of a CefMenuModel created with CefMenuModel::CreateMenuModel.

#ifndef CEF_INCLUDE_CEF_MENU_MODEL_DELEGATE_H_
#define CEF_INCLUDE_CEF_MENU_MODEL_DELEGATE_H_
#pragma once

#include "include/cef_base.h"

class CefMenuModel;

// Called on the UI thread.
class CefMenuModelDelegate : public virtual CefBaseRefCounted {
 public:
  // The user picked |command_id|.
  virtual void ExecuteCommand(CefRefPtr<CefMenuModel> menu_model,
                              int command_id,
                              cef_event_flags_t event_flags) = 0;

  // The pointer moved outside the menu, to |screen_point|.
  virtual void MouseOutsideMenu(CefRefPtr<CefMenuModel> menu_model,
                                const CefPoint& screen_point) {}

  // Keyboard navigation asked to open or close a submenu that is not there.
  virtual void UnhandledOpenSubmenu(CefRefPtr<CefMenuModel> menu_model,
                                    bool is_rtl) {}
  virtual void UnhandledCloseSubmenu(CefRefPtr<CefMenuModel> menu_model,
                                     bool is_rtl) {}

  virtual void MenuWillShow(CefRefPtr<CefMenuModel> menu_model) {}
  virtual void MenuClosed(CefRefPtr<CefMenuModel> menu_model) {}

  // May rewrite |label| before display; true if it did.
  virtual bool FormatLabel(CefRefPtr<CefMenuModel> menu_model,
                           CefString& label) {
    return false;
  }
};

#endif  // CEF_INCLUDE_CEF_MENU_MODEL_DELEGATE_H_
