#include "libcef/browser/find_in_page.h"

#include <QJsonDocument>

#include "include/cef_client.h"
#include "libcef/browser/engine_world.h"

namespace cefengine {

namespace {

// Arguments: text, matchCase, forward, findNext. The active match lives in
// the world's own global, so that quick successive calls stay in order.
constexpr char kFindScript[] = R"((text, matchCase, forward, findNext) => {
  const norm = s => matchCase ? s : s.toLowerCase();
  const needle = norm(text);
  const matches = [];
  const root = document.body || document.documentElement;
  if (needle && root) {
    const walker = document.createTreeWalker(root, NodeFilter.SHOW_TEXT, {
      acceptNode: n => n.parentElement &&
          !/^(SCRIPT|STYLE|NOSCRIPT|TEMPLATE)$/.test(n.parentElement.tagName)
          ? NodeFilter.FILTER_ACCEPT : NodeFilter.FILTER_REJECT});
    for (let n; (n = walker.nextNode());) {
      const hay = norm(n.data);
      for (let i = hay.indexOf(needle); i >= 0;
           i = hay.indexOf(needle, i + needle.length)) {
        matches.push([n, i]);
      }
    }
  }
  const last = window.__find;
  const same = last && last.text === text && last.matchCase === matchCase;
  const count = matches.length;
  if (!count) {
    window.__find = {text, matchCase, active: -1};
    return {count: 0, active: 0};
  }
  let active = forward ? 0 : count - 1;
  if (findNext && same && last.active >= 0) {
    active = ((last.active + (forward ? 1 : -1)) % count + count) % count;
  }
  window.__find = {text, matchCase, active};
  const [node, at] = matches[active];
  const range = document.createRange();
  range.setStart(node, Math.min(at, node.length));
  range.setEnd(node, Math.min(at + text.length, node.length));
  const selection = getSelection();
  selection.removeAllRanges();
  selection.addRange(range);
  node.parentElement.scrollIntoView({block: 'nearest', inline: 'nearest'});
  const r = range.getBoundingClientRect();
  return {count, active: active + 1, x: r.left, y: r.top, width: r.width,
          height: r.height};
})";

QString Literal(const QJsonValue& value) {
  return QString::fromUtf8(
             QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact))
      .mid(1)
      .chopped(1);
}

}  // namespace

FindInPage::FindInPage(BrowserImpl* browser)
    : browser_(browser),
      world_(std::make_unique<EngineWorld>(browser,
                                           QStringLiteral("__broviaFind"))) {}

FindInPage::~FindInPage() = default;

void FindInPage::Find(const QString& text,
                      bool forward,
                      bool match_case,
                      bool find_next) {
  if (!browser_->IsValid()) {
    return;
  }
  // CEF numbers searches, not the steps within one.
  if (!find_next || text != text_ || match_case != match_case_ ||
      !identifier_) {
    ++identifier_;
  }
  text_ = text;
  match_case_ = match_case;
  const QString expression =
      QStringLiteral("(%1)(%2, %3, %4, %5)")
          .arg(QLatin1String(kFindScript), Literal(text),
               Literal(match_case), Literal(forward), Literal(find_next));
  CefRefPtr<BrowserImpl> browser(browser_);
  world_->Evaluate(expression, [browser, identifier = identifier_](
                                   const QJsonValue& value, const QString&) {
    if (!browser->IsValid()) {
      return;
    }
    CefRefPtr<CefClient> client = browser->client();
    CefRefPtr<CefFindHandler> handler =
        client ? client->GetFindHandler() : nullptr;
    if (!handler) {
      return;
    }
    const QJsonObject result = value.toObject();
    const auto at = [&](const char* key) {
      return qRound(result.value(QLatin1String(key)).toDouble());
    };
    handler->OnFindResult(browser, identifier, at("count"),
                          CefRect(at("x"), at("y"), at("width"), at("height")),
                          at("active"), true);
  });
}

void FindInPage::Stop(bool clear_selection) {
  text_.clear();
  world_->Evaluate(
      QStringLiteral("window.__find = null; %1")
          .arg(clear_selection ? QLatin1String("getSelection().removeAllRanges();")
                               : QLatin1String("")),
      [](const QJsonValue&, const QString&) {});
}

}  // namespace cefengine
