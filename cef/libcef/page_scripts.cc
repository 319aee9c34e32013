#include "libcef/page_scripts.h"

#include <QFile>

#include "include/base/cef_logging.h"

namespace cefengine {

QString ScriptSource(const char* file) {
  QFile source(QStringLiteral(":/brovia/scripts/") + QLatin1String(file));
  if (!source.open(QIODevice::ReadOnly)) {
    LOG(ERROR) << "No page script " << file;
    return QString();
  }
  return QString::fromUtf8(source.readAll());
}

}  // namespace cefengine
