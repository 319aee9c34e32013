#include "render_side/render_side_agent.h"

#include <cmath>
#include <limits>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "host/view_support/process_messages/cef_client_message.h"
#include "host/view_support/process_messages/cef_client_result_message.h"
#include "host/view_support/process_messages/focused_node_changed_message.h"
#include "host/view_support/process_messages/repaint_sync_message.h"
#include "host/view_support/process_messages/repaint_sync_result_message.h"
#include "host/view_support/process_messages/run_java_script_message.h"
#include "host/view_support/process_messages/run_java_script_result_message.h"
#include "include/base/cef_logging.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

// Every browser gets one.
[[maybe_unused]] const bool kRegistered = [] {
  SetRenderSideFactory([](BrowserImpl*) -> std::unique_ptr<RenderSide> {
    return std::make_unique<RenderSideAgent>();
  });
  return true;
}();

// A world of its own: the page's scripts neither see nor break the watcher.
constexpr char kWorld[] = "__broviaRenderSide";
constexpr char kFocusBinding[] = "__broviaFocus";

// The page's way to the host: cefclient(method, ...args) sends the arguments as
// they are and resolves with the host's answer, for the methods that give one.
constexpr char kCallBinding[] = "__broviaCefClient";

}  // namespace

void RenderSideAgent::OnAttached(BrowserImpl* browser) {
  Install(browser, QString());
}

void RenderSideAgent::OnFrameSessionAttached(BrowserImpl* browser,
                                             const QString& session_id) {
  Install(browser, session_id);
}

void RenderSideAgent::Install(BrowserImpl* browser, const QString& session_id) {
  browser->SendSessionCommand(session_id, QStringLiteral("Runtime.addBinding"),
                              {{"name", kFocusBinding},
                               {"executionContextName", kWorld}});
  browser->SendSessionCommand(
      session_id, QStringLiteral("Page.addScriptToEvaluateOnNewDocument"),
      {{"source", ScriptSource("focus_watcher.js")
                      .replace(QLatin1String("__BINDING__"),
                               QLatin1String(kFocusBinding))},
       {"worldName", kWorld},
       {"runImmediately", true}});
  browser->SendSessionCommand(session_id, QStringLiteral("Runtime.addBinding"),
                              {{"name", kCallBinding}});
  browser->SendSessionCommand(
      session_id, QStringLiteral("Page.addScriptToEvaluateOnNewDocument"),
      {{"source", ScriptSource("cefclient_api.js")
                      .replace(QLatin1String("__BINDING__"),
                               QLatin1String(kCallBinding))},
       {"runImmediately", true}});
}

bool RenderSideAgent::OnPageEvent(BrowserImpl* browser,
                                  const QString& method,
                                  const QJsonObject& params) {
  if (method != QLatin1String("Runtime.bindingCalled")) {
    return false;
  }
  const QString name = params.value(QLatin1String("name")).toString();
  if (name == QLatin1String(kFocusBinding)) {
    ReportFocus(browser,
                params.value(QLatin1String("payload")).toString() ==
                    QLatin1String("1"));
    return true;
  }
  if (name == QLatin1String(kCallBinding)) {
    ForwardCall(browser, params);
    return true;
  }
  return false;
}

void RenderSideAgent::OnProcessMessage(BrowserImpl* browser,
                                       CefRefPtr<CefFrame> frame,
                                       CefRefPtr<CefProcessMessage> message) {
  const std::string name = message->GetName().ToString();
  if (name == brovia::RunJavaScriptMessage::kName) {
    RunJavaScript(browser, frame, message);
  } else if (name == brovia::RepaintSyncMessage::kName) {
    RepaintSync(browser, frame, message);
  } else if (name == brovia::CefClientResultMessage::kName) {
    AnswerCall(browser, message);
  }
}

