#include "libcef/network/url_schemes.h"

#include <QUrl>

namespace cefengine {

QString SchemeOf(const QString& url) {
  const int colon = url.indexOf(QLatin1Char(':'));
  if (colon <= 0) {
    return QString();
  }
  const QString scheme = url.left(colon).toLower();
  for (const QChar c : scheme) {
    if (!(c.isLetterOrNumber() || c == '+' || c == '-' || c == '.')) {
      return QString();
    }
  }
  return scheme.at(0).isLetter() ? scheme : QString();
}

bool IsBuiltInScheme(const QString& scheme) {
  static const char* const kSchemes[] = {
      "http", "https", "file", "data",       "blob", "filesystem",
      "ws",   "wss",   "about", "javascript", "chrome"};
  for (const char* known : kSchemes) {
    if (scheme == QLatin1String(known)) {
      return true;
    }
  }
  return false;
}

bool IsPausableDocumentScheme(const QString& scheme) {
  return scheme == QLatin1String("http") || scheme == QLatin1String("https") ||
         scheme == QLatin1String("file");
}

QString OriginOf(const QString& url) {
  const QString scheme = SchemeOf(url);
  if (scheme == QLatin1String("file")) {
    return QStringLiteral("file://");
  }
  if (scheme != QLatin1String("http") && scheme != QLatin1String("https") &&
      scheme != QLatin1String("ws") && scheme != QLatin1String("wss")) {
    return QStringLiteral("null");
  }
  return QUrl(url)
      .adjusted(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery |
                QUrl::RemoveFragment)
      .toString();
}

}  // namespace cefengine
