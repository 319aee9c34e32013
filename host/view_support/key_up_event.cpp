#include "host/view_support/key_up_event.h"

#include <QKeyEvent>

#include "host/view_support/key_event_converter.h"

KeyUpEvent::KeyUpEvent(CefRefPtr<CefBrowser> browser, QKeyEvent* event)
    : InputEvent(browser), m_keyEvent(KeyEventConverter::convert(event)) {
  m_keyEvent.type = KEYEVENT_KEYUP;
}

void KeyUpEvent::send() const {
  if (m_host)
    m_host->SendKeyEvent(m_keyEvent);
}
