#include "libcef/browser/find_in_page.h"

#include <QJsonDocument>

#include "include/cef_client.h"
#include "libcef/browser/engine_world.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

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
          .arg(ScriptSource("find_in_page.js"), Literal(text),
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
      QStringLiteral("(%1)(%2)")
          .arg(ScriptSource("find_stop.js"), Literal(clear_selection)),
      [](const QJsonValue&, const QString&) {});
}

}  // namespace cefengine
