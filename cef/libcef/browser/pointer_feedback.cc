#include "libcef/browser/pointer_feedback.h"

#include <algorithm>
#include <map>

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "include/cef_client.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

// Chromium refuses cursor images beyond this in either direction.
constexpr int kMaxCursorSize = 128;

}  // namespace

QString PointerFeedback::WatcherScript() {
  return ScriptSource("pointer_feedback.js")
      .replace(QLatin1String("__BINDING__"), QLatin1String(kBinding));
}

cef_cursor_type_t PointerFeedback::CursorType(const QString& keyword) {
  // Never destroyed: engine threads may still ask while the process exits.
  static const std::map<QString, cef_cursor_type_t>& kTypes =
      *new std::map<QString, cef_cursor_type_t>{
          {"default", CT_POINTER},
          {"auto", CT_POINTER},
          {"pointer", CT_HAND},
          {"text", CT_IBEAM},
          {"vertical-text", CT_VERTICALTEXT},
          {"crosshair", CT_CROSS},
          {"wait", CT_WAIT},
          {"progress", CT_PROGRESS},
          {"help", CT_HELP},
          {"move", CT_MOVE},
          {"all-scroll", CT_MOVE},
          {"cell", CT_CELL},
          {"context-menu", CT_CONTEXTMENU},
          {"alias", CT_ALIAS},
          {"copy", CT_COPY},
          {"no-drop", CT_NODROP},
          {"not-allowed", CT_NOTALLOWED},
          {"none", CT_NONE},
          {"grab", CT_GRAB},
          {"grabbing", CT_GRABBING},
          {"zoom-in", CT_ZOOMIN},
          {"zoom-out", CT_ZOOMOUT},
          {"e-resize", CT_EASTRESIZE},
          {"w-resize", CT_WESTRESIZE},
          {"n-resize", CT_NORTHRESIZE},
          {"s-resize", CT_SOUTHRESIZE},
          {"ne-resize", CT_NORTHEASTRESIZE},
          {"nw-resize", CT_NORTHWESTRESIZE},
          {"se-resize", CT_SOUTHEASTRESIZE},
          {"sw-resize", CT_SOUTHWESTRESIZE},
          {"ew-resize", CT_EASTWESTRESIZE},
          {"ns-resize", CT_NORTHSOUTHRESIZE},
          {"nesw-resize", CT_NORTHEASTSOUTHWESTRESIZE},
          {"nwse-resize", CT_NORTHWESTSOUTHEASTRESIZE},
          {"col-resize", CT_COLUMNRESIZE},
          {"row-resize", CT_ROWRESIZE}};
  auto it = kTypes.find(keyword.trimmed().toLower());
  return it == kTypes.end() ? CT_POINTER : it->second;
}

PointerFeedback::CssCursor PointerFeedback::ParseCursor(const QString& css) {
  static const QRegularExpression& kImage = *new QRegularExpression(
      QStringLiteral(R"re(^\s*url\(\s*"((?:[^"\\]|\\.)*)"\s*\)\s*)re"
                     R"re((?:(-?[\d.]+)\s+(-?[\d.]+)\s*)?,)re"));
  CssCursor cursor;
  // Most cursors are a keyword alone: no expression runs for them, which
  // also spares the engine thread Qt's per-thread matching state while a
  // host exits with its views open.
  const QRegularExpressionMatch match =
      css.contains(QLatin1String("url(")) ? kImage.match(css)
                                          : QRegularExpressionMatch();
  if (match.hasMatch()) {
    cursor.image_url = match.captured(1);
    cursor.image_url.replace(QRegularExpression(QStringLiteral(R"re(\\(.))re")),
                             QStringLiteral("\\1"));
    if (!match.captured(2).isEmpty()) {
      cursor.has_hotspot = true;
      cursor.hotspot = QPoint(qRound(match.captured(2).toDouble()),
                              qRound(match.captured(3).toDouble()));
    }
  }
  cursor.keyword = CursorType(css.section(',', -1));
  return cursor;
}

QImage PointerFeedback::DecodeCursorImage(const QByteArray& data) {
  QImage image = QImage::fromData(data);
  if (image.isNull() || image.width() > kMaxCursorSize ||
      image.height() > kMaxCursorSize) {
    return QImage();
  }
  // Little-endian ARGB32 lies in memory as B, G, R, A: CEF's order.
  return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

PointerFeedback::PointerFeedback(BrowserImpl* browser) : browser_(browser) {}

void PointerFeedback::OnReport(const QString& payload) {
  const QJsonObject report = QJsonDocument::fromJson(payload.toUtf8()).object();
  if (report.contains(QLatin1String("cursor"))) {
    ReportCursor(report.value(QLatin1String("cursor")).toString(),
                 report.value(QLatin1String("image")).toString());
  } else if (report.contains(QLatin1String("tooltip"))) {
    ReportTooltip(report.value(QLatin1String("tooltip")).toString());
  }
}

void PointerFeedback::ReportCursor(const QString& css, const QString& image) {
  const QString key = css + '|' + image;
  if (key == last_cursor_) {
    return;
  }
  last_cursor_ = key;
  CefRefPtr<CefClient> client = browser_->client();
  CefRefPtr<CefDisplayHandler> display =
      client ? client->GetDisplayHandler() : nullptr;
  if (!display) {
    return;
  }
  const CssCursor cursor = ParseCursor(css);
  QImage pixels;
  if (image.startsWith(QLatin1String("data:"))) {
    const QString body = image.section(',', 1);
    const bool base64 = image.section(',', 0, 0).endsWith(QLatin1String(";base64"));
    const QByteArray bytes = base64 ? QByteArray::fromBase64(body.toLatin1())
                                    : QByteArray::fromPercentEncoding(body.toUtf8());
    pixels = DecodeCursorImage(bytes);
  }
  if (pixels.isNull()) {
    display->OnCursorChange(browser_, 0, cursor.keyword, CefCursorInfo());
    return;
  }
  CefCursorInfo info;
  if (cursor.has_hotspot) {
    info.hotspot.x = std::clamp(cursor.hotspot.x(), 0, pixels.width() - 1);
    info.hotspot.y = std::clamp(cursor.hotspot.y(), 0, pixels.height() - 1);
  }
  info.image_scale_factor = 1;
  info.buffer = pixels.bits();
  info.size.width = pixels.width();
  info.size.height = pixels.height();
  display->OnCursorChange(browser_, 0, CT_CUSTOM, info);
}

void PointerFeedback::ReportTooltip(const QString& text) {
  CefRefPtr<CefClient> client = browser_->client();
  if (CefRefPtr<CefDisplayHandler> display =
          client ? client->GetDisplayHandler() : nullptr) {
    CefString tooltip(text.toStdString());
    display->OnTooltip(browser_, tooltip);
  }
}

}  // namespace cefengine
