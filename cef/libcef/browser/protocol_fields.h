// Short reads of a protocol message's fields, for the page's event handlers.

#ifndef CEF_LIBCEF_BROWSER_PROTOCOL_FIELDS_H_
#define CEF_LIBCEF_BROWSER_PROTOCOL_FIELDS_H_

#include <QJsonObject>
#include <QString>

#include "include/internal/cef_string.h"

namespace cefengine {

// |object|'s string or object field |name|; empty when missing.
inline QString Str(const QJsonObject& object, const char* name) {
  return object.value(QLatin1String(name)).toString();
}

inline QJsonObject Obj(const QJsonObject& object, const char* name) {
  return object.value(QLatin1String(name)).toObject();
}

inline CefString Cef(const QString& text) {
  return CefString(text.toStdString());
}

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PROTOCOL_FIELDS_H_
