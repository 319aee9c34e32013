// Conversions between Qt's and CEF's types. Stateless; any thread.

#pragma once

#include <QByteArray>
#include <QRect>
#include <QString>
#include <QVariant>
#include <Qt>

#include "include/cef_base.h"
#include "include/cef_drag_data.h"
#include "include/cef_values.h"

class QMimeData;

class Conversions {
 public:
  // Same x, y, width and height; an empty rectangle stays empty.
  static QRect convertRect(const CefRect& rect);
  static CefRect convertRect(const QRect& rect);

  // A null CefString gives an empty QString.
  static QString convertString(const CefString& string);
  static CefString convertString(const QString& string);

  // A null value gives an empty array.
  static QByteArray convertBinary(CefRefPtr<CefBinaryValue> binary);

  static Qt::CursorShape convertCursor(cef_cursor_type_t type);
  static Qt::DropActions convertDropActions(cef_drag_operations_mask_t ops);

  // A new QMimeData, owned by the caller: the fragment's text and HTML, the
  // link and the files as URLs (link first), and the contents of a file
  // dragged out of the page under the MIME type of its name. Null data gives
  // an empty QMimeData.
  static QMimeData* convertMimeData(CefRefPtr<CefDragData> dragData);

  // Null and invalid give QVariant(); dictionaries become QVariantMap and
  // lists QVariantList, recursively; binaries become QByteArray.
  static QVariant convertValue(CefRefPtr<CefValue> value);
  // A null list gives an empty list.
  static QVariantList convertList(CefRefPtr<CefListValue> list);
};
