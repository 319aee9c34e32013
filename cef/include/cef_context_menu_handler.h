// Context menus and the touch quick menu of a browser.

#ifndef CEF_INCLUDE_CEF_CONTEXT_MENU_HANDLER_H_
#define CEF_INCLUDE_CEF_CONTEXT_MENU_HANDLER_H_
#pragma once

#include <vector>

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_menu_model.h"

class CefContextMenuParams;

// Ends a context menu shown by the client: Continue() with the chosen
// command, or Cancel() when nothing was chosen.
class CefRunContextMenuCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(int command_id, cef_event_flags_t event_flags) = 0;
  virtual void Cancel() = 0;
};

// Same for the quick menu.
class CefRunQuickMenuCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(int command_id, cef_event_flags_t event_flags) = 0;
  virtual void Cancel() = 0;
};

// Called on the UI thread.
class CefContextMenuHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_event_flags_t EventFlags;
  typedef cef_quick_menu_edit_state_flags_t QuickMenuEditStateFlags;

  // Before the menu shows: |model| holds the default entries and may be
  // changed; clearing it suppresses the menu. |params| and |model| are valid
  // only during the call.
  virtual void OnBeforeContextMenu(CefRefPtr<CefBrowser> browser,
                                   CefRefPtr<CefFrame> frame,
                                   CefRefPtr<CefContextMenuParams> params,
                                   CefRefPtr<CefMenuModel> model) {}

  // True if the client shows the menu itself and will answer |callback|
  // (possibly later); false for the engine's own menu.
  virtual bool RunContextMenu(CefRefPtr<CefBrowser> browser,
                              CefRefPtr<CefFrame> frame,
                              CefRefPtr<CefContextMenuParams> params,
                              CefRefPtr<CefMenuModel> model,
                              CefRefPtr<CefRunContextMenuCallback> callback) {
    return false;
  }

  // A menu command was chosen; true if the client carried it out.
  virtual bool OnContextMenuCommand(CefRefPtr<CefBrowser> browser,
                                    CefRefPtr<CefFrame> frame,
                                    CefRefPtr<CefContextMenuParams> params,
                                    int command_id,
                                    EventFlags event_flags) {
    return false;
  }

  // The menu closed, with or without a command.
  virtual void OnContextMenuDismissed(CefRefPtr<CefBrowser> browser,
                                      CefRefPtr<CefFrame> frame) {}

  // The touch quick menu for a selection at |location| (view coordinates)
  // of |size|. True if the client shows it and will answer |callback|.
  virtual bool RunQuickMenu(CefRefPtr<CefBrowser> browser,
                            CefRefPtr<CefFrame> frame,
                            const CefPoint& location,
                            const CefSize& size,
                            QuickMenuEditStateFlags edit_state_flags,
                            CefRefPtr<CefRunQuickMenuCallback> callback) {
    return false;
  }

  virtual bool OnQuickMenuCommand(CefRefPtr<CefBrowser> browser,
                                  CefRefPtr<CefFrame> frame,
                                  int command_id,
                                  EventFlags event_flags) {
    return false;
  }

  virtual void OnQuickMenuDismissed(CefRefPtr<CefBrowser> browser,
                                    CefRefPtr<CefFrame> frame) {}
};

// What the context menu was opened on. UI thread; valid only during the
// handler call that received it.
class CefContextMenuParams : public virtual CefBaseRefCounted {
 public:
  typedef cef_context_menu_type_flags_t TypeFlags;
  typedef cef_context_menu_media_type_t MediaType;
  typedef cef_context_menu_media_state_flags_t MediaStateFlags;
  typedef cef_context_menu_edit_state_flags_t EditStateFlags;

  // Where the menu was opened, in view coordinates.
  virtual int GetXCoord() = 0;
  virtual int GetYCoord() = 0;

  virtual TypeFlags GetTypeFlags() = 0;

  // The link's URL, and the same before security filtering.
  virtual CefString GetLinkUrl() = 0;
  virtual CefString GetUnfilteredLinkUrl() = 0;
  // The src of an image, video or audio element.
  virtual CefString GetSourceUrl() = 0;
  virtual bool HasImageContents() = 0;
  // An image's title or alt text.
  virtual CefString GetTitleText() = 0;

  virtual CefString GetPageUrl() = 0;
  virtual CefString GetFrameUrl() = 0;
  virtual CefString GetFrameCharset() = 0;

  virtual MediaType GetMediaType() = 0;
  virtual MediaStateFlags GetMediaStateFlags() = 0;

  virtual CefString GetSelectionText() = 0;

  // Spell checking of an editable field.
  virtual CefString GetMisspelledWord() = 0;
  virtual bool GetDictionarySuggestions(
      std::vector<CefString>& suggestions) = 0;
  virtual bool IsEditable() = 0;
  virtual bool IsSpellCheckEnabled() = 0;
  virtual EditStateFlags GetEditStateFlags() = 0;

  // True when the page supplied the menu (Pepper plugins).
  virtual bool IsCustomMenu() = 0;
};

#endif  // CEF_INCLUDE_CEF_CONTEXT_MENU_HANDLER_H_
