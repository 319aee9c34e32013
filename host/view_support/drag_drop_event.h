// A drop on the view, of the data that entered with the drag.

#pragma once

#include <QPoint>

#include "host/view_support/input_event.h"

class QDropEvent;

class DragDropEvent : public InputEvent {
 public:
  // |point| is in CEF's logical pixels.
  DragDropEvent(CefRefPtr<CefBrowser> browser, QPoint point, QDropEvent* event);

  void send() const override;

 private:
  CefMouseEvent m_mouseEvent;
};
