// A mouse button press or release.

#pragma once

#include <QPoint>

#include "host/view_support/input_event.h"
#include "host/view_support/mouse_event.h"

class QMouseEvent;

class MouseClickEvent : public InputEvent {
 public:
  // |point| is in CEF's logical pixels. |type| is Press or Release; any other
  // type, or a button other than left, middle and right, sends nothing.
  MouseClickEvent(MouseEvent::Type type,
                  CefRefPtr<CefBrowser> browser,
                  QPoint point,
                  QMouseEvent* event,
                  int clickCount);

  void send() const override;

 private:
  CefMouseEvent m_mouseEvent;
  CefBrowserHost::MouseButtonType m_button = MBT_LEFT;
  bool m_mouseUp = false;
  int m_clickCount = 1;
  bool m_valid = false;
};
