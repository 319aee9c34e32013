#include "host/view_support/drag_leave_event.h"

DragLeaveEvent::DragLeaveEvent(CefRefPtr<CefBrowser> browser,
                               QDragLeaveEvent* event)
    : InputEvent(browser) {}

void DragLeaveEvent::send() const {
  if (m_host)
    m_host->DragTargetDragLeave();
}
