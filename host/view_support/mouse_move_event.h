// A mouse move, or the cursor entering or leaving the view.

#pragma once

#include <QPoint>

#include "host/view_support/input_event.h"
#include "host/view_support/mouse_event.h"

class QMouseEvent;

class MouseMoveEvent : public InputEvent {
 public:
  // |point| is in CEF's logical pixels. Leave sends a move with the leave
  // flag; Move and Enter send a plain move.
  MouseMoveEvent(MouseEvent::Type type,
                 CefRefPtr<CefBrowser> browser,
                 QPoint point,
                 QMouseEvent* event);

  void send() const override;

 private:
  CefMouseEvent m_mouseEvent;
  bool m_mouseLeave;
};
