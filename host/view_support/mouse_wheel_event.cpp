#include "host/view_support/mouse_wheel_event.h"

#include <QWheelEvent>

#include "host/view_support/event_flags.h"

MouseWheelEvent::MouseWheelEvent(CefRefPtr<CefBrowser> browser,
                                 QPoint point,
                                 QWheelEvent* event)
    : InputEvent(browser),
      m_delta(event->angleDelta().isNull() ? event->pixelDelta()
                                           : event->angleDelta()) {
  m_mouseEvent.x = point.x();
  m_mouseEvent.y = point.y();
  m_mouseEvent.modifiers = EventFlags::fromModifiers(event->modifiers()) |
                           EventFlags::fromButtons(event->buttons());
}

void MouseWheelEvent::send() const {
  if (m_host)
    m_host->SendMouseWheelEvent(m_mouseEvent, m_delta.x(), m_delta.y());
}
