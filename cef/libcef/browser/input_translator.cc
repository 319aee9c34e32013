#include "libcef/browser/input_translator.h"

#include <cstdint>
#include <limits>

#include <QJsonArray>
#include <QString>

namespace cefengine {

namespace {

QString StringOf(const CefString& text) {
  return QString::fromStdString(text.ToString());
}

bool ValidRange(const CefRange& range) {
  constexpr uint32_t kInvalid = std::numeric_limits<uint32_t>::max();
  return range.from != kInvalid && range.to != kInvalid;
}

struct NamedKey {
  int windows_key_code;
  const char* key;
  const char* code;
};

// Keys whose DOM name does not come from the character they type.
constexpr NamedKey kNamedKeys[] = {
    {0x08, "Backspace", "Backspace"},
    {0x09, "Tab", "Tab"},
    {0x0D, "Enter", "Enter"},
    {0x10, "Shift", "ShiftLeft"},
    {0x11, "Control", "ControlLeft"},
    {0x12, "Alt", "AltLeft"},
    {0x13, "Pause", "Pause"},
    {0x14, "CapsLock", "CapsLock"},
    {0x1B, "Escape", "Escape"},
    {0x20, " ", "Space"},
    {0x21, "PageUp", "PageUp"},
    {0x22, "PageDown", "PageDown"},
    {0x23, "End", "End"},
    {0x24, "Home", "Home"},
    {0x25, "ArrowLeft", "ArrowLeft"},
    {0x26, "ArrowUp", "ArrowUp"},
    {0x27, "ArrowRight", "ArrowRight"},
    {0x28, "ArrowDown", "ArrowDown"},
    {0x2D, "Insert", "Insert"},
    {0x2E, "Delete", "Delete"},
    {0x5B, "Meta", "MetaLeft"},
    {0x5C, "Meta", "MetaRight"},
    {0x5D, "ContextMenu", "ContextMenu"},
    {0x90, "NumLock", "NumLock"},
    {0x91, "ScrollLock", "ScrollLock"},
};

// Physical key names of the punctuation keys of a US layout.
constexpr NamedKey kPunctuation[] = {
    {0xBA, nullptr, "Semicolon"},   {0xBB, nullptr, "Equal"},
    {0xBC, nullptr, "Comma"},       {0xBD, nullptr, "Minus"},
    {0xBE, nullptr, "Period"},      {0xBF, nullptr, "Slash"},
    {0xC0, nullptr, "Backquote"},   {0xDB, nullptr, "BracketLeft"},
    {0xDC, nullptr, "Backslash"},   {0xDD, nullptr, "BracketRight"},
    {0xDE, nullptr, "Quote"},
};

bool Printable(char16_t c) {
  return c >= 0x20 && c != 0x7F;
}

void AddKeyNames(const CefKeyEvent& event, QJsonObject& params) {
  const int vk = event.windows_key_code;
  const bool right = event.modifiers & EVENTFLAG_IS_RIGHT;
  QString key;
  QString code;
  for (const NamedKey& named : kNamedKeys) {
    if (named.windows_key_code == vk) {
      key = QString::fromLatin1(named.key);
      code = QString::fromLatin1(named.code);
      if (right && code.endsWith(QLatin1String("Left"))) {
        code.replace(QLatin1String("Left"), QLatin1String("Right"));
      }
      break;
    }
  }
  if (code.isEmpty()) {
    if (vk >= 'A' && vk <= 'Z') {
      code = QStringLiteral("Key") + QChar(vk);
    } else if (vk >= '0' && vk <= '9') {
      code = QStringLiteral("Digit") + QChar(vk);
    } else if (vk >= 0x60 && vk <= 0x69) {
      code = QStringLiteral("Numpad") + QChar('0' + vk - 0x60);
    } else if (vk >= 0x70 && vk <= 0x7B) {
      code = QStringLiteral("F") + QString::number(vk - 0x70 + 1);
      key = code;
    } else {
      for (const NamedKey& named : kPunctuation) {
        if (named.windows_key_code == vk) {
          code = QString::fromLatin1(named.code);
        }
      }
    }
  }
  if (key.isEmpty()) {
    if (Printable(event.character)) {
      key = QString(QChar(event.character));
    } else if (vk >= 'A' && vk <= 'Z') {
      const bool shift = event.modifiers & EVENTFLAG_SHIFT_DOWN;
      const bool caps_lock = event.modifiers & EVENTFLAG_CAPS_LOCK_ON;
      const bool upper = shift != caps_lock;
      key = upper ? QString(QChar(vk)) : QString(QChar(vk)).toLower();
    } else if ((vk >= '0' && vk <= '9') || (vk >= 0x60 && vk <= 0x69)) {
      key = QString(QChar(vk >= 0x60 ? '0' + vk - 0x60 : vk));
    } else {
      key = QStringLiteral("Unidentified");
    }
  }
  params.insert(QStringLiteral("key"), key);
  if (!code.isEmpty()) {
    params.insert(QStringLiteral("code"), code);
  }
}

const char* ButtonName(cef_mouse_button_type_t button) {
  switch (button) {
    case MBT_LEFT:
      return "left";
    case MBT_MIDDLE:
      return "middle";
    case MBT_RIGHT:
      return "right";
  }
  return "none";
}

int ButtonBit(cef_mouse_button_type_t button) {
  switch (button) {
    case MBT_LEFT:
      return 1;
    case MBT_RIGHT:
      return 2;
    case MBT_MIDDLE:
      return 4;
  }
  return 0;
}

QJsonObject MouseBase(const char* type, const CefMouseEvent& event) {
  return QJsonObject{{"type", QLatin1String(type)},
                     {"x", event.x},
                     {"y", event.y},
                     {"modifiers", InputTranslator::Modifiers(event.modifiers)}};
}

}  // namespace

int InputTranslator::Modifiers(uint32_t flags) {
  int modifiers = 0;
  if (flags & (EVENTFLAG_ALT_DOWN | EVENTFLAG_ALTGR_DOWN)) {
    modifiers |= 1;
  }
  if (flags & EVENTFLAG_CONTROL_DOWN) {
    modifiers |= 2;
  }
  if (flags & EVENTFLAG_COMMAND_DOWN) {
    modifiers |= 4;
  }
  if (flags & EVENTFLAG_SHIFT_DOWN) {
    modifiers |= 8;
  }
  return modifiers;
}

int InputTranslator::Buttons(uint32_t flags) {
  int buttons = 0;
  if (flags & EVENTFLAG_LEFT_MOUSE_BUTTON) {
    buttons |= 1;
  }
  if (flags & EVENTFLAG_RIGHT_MOUSE_BUTTON) {
    buttons |= 2;
  }
  if (flags & EVENTFLAG_MIDDLE_MOUSE_BUTTON) {
    buttons |= 4;
  }
  return buttons;
}

QJsonObject InputTranslator::KeyEvent(const CefKeyEvent& event) {
  const char* type = "rawKeyDown";
  switch (event.type) {
    case KEYEVENT_RAWKEYDOWN:
      break;
    case KEYEVENT_KEYDOWN:
      type = "keyDown";
      break;
    case KEYEVENT_KEYUP:
      type = "keyUp";
      break;
    case KEYEVENT_CHAR:
      type = "char";
      break;
  }
  QJsonObject params{{"type", QLatin1String(type)},
                     {"modifiers", Modifiers(event.modifiers)},
                     {"windowsVirtualKeyCode", event.windows_key_code},
                     {"nativeVirtualKeyCode", event.native_key_code},
                     {"isSystemKey", event.is_system_key != 0},
                     {"autoRepeat", (event.modifiers & EVENTFLAG_IS_REPEAT) != 0},
                     {"isKeypad", (event.modifiers & EVENTFLAG_IS_KEY_PAD) != 0}};
  if (event.modifiers & EVENTFLAG_IS_KEY_PAD) {
    params.insert(QStringLiteral("location"), 3);
  } else if (event.modifiers & EVENTFLAG_IS_LEFT) {
    params.insert(QStringLiteral("location"), 1);
  } else if (event.modifiers & EVENTFLAG_IS_RIGHT) {
    params.insert(QStringLiteral("location"), 2);
  }
  if (event.type == KEYEVENT_CHAR) {
    params.insert(QStringLiteral("text"), QString(QChar(event.character)));
    params.insert(QStringLiteral("unmodifiedText"),
                  QString(QChar(event.unmodified_character
                                    ? event.unmodified_character
                                    : event.character)));
  }
  AddKeyNames(event, params);
  return params;
}

QJsonObject InputTranslator::MouseClick(const CefMouseEvent& event,
                                        cef_mouse_button_type_t button,
                                        bool mouse_up,
                                        int click_count) {
  QJsonObject params =
      MouseBase(mouse_up ? "mouseReleased" : "mousePressed", event);
  int buttons = Buttons(event.modifiers);
  buttons = mouse_up ? buttons & ~ButtonBit(button) : buttons | ButtonBit(button);
  params.insert(QStringLiteral("button"), QLatin1String(ButtonName(button)));
  params.insert(QStringLiteral("buttons"), buttons);
  params.insert(QStringLiteral("clickCount"), click_count < 1 ? 1 : click_count);
  return params;
}

QJsonObject InputTranslator::MouseMove(const CefMouseEvent& event,
                                       bool mouse_leave) {
  QJsonObject params = MouseBase("mouseMoved", event);
  if (mouse_leave) {
    params.insert(QStringLiteral("x"), -1);
    params.insert(QStringLiteral("y"), -1);
  }
  const int buttons = Buttons(event.modifiers);
  const char* button = buttons & 1   ? "left"
                       : buttons & 2 ? "right"
                       : buttons & 4 ? "middle"
                                     : "none";
  params.insert(QStringLiteral("button"), QLatin1String(button));
  params.insert(QStringLiteral("buttons"), buttons);
  return params;
}

QJsonObject InputTranslator::MouseWheel(const CefMouseEvent& event,
                                        int delta_x,
                                        int delta_y) {
  QJsonObject params = MouseBase("mouseWheel", event);
  params.insert(QStringLiteral("deltaX"), -delta_x);
  params.insert(QStringLiteral("deltaY"), -delta_y);
  params.insert(QStringLiteral("buttons"), Buttons(event.modifiers));
  return params;
}

QJsonObject InputTranslator::DragEvent(const char* type,
                                       const CefMouseEvent& event,
                                       uint32_t allowed_ops,
                                       CefRefPtr<CefDragData> data) {
  QJsonArray items;
  QJsonArray files;
  if (data) {
    auto add = [&items](const char* mime, const CefString& value) {
      if (!value.empty()) {
        items.append(QJsonObject{{"mimeType", QLatin1String(mime)},
                                 {"data", StringOf(value)}});
      }
    };
    add("text/plain", data->GetFragmentText());
    add("text/html", data->GetFragmentHtml());
    if (data->IsLink()) {
      add("text/uri-list", data->GetLinkURL());
    }
    std::vector<CefString> paths;
    if (data->IsFile() && data->GetFilePaths(paths)) {
      for (const CefString& path : paths) {
        files.append(StringOf(path));
      }
    }
  }
  // The protocol knows copy (1), link (2) and move (16), with CEF's values.
  QJsonObject drag{{"items", items},
                   {"dragOperationsMask",
                    static_cast<int>(allowed_ops & (DRAG_OPERATION_COPY |
                                                    DRAG_OPERATION_LINK |
                                                    DRAG_OPERATION_MOVE))}};
  if (!files.isEmpty()) {
    drag.insert(QStringLiteral("files"), files);
  }
  QJsonObject params = MouseBase(type, event);
  params.insert(QStringLiteral("data"), drag);
  return params;
}

QJsonObject InputTranslator::TouchPoint(const CefTouchEvent& event) {
  QJsonObject point{{"x", event.x},
                    {"y", event.y},
                    {"id", event.id},
                    {"rotationAngle", event.rotation_angle},
                    {"force", event.pressure}};
  if (event.radius_x > 0) {
    point.insert(QStringLiteral("radiusX"), event.radius_x);
  }
  if (event.radius_y > 0) {
    point.insert(QStringLiteral("radiusY"), event.radius_y);
  }
  return point;
}

QJsonObject InputTranslator::ImeComposition(const CefString& text,
                                            const CefRange& replacement_range,
                                            const CefRange& selection_range) {
  const QString composition = StringOf(text);
  QJsonObject params{{"text", composition}};
  if (ValidRange(selection_range)) {
    params.insert(QStringLiteral("selectionStart"),
                  static_cast<int>(selection_range.from));
    params.insert(QStringLiteral("selectionEnd"),
                  static_cast<int>(selection_range.to));
  } else {
    params.insert(QStringLiteral("selectionStart"), composition.size());
    params.insert(QStringLiteral("selectionEnd"), composition.size());
  }
  if (ValidRange(replacement_range)) {
    params.insert(QStringLiteral("replacementStart"),
                  static_cast<int>(replacement_range.from));
    params.insert(QStringLiteral("replacementEnd"),
                  static_cast<int>(replacement_range.to));
  }
  return params;
}

}  // namespace cefengine
