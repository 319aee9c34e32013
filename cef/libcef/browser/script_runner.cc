#include "libcef/browser/script_runner.h"

#include <algorithm>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/engine_world.h"
#include "libcef/browser/page_events.h"
#include "libcef/browser/ui_task.h"
#include "libcef/page_scripts.h"

namespace cefengine {

ScriptRunner::ScriptRunner(BrowserImpl* browser) : browser_(browser) {}

ScriptRunner::~ScriptRunner() = default;

void ScriptRunner::Evaluate(const QString& frame_id,
                            const QString& expression,
                            EvaluateCallback callback) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, frame_id, expression, callback] {
    QJsonObject params{{"expression", expression}, {"returnByValue", true}};
    if (!frame_id.isEmpty() && frame_id != self->target_id()) {
      const int context = self->page_events()->ContextFor(frame_id);
      if (!context) {
        if (callback) {
          callback(QJsonValue(), QStringLiteral("The frame has no document"));
        }
        return;
      }
      params.insert(QStringLiteral("contextId"), context);
    }
    self->SendSessionCommand(
        self->SessionForFrame(frame_id), QStringLiteral("Runtime.evaluate"),
        params,
        [callback](const QJsonObject& result, const QJsonObject& error) {
          if (!callback) {
            return;
          }
          if (!error.isEmpty()) {
            callback(QJsonValue(),
                     error.value(QLatin1String("message")).toString());
          } else if (result.contains(QLatin1String("exceptionDetails"))) {
            callback(QJsonValue(), result.value(QLatin1String("exceptionDetails"))
                                       .toObject()
                                       .value(QLatin1String("text"))
                                       .toString());
          } else {
            callback(result.value(QLatin1String("result"))
                         .toObject()
                         .value(QLatin1String("value")),
                     QString());
          }
        });
  });
}

void ScriptRunner::ExecuteJavaScript(const QString& frame_id,
                                     const QString& code,
                                     const QString& script_url,
                                     int start_line) {
  // Blank lines in front make error line numbers count from |start_line|.
  QString expression =
      QString(std::clamp(start_line - 1, 0, 100000), QChar('\n')) + code;
  if (!script_url.isEmpty()) {
    expression += QStringLiteral("\n//# sourceURL=") + script_url;
  }
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, frame_id, expression] {
    QJsonObject params{{"expression", expression}, {"returnByValue", false}};
    if (!frame_id.isEmpty() && frame_id != self->target_id()) {
      const int context = self->page_events()->ContextFor(frame_id);
      if (!context) {
        return;
      }
      params.insert(QStringLiteral("contextId"), context);
    }
    self->SendSessionCommand(
        self->SessionForFrame(frame_id), QStringLiteral("Runtime.evaluate"),
        params, [self](const QJsonObject& result, const QJsonObject& error) {
          // Like an inline script: an uncaught exception is a console error.
          if (self->IsValid() &&
              result.contains(QLatin1String("exceptionDetails"))) {
            self->page_events()->Push(
                QStringLiteral("Runtime.exceptionThrown"),
                QJsonObject{{"exceptionDetails",
                             result.value(QLatin1String("exceptionDetails"))}});
          }
        });
  });
}

void ScriptRunner::StartDownload(const QString& url) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, this, url] {
    if (!self->IsValid()) {
      return;
    }
    if (!download_world_) {
      download_world_ = std::make_unique<EngineWorld>(
          self.get(), QStringLiteral("__broviaDownload"));
    }
    const QString quoted = QString::fromUtf8(
        QJsonDocument(QJsonArray{url}).toJson(QJsonDocument::Compact));
    download_world_->Evaluate(
        QStringLiteral("(%1)(%2)").arg(ScriptSource("start_download.js"), quoted),
        [url](const QJsonValue&, const QString& error) {
          if (!error.isEmpty()) {
            LOG(WARNING) << "CefBrowserHost::StartDownload(" << url.toStdString()
                         << "): " << error.toStdString();
          }
        });
  });
}

}  // namespace cefengine
