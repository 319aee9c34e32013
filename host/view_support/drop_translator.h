// What a Qt drag into the view means to CEF: its data, the allowed
// operations, the pointer.

#pragma once

#include <QPoint>
#include <Qt>

#include "include/cef_drag_data.h"

class QMimeData;

class DropTranslator {
 public:
  // Text and HTML become the fragment; local file URLs become files; the first
  // other URL becomes the link. A null |mimeData| gives empty data.
  static CefRefPtr<CefDragData> dragData(const QMimeData* mimeData);
  static cef_drag_operations_mask_t operations(Qt::DropActions actions);
  // |point| is in CEF's logical pixels.
  static CefMouseEvent mouseEvent(QPoint point,
                                  Qt::KeyboardModifiers modifiers,
                                  Qt::MouseButtons buttons);
};
