#include "host/view_support/drop_translator.h"

#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

#include "host/view_support/conversions.h"
#include "host/view_support/event_flags.h"

CefRefPtr<CefDragData> DropTranslator::dragData(const QMimeData* mimeData) {
  CefRefPtr<CefDragData> data = CefDragData::Create();
  if (!data || !mimeData)
    return data;
  if (mimeData->hasText())
    data->SetFragmentText(Conversions::convertString(mimeData->text()));
  if (mimeData->hasHtml())
    data->SetFragmentHtml(Conversions::convertString(mimeData->html()));
  bool haveLink = false;
  for (const QUrl& url : mimeData->urls()) {
    if (url.isLocalFile()) {
      const QString path = url.toLocalFile();
      data->AddFile(Conversions::convertString(path),
                    Conversions::convertString(QFileInfo(path).fileName()));
    } else if (!haveLink && url.isValid()) {
      data->SetLinkURL(Conversions::convertString(url.toString()));
      haveLink = true;
    }
  }
  return data;
}

cef_drag_operations_mask_t DropTranslator::operations(Qt::DropActions actions) {
  unsigned int mask = DRAG_OPERATION_NONE;
  if (actions & Qt::CopyAction)
    mask |= DRAG_OPERATION_COPY;
  if (actions & Qt::MoveAction)
    mask |= DRAG_OPERATION_MOVE;
  if (actions & Qt::LinkAction)
    mask |= DRAG_OPERATION_LINK;
  return static_cast<cef_drag_operations_mask_t>(mask);
}

CefMouseEvent DropTranslator::mouseEvent(QPoint point,
                                         Qt::KeyboardModifiers modifiers,
                                         Qt::MouseButtons buttons) {
  CefMouseEvent event;
  event.x = point.x();
  event.y = point.y();
  event.modifiers =
      EventFlags::fromModifiers(modifiers) | EventFlags::fromButtons(buttons);
  return event;
}
