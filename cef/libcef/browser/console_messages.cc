#include "libcef/browser/console_messages.h"

#include <QJsonArray>
#include <QStringList>

#include "include/cef_client.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/frame_impl.h"
#include "libcef/browser/frame_tree.h"
#include "libcef/browser/protocol_fields.h"
#include "libcef/browser/script_contexts.h"

namespace cefengine {

namespace {

// How the console shows one argument.
QString RemoteObjectText(const QJsonObject& object) {
  const QString type = Str(object, "type");
  if (type == QLatin1String("string")) {
    return Str(object, "value");
  }
  if (type == QLatin1String("undefined")) {
    return type;
  }
  if (object.contains(QLatin1String("unserializableValue"))) {
    return Str(object, "unserializableValue");
  }
  if (object.contains(QLatin1String("description"))) {
    return Str(object, "description");
  }
  const QJsonValue value = object.value(QLatin1String("value"));
  if (value.isNull()) {
    return QStringLiteral("null");
  }
  if (value.isBool()) {
    return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
  }
  if (value.isDouble()) {
    return QString::number(value.toDouble(), 'g', 17);
  }
  return type;
}

// console.log's arguments as one line, with the first one's %s, %d, %i,
// %f, %o, %O and %c filled in.
QString ConsoleText(const QJsonArray& args) {
  QStringList parts;
  int next = 0;
  if (!args.isEmpty() && Str(args[0].toObject(), "type") == "string") {
    const QString format = Str(args[0].toObject(), "value");
    QString text;
    next = 1;
    for (int i = 0; i < format.size(); ++i) {
      const QChar c = format[i];
      if (c != '%' || i + 1 == format.size()) {
        text += c;
        continue;
      }
      const QChar conversion = format[i + 1];
      if (conversion == '%') {
        text += '%';
        ++i;
      } else if (QStringLiteral("sdifoOc").contains(conversion) &&
                 next < args.size()) {
        if (conversion != 'c') {
          text += RemoteObjectText(args[next].toObject());
        }
        ++next;
        ++i;
      } else {
        text += c;
      }
    }
    parts << text;
  }
  for (; next < args.size(); ++next) {
    parts << RemoteObjectText(args[next].toObject());
  }
  return parts.join(' ');
}

cef_log_severity_t ConsoleLevel(const QString& type) {
  if (type == QLatin1String("debug") || type == QLatin1String("verbose")) {
    return LOGSEVERITY_DEBUG;
  }
  if (type == QLatin1String("warning")) {
    return LOGSEVERITY_WARNING;
  }
  if (type == QLatin1String("error") || type == QLatin1String("assert")) {
    return LOGSEVERITY_ERROR;
  }
  return LOGSEVERITY_INFO;
}

}  // namespace

ConsoleMessages::ConsoleMessages(BrowserImpl* browser,
                                 const ScriptContexts* contexts)
    : browser_(browser), contexts_(contexts) {}

QString ConsoleMessages::SourceOfContext(int context_id,
                                         const QString& session_id) const {
  const QString frame_id = contexts_->FrameOf(context_id, session_id);
  CefRefPtr<FrameImpl> frame;
  if (!frame_id.isEmpty()) {
    frame = browser_->frames()->Find(frame_id);
  }
  if (!frame) {
    frame = browser_->frames()->Find(browser_->target_id());
  }
  return frame ? QString::fromStdString(frame->GetURL().ToString())
               : QString();
}

void ConsoleMessages::OnConsoleApiCalled(const QJsonObject& params,
                                         const QString& session_id) {
  const QJsonArray frames =
      Obj(params, "stackTrace").value(QLatin1String("callFrames")).toArray();
  const QJsonObject top = frames.isEmpty() ? QJsonObject() : frames[0].toObject();
  QString source = Str(top, "url");
  if (source.isEmpty()) {
    source = SourceOfContext(
        params.value(QLatin1String("executionContextId")).toInt(), session_id);
  }
  const int line =
      frames.isEmpty() ? 0 : top.value(QLatin1String("lineNumber")).toInt() + 1;
  Report(ConsoleLevel(Str(params, "type")),
                ConsoleText(params.value(QLatin1String("args")).toArray()),
                source, line);
}

void ConsoleMessages::OnException(const QJsonObject& params,
                                  const QString& session_id) {
  const QJsonObject details = Obj(params, "exceptionDetails");
  const QJsonObject exception = Obj(details, "exception");
  QString message = Str(details, "text");
  QString what = Str(exception, "description").section('\n', 0, 0);
  if (what.isEmpty() && !exception.isEmpty()) {
    what = RemoteObjectText(exception);
  }
  if (!what.isEmpty()) {
    message += ' ' + what;
  }
  QString source = Str(details, "url");
  if (source.isEmpty()) {
    const QJsonArray frames = Obj(details, "stackTrace")
                                  .value(QLatin1String("callFrames"))
                                  .toArray();
    if (!frames.isEmpty()) {
      source = Str(frames.first().toObject(), "url");
    }
  }
  if (source.isEmpty()) {
    source = SourceOfContext(
        details.value(QLatin1String("executionContextId")).toInt(), session_id);
  }
  Report(LOGSEVERITY_ERROR, message.trimmed(), source,
                details.value(QLatin1String("lineNumber")).toInt() + 1);
}

void ConsoleMessages::OnLogEntry(const QJsonObject& params) {
  const QJsonObject entry = Obj(params, "entry");
  const QJsonValue line = entry.value(QLatin1String("lineNumber"));
  Report(ConsoleLevel(Str(entry, "level")), Str(entry, "text"),
                Str(entry, "url"), line.isUndefined() ? 0 : line.toInt() + 1);
}

void ConsoleMessages::Report(cef_log_severity_t level,
                             const QString& message,
                             const QString& source,
                             int line) {
  CefRefPtr<CefClient> client = browser_->client();
  if (CefRefPtr<CefDisplayHandler> display =
          client ? client->GetDisplayHandler() : nullptr) {
    display->OnConsoleMessage(browser_, level, Cef(message), Cef(source), line);
  }
}

}  // namespace cefengine
