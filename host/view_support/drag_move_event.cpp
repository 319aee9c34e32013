#include "host/view_support/drag_move_event.h"

#include <QDragMoveEvent>

#include "host/view_support/drop_translator.h"

DragMoveEvent::DragMoveEvent(CefRefPtr<CefBrowser> browser,
                             QPoint point,
                             QDragMoveEvent* event)
    : InputEvent(browser),
      m_mouseEvent(DropTranslator::mouseEvent(point, event->keyboardModifiers(),
                                              event->mouseButtons())),
      m_allowedOps(DropTranslator::operations(event->possibleActions())) {}

void DragMoveEvent::send() const {
  if (m_host)
    m_host->DragTargetDragOver(m_mouseEvent, m_allowedOps);
}
