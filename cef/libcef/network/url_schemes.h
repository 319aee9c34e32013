// What the engine needs to know about a URL's scheme and origin.

#ifndef CEF_LIBCEF_NETWORK_URL_SCHEMES_H_
#define CEF_LIBCEF_NETWORK_URL_SCHEMES_H_

#include <QString>

namespace cefengine {

// The lower-case scheme of |url|, empty when it has none.
QString SchemeOf(const QString& url);

// Schemes Chromium loads itself (http, data, about, ...); any other scheme
// reaches a page only through a handler of the client.
bool IsBuiltInScheme(const QString& scheme);

// Documents Chromium fetches through the network stack, which the Fetch
// domain can pause: http, https and file.
bool IsPausableDocumentScheme(const QString& scheme);

// "scheme://host[:port]" of |url|, or "null" for an opaque origin (data:,
// about:, unknown schemes), as a request initiator is written.
QString OriginOf(const QString& url);

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_URL_SCHEMES_H_
