#include "host/view_support/drag_drop_event.h"

#include <QDropEvent>

#include "host/view_support/drop_translator.h"

DragDropEvent::DragDropEvent(CefRefPtr<CefBrowser> browser,
                             QPoint point,
                             QDropEvent* event)
    : InputEvent(browser),
      m_mouseEvent(DropTranslator::mouseEvent(point, event->keyboardModifiers(),
                                              event->mouseButtons())) {}

void DragDropEvent::send() const {
  if (m_host)
    m_host->DragTargetDrop(m_mouseEvent);
}
