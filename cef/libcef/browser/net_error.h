// Chromium's network error names as CEF's error codes.

#ifndef CEF_LIBCEF_BROWSER_NET_ERROR_H_
#define CEF_LIBCEF_BROWSER_NET_ERROR_H_

#include <string>

#include <QString>

#include "include/internal/cef_types.h"

namespace cefengine {

struct NetError {
  cef_errorcode_t code;
  // The short name CEF hands out, e.g. "ERR_CONNECTION_REFUSED".
  std::string name;
};

// |text| as the protocol gives it ("net::ERR_NAME_NOT_RESOLVED"). A name CEF
// has no value for, or an empty text, maps to ERR_FAILED; the name is kept.
NetError NetErrorFromText(const QString& text);

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_NET_ERROR_H_
