#include "host/view_support/mouse_move_event.h"

#include <QMouseEvent>

#include "host/view_support/event_flags.h"

MouseMoveEvent::MouseMoveEvent(MouseEvent::Type type,
                               CefRefPtr<CefBrowser> browser,
                               QPoint point,
                               QMouseEvent* event)
    : InputEvent(browser), m_mouseLeave(type == MouseEvent::Type::Leave) {
  m_mouseEvent.x = point.x();
  m_mouseEvent.y = point.y();
  m_mouseEvent.modifiers = EventFlags::fromModifiers(event->modifiers()) |
                           EventFlags::fromButtons(event->buttons());
}

void MouseMoveEvent::send() const {
  if (m_host)
    m_host->SendMouseMoveEvent(m_mouseEvent, m_mouseLeave);
}
