// Qt modifier and button states as CEF event flags (cef_event_flags_t).

#pragma once

#include <Qt>

#include <cstdint>

class EventFlags {
 public:
  // Shift, Ctrl, Alt, Meta (as the command key) and the keypad modifier.
  static uint32_t fromModifiers(Qt::KeyboardModifiers modifiers);
  // Left, middle and right; other buttons have no CEF flag.
  static uint32_t fromButtons(Qt::MouseButtons buttons);
};
