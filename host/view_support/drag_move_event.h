// A drag moving over the view.

#pragma once

#include <QPoint>

#include "host/view_support/input_event.h"

class QDragMoveEvent;

class DragMoveEvent : public InputEvent {
 public:
  // |point| is in CEF's logical pixels.
  DragMoveEvent(CefRefPtr<CefBrowser> browser,
                QPoint point,
                QDragMoveEvent* event);

  void send() const override;

 private:
  CefMouseEvent m_mouseEvent;
  cef_drag_operations_mask_t m_allowedOps;
};
