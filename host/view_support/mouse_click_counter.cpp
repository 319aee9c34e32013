#include "host/view_support/mouse_click_counter.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

#include <cmath>

void MouseClickCounter::update(QEvent* event) {
  if (!event || (event->type() != QEvent::MouseButtonPress &&
                 event->type() != QEvent::MouseButtonDblClick)) {
    return;
  }
  const auto* mouse = static_cast<QMouseEvent*>(event);
  const QStyleHints* hints = QGuiApplication::styleHints();
  const unsigned long timestamp = mouse->timestamp();
  const QPointF position = mouse->screenPos();
  const qreal distance = hints->mouseDoubleClickDistance();

  // A timestamp running backwards counts as a new series.
  const bool continues =
      mouse->button() == m_lastButton && timestamp >= m_lastTimestamp &&
      timestamp - m_lastTimestamp <
          static_cast<unsigned long>(hints->mouseDoubleClickInterval()) &&
      std::abs(position.x() - m_lastPosition.x()) <= distance &&
      std::abs(position.y() - m_lastPosition.y()) <= distance;

  m_count = continues ? m_count + 1 : 1;
  m_lastButton = mouse->button();
  m_lastTimestamp = timestamp;
  m_lastPosition = position;
}