void RenderSideAgent::RunJavaScript(BrowserImpl* browser,
                                    CefRefPtr<CefFrame> frame,
                                    CefRefPtr<CefProcessMessage> message) {
  CefRefPtr<brovia::RunJavaScriptMessage> request =
      new brovia::RunJavaScriptMessage();
  if (!request->fromProcessMessage(message)) {
    LOG(WARNING) << "Render side: a malformed script request is dropped";
    return;
  }
  CefRefPtr<BrowserImpl> keep(browser);
  const int64_t reply_to = request->requestId;
  // Every request gets exactly one answer, also when the script throws or the
  // page is gone: the host may be waiting for it. No user gesture, as in a
  // real render process: a host's script is no click, and giving it one costs
  // Chromium a tenth of a millisecond per call.
  browser->SendPageCommand(
      QStringLiteral("Runtime.evaluate"),
      {{"expression", QString::fromStdString(request->script.ToString())},
       {"returnByValue", true}},
      [keep, frame, reply_to](const QJsonObject& result,
                              const QJsonObject& error) {
        CefRefPtr<brovia::RunJavaScriptResultMessage> answer =
            new brovia::RunJavaScriptResultMessage();
        answer->replyTo = reply_to;
        const QJsonObject remote =
            result.value(QLatin1String("result")).toObject();
        if (error.isEmpty() &&
            !result.contains(QLatin1String("exceptionDetails"))) {
          answer->result =
              ToCefValue(remote.value(QLatin1String("value")));
        } else {
          answer->result = ToCefValue(QJsonValue::Null);
        }
        answer->send(keep.get(), frame);
      });
}

void RenderSideAgent::RepaintSync(BrowserImpl* browser,
                                  CefRefPtr<CefFrame> frame,
                                  CefRefPtr<CefProcessMessage> message) {
  CefRefPtr<brovia::RepaintSyncMessage> request =
      new brovia::RepaintSyncMessage();
  if (!request->fromProcessMessage(message)) {
    return;
  }
  // Answered once the page's work before the request is in a composited
  // frame: two animation frames later.
  CefRefPtr<BrowserImpl> keep(browser);
  browser->SendPageCommand(
      QStringLiteral("Runtime.evaluate"),
      {{"expression", ScriptSource("repaint_sync.js")},
       {"awaitPromise", true}},
      [keep, frame](const QJsonObject&, const QJsonObject&) {
        CefRefPtr<brovia::RepaintSyncResultMessage> answer =
            new brovia::RepaintSyncResultMessage();
        answer->send(keep.get(), frame);
      });
}

void RenderSideAgent::ReportFocus(BrowserImpl* browser, bool editable) {
  CefRefPtr<CefFrame> frame = browser->GetMainFrame();
  CefRefPtr<brovia::FocusedNodeChangedMessage> notice =
      new brovia::FocusedNodeChangedMessage();
  notice->editable = editable;
  notice->send(browser, frame);
}

void RenderSideAgent::ForwardCall(BrowserImpl* browser,
                                  const QJsonObject& params) {
  // A page may call the binding with anything; what does not parse is
  // dropped.
  const QJsonObject call =
      QJsonDocument::fromJson(
          params.value(QLatin1String("payload")).toString().toUtf8())
          .object();
  if (!call.value(QLatin1String("method")).isString()) {
    LOG(WARNING) << "Render side: a malformed host call of the page is dropped";
    return;
  }
  // The page's number comes back to it as it was; one out of range is not
  // converted, and its answer finds no call.
  const double raw_id = call.value(QLatin1String("id")).toDouble();
  const int64_t page_id = std::fabs(raw_id) < 9.0e15
                              ? static_cast<int64_t>(raw_id)
                              : int64_t{0};
  CefRefPtr<brovia::CefClientMessage> message = new brovia::CefClientMessage();
  message->method =
      call.value(QLatin1String("method")).toString().toStdString();
  CefRefPtr<CefValue> args =
      ToCefValue(call.value(QLatin1String("args")).toArray());
  message->args = args->GetList();
  // The engine's own number: the page's counts restart with each document.
  message->callId = next_call_++;
  pending_calls_[message->callId] = PendingCall{
      browser->event_session(),
      params.value(QLatin1String("executionContextId")).toInt(), page_id};
  message->send(browser, browser->GetMainFrame());
}

