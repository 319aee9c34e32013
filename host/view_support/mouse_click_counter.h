// Counts the clicks of a multiple click (double, triple...), which CEF wants
// with every press and release. Qt main thread.

#pragma once

#include <QPointF>
#include <Qt>

class QEvent;

class MouseClickCounter {
 public:
  // The click count of the latest press, read directly by the view.
  int m_count = 1;

  // Watches every event reaching the view. A press (or Qt's double click,
  // which stands for the second press) of the same button within the double
  // click interval and distance of the previous press adds one; any other
  // press starts again at 1.
  void update(QEvent* event);

 private:
  Qt::MouseButton m_lastButton = Qt::NoButton;
  unsigned long m_lastTimestamp = 0;
  QPointF m_lastPosition;
};
