#include "host/view_support/event_flags.h"

#include "include/internal/cef_types.h"

uint32_t EventFlags::fromModifiers(Qt::KeyboardModifiers modifiers) {
  uint32_t flags = EVENTFLAG_NONE;
  if (modifiers & Qt::ShiftModifier)
    flags |= EVENTFLAG_SHIFT_DOWN;
  if (modifiers & Qt::ControlModifier)
    flags |= EVENTFLAG_CONTROL_DOWN;
  if (modifiers & Qt::AltModifier)
    flags |= EVENTFLAG_ALT_DOWN;
  if (modifiers & Qt::MetaModifier)
    flags |= EVENTFLAG_COMMAND_DOWN;
  if (modifiers & Qt::KeypadModifier)
    flags |= EVENTFLAG_IS_KEY_PAD;
  return flags;
}

uint32_t EventFlags::fromButtons(Qt::MouseButtons buttons) {
  uint32_t flags = EVENTFLAG_NONE;
  if (buttons & Qt::LeftButton)
    flags |= EVENTFLAG_LEFT_MOUSE_BUTTON;
  if (buttons & Qt::MiddleButton)
    flags |= EVENTFLAG_MIDDLE_MOUSE_BUTTON;
  if (buttons & Qt::RightButton)
    flags |= EVENTFLAG_RIGHT_MOUSE_BUTTON;
  return flags;
}