void RenderSideAgent::AnswerCall(BrowserImpl* browser,
                                 CefRefPtr<CefProcessMessage> message) {
  CefRefPtr<brovia::CefClientResultMessage> answer =
      new brovia::CefClientResultMessage();
  if (!answer->fromProcessMessage(message)) {
    return;
  }
  auto pending = pending_calls_.find(answer->callId);
  if (pending == pending_calls_.end()) {
    return;
  }
  const PendingCall call = pending->second;
  pending_calls_.erase(pending);
  const QJsonArray value{ToJson(answer->result)};
  const QString expression =
      QStringLiteral("(%1)(%2, %3)")
          .arg(ScriptSource("cefclient_answer.js")
                   .replace(QLatin1String("__BINDING__"),
                            QLatin1String(kCallBinding)),
               QString::number(call.page_id),
               QString::fromUtf8(
                   QJsonDocument(value).toJson(QJsonDocument::Compact)));
  // A context that went with its document fails the command, harmlessly.
  browser->SendSessionCommand(call.session_id,
                              QStringLiteral("Runtime.evaluate"),
                              {{"expression", expression},
                               {"contextId", call.context}});
}

QJsonValue RenderSideAgent::ToJson(CefRefPtr<CefValue> value) {
  if (!value) {
    return QJsonValue::Null;
  }
  switch (value->GetType()) {
    case VTYPE_BOOL:
      return value->GetBool();
    case VTYPE_INT:
      return value->GetInt();
    case VTYPE_DOUBLE:
      return value->GetDouble();
    case VTYPE_STRING:
      return QString::fromStdString(value->GetString().ToString());
    case VTYPE_LIST: {
      QJsonArray array;
      CefRefPtr<CefListValue> list = value->GetList();
      for (size_t i = 0; i < list->GetSize(); ++i) {
        array.append(ToJson(list->GetValue(i)));
      }
      return array;
    }
    case VTYPE_DICTIONARY: {
      QJsonObject object;
      CefRefPtr<CefDictionaryValue> dictionary = value->GetDictionary();
      CefDictionaryValue::KeyList keys;
      dictionary->GetKeys(keys);
      for (const CefString& key : keys) {
        object.insert(QString::fromStdString(key.ToString()),
                      ToJson(dictionary->GetValue(key)));
      }
      return object;
    }
    default:
      return QJsonValue::Null;
  }
}

CefRefPtr<CefValue> RenderSideAgent::ToCefValue(const QJsonValue& value) {
  CefRefPtr<CefValue> out = CefValue::Create();
  switch (value.type()) {
    case QJsonValue::Bool:
      out->SetBool(value.toBool());
      break;
    case QJsonValue::Double: {
      const double number = value.toDouble();
      if (std::trunc(number) == number &&
          number >= std::numeric_limits<int>::min() &&
          number <= std::numeric_limits<int>::max()) {
        out->SetInt(static_cast<int>(number));
      } else {
        out->SetDouble(number);
      }
      break;
    }
    case QJsonValue::String:
      out->SetString(value.toString().toStdString());
      break;
    case QJsonValue::Array: {
      CefRefPtr<CefListValue> list = CefListValue::Create();
      const QJsonArray array = value.toArray();
      for (int i = 0; i < array.size(); ++i) {
        list->SetValue(static_cast<size_t>(i), ToCefValue(array.at(i)));
      }
      out->SetList(list);
      break;
    }
    case QJsonValue::Object: {
      CefRefPtr<CefDictionaryValue> dictionary = CefDictionaryValue::Create();
      const QJsonObject object = value.toObject();
      for (auto it = object.begin(); it != object.end(); ++it) {
        dictionary->SetValue(it.key().toStdString(), ToCefValue(it.value()));
      }
      out->SetDictionary(dictionary);
      break;
    }
    case QJsonValue::Null:
    case QJsonValue::Undefined:
      out->SetNull();
      break;
  }
  return out;
}

}  // namespace cefengine
