#include "libcef/browser/engine_world.h"

namespace cefengine {

EngineWorld::EngineWorld(BrowserImpl* browser, QString name)
    : browser_(browser), name_(std::move(name)) {}

void EngineWorld::Evaluate(const QString& expression,
                           ScriptRunner::EvaluateCallback callback) {
  Run(expression, std::move(callback), true);
}

void EngineWorld::Run(const QString& expression,
                      ScriptRunner::EvaluateCallback callback,
                      bool may_retry) {
  // Holding the browser keeps |this|, its member, alive.
  CefRefPtr<BrowserImpl> browser(browser_);
  if (!context_) {
    browser_->SendPageCommand(
        QStringLiteral("Page.createIsolatedWorld"),
        QJsonObject{{"frameId", browser_->target_id()}, {"worldName", name_}},
        [this, browser, expression, callback](const QJsonObject& result,
                                              const QJsonObject& error) {
          const int context =
              result.value(QLatin1String("executionContextId")).toInt();
          if (!error.isEmpty() || !context) {
            callback(QJsonValue(), QStringLiteral("The page has no document"));
            return;
          }
          context_ = context;
          Run(expression, callback, false);
        });
    return;
  }
  browser_->SendPageCommand(
      QStringLiteral("Runtime.evaluate"),
      QJsonObject{{"expression", expression},
                  {"contextId", context_},
                  {"returnByValue", true}},
      [this, browser, expression, callback, may_retry,
       context = context_](const QJsonObject& result,
                           const QJsonObject& error) {
        if (!error.isEmpty()) {
          // The document the world belonged to went: a new one is made.
          if (context_ == context) {
            context_ = 0;
          }
          if (may_retry && browser->IsValid()) {
            Run(expression, callback, false);
          } else {
            callback(QJsonValue(),
                     error.value(QLatin1String("message")).toString());
          }
          return;
        }
        if (result.contains(QLatin1String("exceptionDetails"))) {
          callback(QJsonValue(), QStringLiteral("The script failed"));
          return;
        }
        callback(result.value(QLatin1String("result"))
                     .toObject()
                     .value(QLatin1String("value")),
                 QString());
      });
}

}  // namespace cefengine
