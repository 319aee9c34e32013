#include "host/view_support/key_event_converter.h"

#include <QKeyEvent>

#include "host/view_support/event_flags.h"

namespace {

// X11 keycodes (evdev + 8) of the left and right modifier keys.
constexpr quint32 kShiftLeft = 50, kShiftRight = 62;
constexpr quint32 kControlLeft = 37, kControlRight = 105;
constexpr quint32 kAltLeft = 64, kAltRight = 108;
constexpr quint32 kSuperLeft = 133, kSuperRight = 134;

// X11 modifier state bits for the lock keys.
constexpr quint32 kCapsLockMask = 0x02;
constexpr quint32 kNumLockMask = 0x10;

// Keys of the numeric keypad, reported with Qt::KeypadModifier.
int keypadKeyCode(int key) {
  if (key >= Qt::Key_0 && key <= Qt::Key_9)
    return 0x60 + (key - Qt::Key_0);  // VK_NUMPAD0..9
  switch (key) {
    case Qt::Key_Asterisk: return 0x6A;  // VK_MULTIPLY
    case Qt::Key_Plus: return 0x6B;      // VK_ADD
    case Qt::Key_Minus: return 0x6D;     // VK_SUBTRACT
    case Qt::Key_Period:
    case Qt::Key_Comma: return 0x6E;    // VK_DECIMAL
    case Qt::Key_Slash: return 0x6F;    // VK_DIVIDE
    case Qt::Key_Enter: return 0x0D;    // VK_RETURN
    case Qt::Key_Clear: return 0x0C;    // VK_CLEAR (5 without NumLock)
    default: return 0;                   // navigation keys: as elsewhere
  }
}

// Printable keys of the main block: US layout, shifted symbols included.
int printableKeyCode(int key) {
  if (key >= Qt::Key_A && key <= Qt::Key_Z)
    return key;  // Qt's codes are the capitals, as are VK_A..VK_Z
  if (key >= Qt::Key_0 && key <= Qt::Key_9)
    return key;  // VK_0..VK_9
  switch (key) {
    case Qt::Key_Space: return 0x20;
    case Qt::Key_ParenRight: return 0x30;
    case Qt::Key_Exclam: return 0x31;
    case Qt::Key_At: return 0x32;
    case Qt::Key_NumberSign: return 0x33;
    case Qt::Key_Dollar: return 0x34;
    case Qt::Key_Percent: return 0x35;
    case Qt::Key_AsciiCircum: return 0x36;
    case Qt::Key_Ampersand: return 0x37;
    case Qt::Key_Asterisk: return 0x38;
    case Qt::Key_ParenLeft: return 0x39;
    case Qt::Key_Semicolon:
    case Qt::Key_Colon: return 0xBA;  // VK_OEM_1
    case Qt::Key_Equal:
    case Qt::Key_Plus: return 0xBB;  // VK_OEM_PLUS
    case Qt::Key_Comma:
    case Qt::Key_Less: return 0xBC;  // VK_OEM_COMMA
    case Qt::Key_Minus:
    case Qt::Key_Underscore: return 0xBD;  // VK_OEM_MINUS
    case Qt::Key_Period:
    case Qt::Key_Greater: return 0xBE;  // VK_OEM_PERIOD
    case Qt::Key_Slash:
    case Qt::Key_Question: return 0xBF;  // VK_OEM_2
    case Qt::Key_QuoteLeft:
    case Qt::Key_AsciiTilde: return 0xC0;  // VK_OEM_3
    case Qt::Key_BracketLeft:
    case Qt::Key_BraceLeft: return 0xDB;  // VK_OEM_4
    case Qt::Key_Backslash:
    case Qt::Key_Bar: return 0xDC;  // VK_OEM_5
    case Qt::Key_BracketRight:
    case Qt::Key_BraceRight: return 0xDD;  // VK_OEM_6
    case Qt::Key_Apostrophe:
    case Qt::Key_QuoteDbl: return 0xDE;  // VK_OEM_7
    default: return 0;
  }
}

// Function, editing, navigation, modifier and media keys.
int functionKeyCode(int key) {
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
    return 0x70 + (key - Qt::Key_F1);  // VK_F1..VK_F24
  switch (key) {
    case Qt::Key_Backspace: return 0x08;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return 0x09;
    case Qt::Key_Clear: return 0x0C;
    case Qt::Key_Return:
    case Qt::Key_Enter: return 0x0D;
    case Qt::Key_Shift: return 0x10;
    case Qt::Key_Control: return 0x11;
    case Qt::Key_Alt: return 0x12;
    case Qt::Key_Pause: return 0x13;
    case Qt::Key_CapsLock: return 0x14;
    case Qt::Key_Escape: return 0x1B;
    case Qt::Key_Mode_switch: return 0x1F;  // VK_MODECHANGE
    case Qt::Key_PageUp: return 0x21;
    case Qt::Key_PageDown: return 0x22;
    case Qt::Key_End: return 0x23;
    case Qt::Key_Home: return 0x24;
    case Qt::Key_Left: return 0x25;
    case Qt::Key_Up: return 0x26;
    case Qt::Key_Right: return 0x27;
    case Qt::Key_Down: return 0x28;
    case Qt::Key_Select: return 0x29;
    case Qt::Key_Printer: return 0x2A;
    case Qt::Key_Execute: return 0x2B;
    case Qt::Key_Print:
    case Qt::Key_SysReq: return 0x2C;  // VK_SNAPSHOT
    case Qt::Key_Insert: return 0x2D;
    case Qt::Key_Delete: return 0x2E;
    case Qt::Key_Help: return 0x2F;
    case Qt::Key_Meta:
    case Qt::Key_Super_L: return 0x5B;  // VK_LWIN
    case Qt::Key_Super_R: return 0x5C;  // VK_RWIN
    case Qt::Key_Menu: return 0x5D;     // VK_APPS
    case Qt::Key_Sleep: return 0x5F;
    case Qt::Key_NumLock: return 0x90;
    case Qt::Key_ScrollLock: return 0x91;
    case Qt::Key_Back: return 0xA6;
    case Qt::Key_Forward: return 0xA7;
    case Qt::Key_Refresh: return 0xA8;
    case Qt::Key_Stop: return 0xA9;
    case Qt::Key_Search: return 0xAA;
    case Qt::Key_Favorites: return 0xAB;
    case Qt::Key_HomePage: return 0xAC;
    case Qt::Key_VolumeMute: return 0xAD;
    case Qt::Key_VolumeDown: return 0xAE;
    case Qt::Key_VolumeUp: return 0xAF;
    case Qt::Key_MediaNext: return 0xB0;
    case Qt::Key_MediaPrevious: return 0xB1;
    case Qt::Key_MediaStop: return 0xB2;
    case Qt::Key_MediaPlay:
    case Qt::Key_MediaTogglePlayPause: return 0xB3;
    case Qt::Key_LaunchMail: return 0xB4;
    case Qt::Key_LaunchMedia: return 0xB5;
    case Qt::Key_Launch0: return 0xB6;  // VK_LAUNCH_APP1
    case Qt::Key_Launch1: return 0xB7;  // VK_LAUNCH_APP2
    case Qt::Key_AltGr: return 0xE1;    // VKEY_ALTGR, as Chromium names it
    case Qt::Key_Play: return 0xFA;
    case Qt::Key_Zoom: return 0xFB;
    default: return 0;
  }
}

// The key at a position of a US keyboard, from its X11 keycode: for letters of
// other layouts (Cyrillic, Greek, umlauts), which Qt reports by their symbol.
int positionalKeyCode(quint32 keycode) {
  static const char kTopRow[] = "QWERTYUIOP";  // keycodes 24..33
  static const char kHomeRow[] = "ASDFGHJKL";  // 38..46
  static const char kBottomRow[] = "ZXCVBNM";  // 52..58
  if (keycode >= 10 && keycode <= 18)
    return '1' + static_cast<int>(keycode - 10);
  if (keycode == 19)
    return '0';
  if (keycode >= 24 && keycode <= 33)
    return kTopRow[keycode - 24];
  if (keycode >= 38 && keycode <= 46)
    return kHomeRow[keycode - 38];
  if (keycode >= 52 && keycode <= 58)
    return kBottomRow[keycode - 52];
  switch (keycode) {
    case 20: return 0xBD;  // - _
    case 21: return 0xBB;  // = +
    case 34: return 0xDB;  // [ {
    case 35: return 0xDD;  // ] }
    case 47: return 0xBA;  // ; :
    case 48: return 0xDE;  // ' "
    case 49: return 0xC0;  // ` ~
    case 51: return 0xDC;  // backslash |
    case 59: return 0xBC;  // , <
    case 60: return 0xBE;  // . >
    case 61: return 0xBF;  // / ?
    case 94: return 0xE2;  // VK_OEM_102, the extra key of ISO keyboards
    default: return 0;
  }
}

// Location flags of the modifier keys, which exist twice on a keyboard.
uint32_t locationFlags(int key, quint32 keycode) {
  switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
      break;
    default:
      return 0;
  }
  switch (keycode) {
    case kShiftLeft:
    case kControlLeft:
    case kAltLeft:
    case kSuperLeft:
      return EVENTFLAG_IS_LEFT;
    case kShiftRight:
    case kControlRight:
    case kAltRight:
    case kSuperRight:
      return EVENTFLAG_IS_RIGHT;
    default:
      return 0;
  }
}

