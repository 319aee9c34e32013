// A drag entering the view; the browser keeps the data for the moves and the
// drop that follow.

#pragma once

#include <QPoint>

#include "host/view_support/input_event.h"

class QDragEnterEvent;

class DragEnterEvent : public InputEvent {
 public:
  // |point| is in CEF's logical pixels.
  DragEnterEvent(CefRefPtr<CefBrowser> browser,
                 QPoint point,
                 QDragEnterEvent* event);
  ~DragEnterEvent() override;

  void send() const override;

 private:
  CefRefPtr<CefDragData> m_dragData;
  CefMouseEvent m_mouseEvent;
  cef_drag_operations_mask_t m_allowedOps;
};
