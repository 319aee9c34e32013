#include "host/view_support/mouse_click_event.h"

#include <QMouseEvent>

#include "host/view_support/event_flags.h"

MouseClickEvent::MouseClickEvent(MouseEvent::Type type,
                                 CefRefPtr<CefBrowser> browser,
                                 QPoint point,
                                 QMouseEvent* event,
                                 int clickCount)
    : InputEvent(browser),
      m_mouseUp(type == MouseEvent::Type::Release),
      m_clickCount(clickCount) {
  m_mouseEvent.x = point.x();
  m_mouseEvent.y = point.y();
  m_mouseEvent.modifiers = EventFlags::fromModifiers(event->modifiers()) |
                           EventFlags::fromButtons(event->buttons());
  m_valid = type == MouseEvent::Type::Press ||
            type == MouseEvent::Type::Release;
  switch (event->button()) {
    case Qt::LeftButton:
      m_button = MBT_LEFT;
      break;
    case Qt::MiddleButton:
      m_button = MBT_MIDDLE;
      break;
    case Qt::RightButton:
      m_button = MBT_RIGHT;
      break;
    default:
      m_valid = false;
      break;
  }
}

void MouseClickEvent::send() const {
  if (m_host && m_valid)
    m_host->SendMouseClickEvent(m_mouseEvent, m_button, m_mouseUp,
                                m_clickCount);
}
