#include "libcef/browser/pointer_feedback.h"

#include <algorithm>
#include <map>

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "include/cef_client.h"
#include "libcef/browser/browser_impl.h"

namespace cefengine {

namespace {

// Chromium refuses cursor images beyond this in either direction.
constexpr int kMaxCursorSize = 128;

// Reports the cursor on every pointer move that changes it, and a title's
// tooltip after Chromium's usual delay; an empty tooltip when the pointer
// leaves it. "auto" is resolved as Chromium does: the hand over links, the
// I-beam over fields and text. Images come along as data URLs, so that the
// engine never fetches on its own.
constexpr char kWatcher[] = R"js((() => {
  const send = %1;
  const fields = /^(button|checkbox|color|file|hidden|image|radio|range|reset|submit)$/;
  const tipDelayMs = 500;
  let lastCursor = null, lastTip = '', shownTip = '', tipTimer = 0;
  const images = new Map();
  const overText = (x, y) => {
    let node = null;
    if (document.caretPositionFromPoint) {
      const p = document.caretPositionFromPoint(x, y);
      node = p && p.offsetNode;
    } else if (document.caretRangeFromPoint) {
      const r = document.caretRangeFromPoint(x, y);
      node = r && r.startContainer;
    }
    if (!node || node.nodeType !== Node.TEXT_NODE || !node.data.trim()) return false;
    const range = document.createRange();
    range.selectNodeContents(node);
    for (const b of range.getClientRects())
      if (x >= b.left && x < b.right && y >= b.top && y < b.bottom) return true;
    return false;
  };
  const autoCursor = (el, x, y) => {
    for (let e = el; e; e = e.parentElement)
      if ((e.tagName === 'A' || e.tagName === 'AREA') && e.hasAttribute('href')) return 'pointer';
    if (el && (el.isContentEditable || el.tagName === 'TEXTAREA' ||
               (el.tagName === 'INPUT' && !fields.test(el.type)))) return 'text';
    return overText(x, y) ? 'text' : 'default';
  };
  const report = (css, image) => {
    const key = css + '|' + image;
    if (key === lastCursor) return;
    lastCursor = key;
    send(JSON.stringify({cursor: css, image}));
  };
  const cursorAt = (el, x, y) => {
    let css = getComputedStyle(el).cursor;
    if (css === 'auto' || css.endsWith(', auto'))
      css = css.slice(0, css.length - 4) + autoCursor(el, x, y);
    const url = /url\("((?:[^"\\]|\\.)*)"\)/.exec(css);
    if (!url) return report(css, '');
    const src = url[1].replace(/\\(.)/g, '$1');
    if (src.startsWith('data:')) return report(css, src);
    if (images.has(src)) return report(css, images.get(src));
    report(css, '');
    fetch(src).then(r => r.ok ? r.blob() : Promise.reject()).then(blob => {
      const reader = new FileReader();
      reader.onload = () => {
        images.set(src, reader.result);
        if (lastCursor && lastCursor.startsWith(css + '|')) report(css, reader.result);
      };
      reader.readAsDataURL(blob);
    }).catch(() => images.set(src, ''));
  };
  const tipOf = (el) => {
    for (let e = el; e; e = e.parentElement || (e.getRootNode() && e.getRootNode().host)) {
      if (e.nodeType === Node.ELEMENT_NODE && e.hasAttribute('title'))
        return e.getAttribute('title');
    }
    return '';
  };
  const showTip = (text) => {
    clearTimeout(tipTimer);
    if (text === lastTip) return;
    lastTip = text;
    if (shownTip) { shownTip = ''; send(JSON.stringify({tooltip: ''})); }
    if (text) tipTimer = setTimeout(() => {
      shownTip = text;
      send(JSON.stringify({tooltip: text}));
    }, tipDelayMs);
  };
  document.addEventListener('mousemove', (event) => {
    const path = event.composedPath();
    const el = path.length && path[0].nodeType === Node.ELEMENT_NODE ? path[0] : event.target;
    if (!el || el.nodeType !== Node.ELEMENT_NODE) return;
    cursorAt(el, event.clientX, event.clientY);
    showTip(tipOf(el));
  }, {capture: true, passive: true});
  document.addEventListener('mouseout', (event) => {
    if (!event.relatedTarget) showTip('');
  }, {capture: true, passive: true});
  document.addEventListener('mousedown', () => {
    clearTimeout(tipTimer);
    if (shownTip) { shownTip = ''; send(JSON.stringify({tooltip: ''})); }
  }, {capture: true, passive: true});
})();)js";

}  // namespace

QString PointerFeedback::WatcherScript() {
  return QString::fromUtf8(kWatcher).arg(QLatin1String(kBinding));
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
  QRegularExpressionMatch match = kImage.match(css);
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
