// CEF's input events as the parameters of the protocol's Input commands.

#ifndef CEF_LIBCEF_BROWSER_INPUT_TRANSLATOR_H_
#define CEF_LIBCEF_BROWSER_INPUT_TRANSLATOR_H_

#include <cstdint>
#include <vector>

#include <QJsonObject>

#include "include/cef_drag_data.h"
#include "include/internal/cef_types_wrappers.h"

namespace cefengine {

class InputTranslator {
 public:
  // cef_event_flags_t to the protocol's Alt=1 Ctrl=2 Meta=4 Shift=8.
  static int Modifiers(uint32_t flags);
  // Pressed buttons in the flags as the protocol's mask (left 1, right 2,
  // middle 4).
  static int Buttons(uint32_t flags);

  // Input.dispatchKeyEvent. Fills in "key" and "code" from the Windows key
  // code, since pages look at those rather than at the key codes.
  static QJsonObject KeyEvent(const CefKeyEvent& event);

  // Input.dispatchMouseEvent.
  static QJsonObject MouseClick(const CefMouseEvent& event,
                                cef_mouse_button_type_t button,
                                bool mouse_up,
                                int click_count);
  // A leave has no protocol event: the pointer moves out of the view.
  static QJsonObject MouseMove(const CefMouseEvent& event, bool mouse_leave);
  // CEF's deltas are positive upwards and leftwards, the protocol's
  // downwards and rightwards (like DOM wheel events).
  static QJsonObject MouseWheel(const CefMouseEvent& event,
                                int delta_x,
                                int delta_y);

  // Input.dispatchDragEvent; |type| is dragEnter, dragOver, drop or
  // dragCancel. A null |data| sends an empty item list.
  static QJsonObject DragEvent(const char* type,
                               const CefMouseEvent& event,
                               uint32_t allowed_ops,
                               CefRefPtr<CefDragData> data);

  // One point of Input.dispatchTouchEvent.
  static QJsonObject TouchPoint(const CefTouchEvent& event);

  // Input.imeSetComposition. An invalid CEF range (UINT32_MAX ends) leaves
  // its part out.
  static QJsonObject ImeComposition(const CefString& text,
                                    const CefRange& replacement_range,
                                    const CefRange& selection_range);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_INPUT_TRANSLATOR_H_
