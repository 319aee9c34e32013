#include "libcef/network/scheme_proxy.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include "include/internal/cef_types.h"
#include "libcef/network/url_schemes.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

// Never resolvable (RFC 2606), so nothing but the engine ever answers it.
const char kStandIn[] = "https://custom-scheme.invalid/";

}  // namespace

QString SchemeProxy::PageScript(const std::vector<CustomScheme>& schemes) {
  QStringList names;
  for (const CustomScheme& scheme : schemes) {
    const QString name = QString::fromStdString(scheme.name);
    if ((scheme.options &
         (CEF_SCHEME_OPTION_FETCH_ENABLED | CEF_SCHEME_OPTION_CORS_ENABLED)) &&
        !IsBuiltInScheme(name)) {
      names << name;
    }
  }
  if (names.isEmpty()) {
    return QString();
  }
  const QString list = QString::fromUtf8(
      QJsonDocument(QJsonArray::fromStringList(names)).toJson(
          QJsonDocument::Compact));
  return ScriptSource("scheme_proxy.js")
      .replace(QLatin1String("__STAND_IN__"),
               QLatin1Char('\'') + QLatin1String(kStandIn) + QLatin1Char('\''))
      .replace(QLatin1String("__SCHEMES__"), list);
}

QString SchemeProxy::Unwrap(const QString& url) {
  const QLatin1String prefix(kStandIn);
  if (!url.startsWith(prefix)) {
    return QString();
  }
  return QUrl::fromPercentEncoding(url.mid(prefix.size()).toLatin1());
}

QJsonArray SchemeProxy::PreflightHeaders(const QString& origin,
                                         const QString& requestHeaders) {
  const auto entry = [](const char* name, const QString& value) {
    return QJsonObject{{"name", name}, {"value", value}};
  };
  QJsonArray headers{
      entry("Access-Control-Allow-Origin",
            origin.isEmpty() || origin == QLatin1String("null")
                ? QStringLiteral("*")
                : origin),
      entry("Access-Control-Allow-Methods",
            QStringLiteral("GET, HEAD, POST, PUT, DELETE, PATCH, OPTIONS")),
      entry("Access-Control-Max-Age", QStringLiteral("600")),
  };
  if (!requestHeaders.isEmpty()) {
    headers.append(entry("Access-Control-Allow-Headers", requestHeaders));
  }
  return headers;
}

}  // namespace cefengine
