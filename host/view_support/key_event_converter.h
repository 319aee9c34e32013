// Turns a QKeyEvent into the CefKeyEvent that CEF expects on Linux: a
// Windows virtual-key code, the X11 keycode as native code, and event flags.

#pragma once

#include <QtGlobal>
#include <Qt>

#include "include/cef_base.h"

class QKeyEvent;

class KeyEventConverter {
 public:
  // Everything but the type. |character| and |unmodified_character| hold the
  // first UTF-16 unit of the text the key produces, or 0.
  static CefKeyEvent convert(const QKeyEvent* event);

  // The Windows virtual-key code (VK_*) of a Qt key, as on a US keyboard.
  // Keys that Qt reports by the symbol they type on another layout fall back
  // to the key's position, taken from the X11 keycode; 0 if nothing fits.
  static int windowsKeyCode(int qtKey,
                            Qt::KeyboardModifiers modifiers,
                            quint32 nativeScanCode);
};