// The character the key gives without modifiers, as far as it can be told
// from the Qt event: letters lose Shift and Ctrl, digits are themselves.
char16_t unmodifiedCharacter(int key, char16_t character) {
  if (key >= Qt::Key_A && key <= Qt::Key_Z)
    return static_cast<char16_t>('a' + (key - Qt::Key_A));
  if (key >= Qt::Key_0 && key <= Qt::Key_9)
    return static_cast<char16_t>(key);
  return character;
}

}  // namespace

int KeyEventConverter::windowsKeyCode(int qtKey,
                                      Qt::KeyboardModifiers modifiers,
                                      quint32 nativeScanCode) {
  if (modifiers & Qt::KeypadModifier) {
    if (const int code = keypadKeyCode(qtKey))
      return code;
  }
  if (const int code = printableKeyCode(qtKey))
    return code;
  if (const int code = functionKeyCode(qtKey))
    return code;
  return positionalKeyCode(nativeScanCode);
}

CefKeyEvent KeyEventConverter::convert(const QKeyEvent* event) {
  CefKeyEvent result;
  const int key = event->key();
  const quint32 keycode = event->nativeScanCode();
  result.windows_key_code =
      windowsKeyCode(key, event->modifiers(), keycode);
  result.native_key_code = static_cast<int>(keycode);

  uint32_t flags = EventFlags::fromModifiers(event->modifiers()) |
                   locationFlags(key, keycode);
  if (event->isAutoRepeat())
    flags |= EVENTFLAG_IS_REPEAT;
  // X11 and XKB share these bits of the native modifier state.
  if (event->nativeModifiers() & kCapsLockMask)
    flags |= EVENTFLAG_CAPS_LOCK_ON;
  if (event->nativeModifiers() & kNumLockMask)
    flags |= EVENTFLAG_NUM_LOCK_ON;
  result.modifiers = flags;

  const QString text = event->text();
  const char16_t character =
      text.isEmpty() ? u'\0' : static_cast<char16_t>(text.at(0).unicode());
  result.character = character;
  result.unmodified_character = unmodifiedCharacter(key, character);
  return result;
}
