// A turn of the wheel, or a scroll on a touchpad.

#pragma once

#include <QPoint>

#include "host/view_support/input_event.h"

class QWheelEvent;

class MouseWheelEvent : public InputEvent {
 public:
  // |point| is in CEF's logical pixels. The deltas are Qt's angle deltas
  // (120 a notch), or the pixel deltas when a device reports only those.
  MouseWheelEvent(CefRefPtr<CefBrowser> browser,
                  QPoint point,
                  QWheelEvent* event);

  void send() const override;

 private:
  CefMouseEvent m_mouseEvent;
  QPoint m_delta;
};
