// A key press: a raw key down, then one character event for each UTF-16 unit
// of the text the key produces, as CEF clients do on Linux. Control characters
// other than Return and Tab send no character event.

#pragma once

#include <QString>

#include "host/view_support/input_event.h"

class QKeyEvent;

class KeyDownEvent : public InputEvent {
 public:
  KeyDownEvent(CefRefPtr<CefBrowser> browser, QKeyEvent* event);

  void send() const override;

 private:
  CefKeyEvent m_keyEvent;
  QString m_text;
};
