// fetch() and XMLHttpRequest for custom schemes. The renderer refuses both
// for a scheme it does not know before any request exists, so a script in
// each page sends them to a stand-in https address instead; the engine pauses
// those requests like any other, gives the client's handlers the original
// URL, and answers with CORS headers, since to the page the stand-in is
// another origin.

#ifndef CEF_LIBCEF_NETWORK_SCHEME_PROXY_H_
#define CEF_LIBCEF_NETWORK_SCHEME_PROXY_H_

#include <vector>

#include <QJsonArray>
#include <QString>

#include "libcef/custom_scheme.h"

namespace cefengine {

class SchemeProxy {
 public:
  // The page script that redirects fetch() and XMLHttpRequest for the
  // schemes registered with CEF_SCHEME_OPTION_FETCH_ENABLED or
  // CEF_SCHEME_OPTION_CORS_ENABLED; empty when there is none.
  static QString PageScript(const std::vector<CustomScheme>& schemes);

  // The original URL behind a stand-in address, or empty when |url| is not
  // one.
  static QString Unwrap(const QString& url);

  // Response headers (Fetch's name/value entries) that allow a preflight to
  // a stand-in address from |origin| with the |requestHeaders| it asks for.
  static QJsonArray PreflightHeaders(const QString& origin,
                                     const QString& requestHeaders);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_SCHEME_PROXY_H_
