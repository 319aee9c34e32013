#include "libcef/browser/caret_reporter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include <QJsonDocument>
#include <QJsonObject>

#include "include/cef_render_handler.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

int Whole(const QJsonObject& report, const char* key, double scale) {
  return static_cast<int>(
      std::lround(report.value(QLatin1String(key)).toDouble() * scale));
}

}  // namespace

QString CaretReporter::WatcherScript() {
  return ScriptSource("caret_reporter.js")
      .replace(QLatin1String("__BINDING__"), QLatin1String(kBinding));
}

CaretReporter::CaretReporter(BrowserImpl* browser) : browser_(browser) {}

void CaretReporter::OnReport(const QString& payload) {
  const QJsonObject report = QJsonDocument::fromJson(payload.toUtf8()).object();
  CefRefPtr<CefRenderHandler> handler = browser_->render_handler();
  if (!handler || report.isEmpty()) {
    return;
  }
  // CSS pixels to the view's: the page zoom is the only difference.
  const double scale = browser_->css_to_view_scale();
  const CefRect caret(Whole(report, "x", scale), Whole(report, "y", scale),
                      std::max(1, Whole(report, "width", scale)),
                      std::max(1, Whole(report, "height", scale)));
  const CefRange selection(
      static_cast<uint32_t>(std::max(0, report.value(QLatin1String("start")).toInt())),
      static_cast<uint32_t>(std::max(0, report.value(QLatin1String("end")).toInt())));
  handler->OnImeCompositionRangeChanged(browser_, selection,
                                        std::vector<CefRect>{caret});
}

}  // namespace cefengine
