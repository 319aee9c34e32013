// Off-screen rendering: the client tells the engine where the view is and
// receives its pixels, popups, drags and IME state.

#ifndef CEF_INCLUDE_CEF_RENDER_HANDLER_H_
#define CEF_INCLUDE_CEF_RENDER_HANDLER_H_
#pragma once

#include <vector>

#include "include/cef_accessibility_handler.h"
#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_drag_data.h"

// Called on the UI thread. Coordinates are view coordinates in logical
// (device-independent) pixels unless noted.
class CefRenderHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_drag_operations_mask_t DragOperation;
  typedef cef_drag_operations_mask_t DragOperationsMask;
  typedef cef_paint_element_type_t PaintElementType;
  typedef std::vector<CefRect> RectList;
  typedef cef_text_input_mode_t TextInputMode;

  virtual CefRefPtr<CefAccessibilityHandler> GetAccessibilityHandler() {
    return nullptr;
  }

  // The root window in screen coordinates. False to use the view rectangle.
  virtual bool GetRootScreenRect(CefRefPtr<CefBrowser> browser, CefRect& rect) {
    return false;
  }

  // The view rectangle relative to the screen; its size must be non-empty.
  virtual void GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) = 0;

  // Maps a view point to screen coordinates. False if not possible.
  virtual bool GetScreenPoint(CefRefPtr<CefBrowser> browser,
                              int viewX,
                              int viewY,
                              int& screenX,
                              int& screenY) {
    return false;
  }

  // Scale factor and geometry of the screen showing the view. False keeps
  // the defaults.
  virtual bool GetScreenInfo(CefRefPtr<CefBrowser> browser,
                             CefScreenInfo& screen_info) {
    return false;
  }

  // A popup widget (e.g. a <select> list) shows or hides.
  virtual void OnPopupShow(CefRefPtr<CefBrowser> browser, bool show) {}

  // Where the popup goes.
  virtual void OnPopupSize(CefRefPtr<CefBrowser> browser, const CefRect& rect) {
  }

  // A new frame of the view or popup: |buffer| holds |width| x |height|
  // BGRA pixels (physical pixels, rows top to bottom, no padding) and is
  // valid only during the call. |dirtyRects| lists the changed parts.
  virtual void OnPaint(CefRefPtr<CefBrowser> browser,
                       PaintElementType type,
                       const RectList& dirtyRects,
                       const void* buffer,
                       int width,
                       int height) = 0;

  // Like OnPaint for shared-texture rendering; |info| is valid only during
  // the call.
  virtual void OnAcceleratedPaint(CefRefPtr<CefBrowser> browser,
                                  PaintElementType type,
                                  const RectList& dirtyRects,
                                  const CefAcceleratedPaintInfo& info) {}

  // Size of a touch selection handle of |orientation|.
  virtual void GetTouchHandleSize(CefRefPtr<CefBrowser> browser,
                                  cef_horizontal_alignment_t orientation,
                                  CefSize& size) {}

  virtual void OnTouchHandleStateChanged(CefRefPtr<CefBrowser> browser,
                                         const CefTouchHandleState& state) {}

  // The page starts a drag at (x, y). True if the client runs it (and later
  // reports through DragSourceEndedAt and DragSourceSystemDragEnded); false
  // cancels it.
  virtual bool StartDragging(CefRefPtr<CefBrowser> browser,
                             CefRefPtr<CefDragData> drag_data,
                             DragOperationsMask allowed_ops,
                             int x,
                             int y) {
    return false;
  }

  // The operation a drop at the current position would perform.
  virtual void UpdateDragCursor(CefRefPtr<CefBrowser> browser,
                                DragOperation operation) {}

  virtual void OnScrollOffsetChanged(CefRefPtr<CefBrowser> browser,
                                     double x,
                                     double y) {}

  // The IME composition moved: its character range and each character's
  // bounds.
  virtual void OnImeCompositionRangeChanged(CefRefPtr<CefBrowser> browser,
                                            const CefRange& selected_range,
                                            const RectList& character_bounds) {}

  virtual void OnTextSelectionChanged(CefRefPtr<CefBrowser> browser,
                                      const CefString& selected_text,
                                      const CefRange& selected_range) {}

  // An editable field wants a virtual keyboard of |input_mode|
  // (CEF_TEXT_INPUT_MODE_NONE: hide it).
  virtual void OnVirtualKeyboardRequested(CefRefPtr<CefBrowser> browser,
                                          TextInputMode input_mode) {}
};

#endif  // CEF_INCLUDE_CEF_RENDER_HANDLER_H_
