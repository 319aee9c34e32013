#include "libcef/network/header_map.h"

#include <QString>

namespace cefengine {

bool SameHeaderName(const CefString& a, const CefString& b) {
  return QString::fromStdString(a.ToString())
             .compare(QString::fromStdString(b.ToString()),
                      Qt::CaseInsensitive) == 0;
}

CefString FindHeader(const HeaderMultimap& headers, const CefString& name) {
  for (const auto& [key, value] : headers) {
    if (SameHeaderName(key, name)) {
      return value;
    }
  }
  return CefString();
}

void SetHeader(HeaderMultimap& headers,
               const CefString& name,
               const CefString& value,
               bool overwrite) {
  bool found = false;
  for (auto it = headers.begin(); it != headers.end();) {
    if (!SameHeaderName(it->first, name)) {
      ++it;
    } else if (!overwrite) {
      return;
    } else if (!found) {
      it->second = value;
      found = true;
      ++it;
    } else {
      it = headers.erase(it);
    }
  }
  if (!found) {
    headers.emplace(name, value);
  }
}

}  // namespace cefengine
