// A key release.

#pragma once

#include "host/view_support/input_event.h"

class QKeyEvent;

class KeyUpEvent : public InputEvent {
 public:
  KeyUpEvent(CefRefPtr<CefBrowser> browser, QKeyEvent* event);

  void send() const override;

 private:
  CefKeyEvent m_keyEvent;
};
