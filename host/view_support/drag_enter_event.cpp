#include "host/view_support/drag_enter_event.h"

#include <QDragEnterEvent>

#include "host/view_support/drop_translator.h"

DragEnterEvent::DragEnterEvent(CefRefPtr<CefBrowser> browser,
                               QPoint point,
                               QDragEnterEvent* event)
    : InputEvent(browser),
      m_dragData(DropTranslator::dragData(event->mimeData())),
      m_mouseEvent(DropTranslator::mouseEvent(point, event->keyboardModifiers(),
                                              event->mouseButtons())),
      m_allowedOps(DropTranslator::operations(event->possibleActions())) {}

DragEnterEvent::~DragEnterEvent() = default;

void DragEnterEvent::send() const {
  if (m_host)
    m_host->DragTargetDragEnter(m_dragData, m_mouseEvent, m_allowedOps);
}
