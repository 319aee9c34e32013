// Header maps of requests and responses: names compare without case.

#ifndef CEF_LIBCEF_NETWORK_HEADER_MAP_H_
#define CEF_LIBCEF_NETWORK_HEADER_MAP_H_

#include <map>

#include "include/internal/cef_string.h"

namespace cefengine {

using HeaderMultimap = std::multimap<CefString, CefString>;

bool SameHeaderName(const CefString& a, const CefString& b);

// The first value of |name|, empty if there is none.
CefString FindHeader(const HeaderMultimap& headers, const CefString& name);

// Adds |name|; an existing one is replaced (all its values) only with
// |overwrite|.
void SetHeader(HeaderMultimap& headers,
               const CefString& name,
               const CefString& value,
               bool overwrite);

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_HEADER_MAP_H_
