#include "libcef/network/protocol_request.h"

#include <map>
#include <string>

#include <QByteArray>

#include "libcef/network/post_data_impl.h"

namespace cefengine {

namespace {

QString Str(const QJsonObject& object, const char* name) {
  return object.value(QLatin1String(name)).toString();
}

// Header names compare without case; values keep their order per name.
std::multimap<QString, QString> NormalisedHeaders(
    const CefRequest::HeaderMap& headers,
    const QString& referrer) {
  std::multimap<QString, QString> result;
  for (const auto& [name, value] : headers) {
    result.emplace(QString::fromStdString(name.ToString()).toLower(),
                   QString::fromStdString(value.ToString()));
  }
  if (!referrer.isEmpty()) {
    result.emplace(QStringLiteral("referer"), referrer);
  }
  return result;
}

std::multimap<QString, QString> NormalisedHeaders(const QJsonObject& headers) {
  std::multimap<QString, QString> result;
  for (auto it = headers.begin(); it != headers.end(); ++it) {
    result.emplace(it.key().toLower(), it.value().toString());
  }
  return result;
}

// The body the protocol shows, if it shows all of it.
bool ProtocolBody(const QJsonObject& request, QByteArray* body) {
  body->clear();
  if (!request.value(QLatin1String("hasPostData")).toBool()) {
    return true;
  }
  const QJsonArray entries =
      request.value(QLatin1String("postDataEntries")).toArray();
  if (entries.isEmpty()) {
    return false;
  }
  for (const QJsonValue& entry : entries) {
    *body += QByteArray::fromBase64(
        Str(entry.toObject(), "bytes").toLatin1());
  }
  return true;
}

}  // namespace

cef_resource_type_t ResourceTypeFromProtocol(const QString& type,
                                             bool main_frame) {
  // Never destroyed: engine threads may still ask while the process exits.
  static const std::map<QString, cef_resource_type_t>& kTypes = *new std::map<QString, cef_resource_type_t>{
      {"Stylesheet", RT_STYLESHEET},
      {"Image", RT_IMAGE},
      {"Media", RT_MEDIA},
      {"TextTrack", RT_MEDIA},
      {"Font", RT_FONT_RESOURCE},
      {"Script", RT_SCRIPT},
      {"XHR", RT_XHR},
      {"Fetch", RT_XHR},
      {"Prefetch", RT_PREFETCH},
      {"Ping", RT_PING},
      {"CSPViolationReport", RT_CSP_REPORT},
  };
  if (type == QLatin1String("Document")) {
    return main_frame ? RT_MAIN_FRAME : RT_SUB_FRAME;
  }
  auto it = kTypes.find(type);
  return it == kTypes.end() ? RT_SUB_RESOURCE : it->second;
}

cef_referrer_policy_t ReferrerPolicyFromProtocol(const QString& policy) {
  // Never destroyed: engine threads may still ask while the process exits.
  static const std::map<QString, cef_referrer_policy_t>& kPolicies = *new std::map<QString, cef_referrer_policy_t>{
      {"unsafe-url", REFERRER_POLICY_NEVER_CLEAR_REFERRER},
      {"no-referrer-when-downgrade",
       REFERRER_POLICY_CLEAR_REFERRER_ON_TRANSITION_FROM_SECURE_TO_INSECURE},
      {"origin", REFERRER_POLICY_ORIGIN},
      {"origin-when-cross-origin",
       REFERRER_POLICY_ORIGIN_ONLY_ON_TRANSITION_CROSS_ORIGIN},
      {"same-origin", REFERRER_POLICY_CLEAR_REFERRER_ON_TRANSITION_CROSS_ORIGIN},
      {"strict-origin",
       REFERRER_POLICY_ORIGIN_CLEAR_ON_TRANSITION_FROM_SECURE_TO_INSECURE},
      {"strict-origin-when-cross-origin",
       REFERRER_POLICY_REDUCE_REFERRER_GRANULARITY_ON_TRANSITION_CROSS_ORIGIN},
      {"no-referrer", REFERRER_POLICY_NO_REFERRER},
  };
  auto it = kPolicies.find(policy);
  return it == kPolicies.end() ? REFERRER_POLICY_DEFAULT : it->second;
}

CefRefPtr<CefRequestImpl> RequestFromProtocol(const QJsonObject& request) {
  CefRefPtr<CefRequestImpl> result = new CefRequestImpl();
  CefRequest::HeaderMap headers;
  QString referrer;
  const QJsonObject protocol_headers =
      request.value(QLatin1String("headers")).toObject();
  for (auto it = protocol_headers.begin(); it != protocol_headers.end(); ++it) {
    if (it.key().compare(QLatin1String("Referer"), Qt::CaseInsensitive) == 0) {
      referrer = it.value().toString();
    } else {
      headers.emplace(it.key().toStdString(),
                      it.value().toString().toStdString());
    }
  }
  CefRefPtr<CefPostDataImpl> post_data;
  if (request.value(QLatin1String("hasPostData")).toBool()) {
    post_data = new CefPostDataImpl();
    QByteArray body;
    if (ProtocolBody(request, &body)) {
      CefRefPtr<CefPostDataElement> element = CefPostDataElement::Create();
      element->SetToBytes(body.size(), body.constData());
      post_data->AddElement(element);
    } else {
      post_data->SetHasExcludedElements(true);
    }
  }
  result->Set((Str(request, "url") + Str(request, "urlFragment")).toStdString(),
              Str(request, "method").toStdString(), post_data.get(), headers);
  result->SetReferrer(referrer.toStdString(),
                      ReferrerPolicyFromProtocol(Str(request, "referrerPolicy")));
  return result;
}

QJsonArray HeaderEntries(const CefRequest::HeaderMap& headers) {
  QJsonArray entries;
  for (const auto& [name, value] : headers) {
    entries.append(QJsonObject{
        {"name", QString::fromStdString(name.ToString())},
        {"value", QString::fromStdString(value.ToString())}});
  }
  return entries;
}

QJsonObject ContinueParams(const QString& request_id,
                           const QJsonObject& original,
                           CefRefPtr<CefRequestImpl> changed) {
  QJsonObject params{{"requestId", request_id}};
  const QString url = QString::fromStdString(changed->GetURL().ToString());
  if (url != Str(original, "url") + Str(original, "urlFragment")) {
    params.insert(QStringLiteral("url"), url);
  }
  const QString method = QString::fromStdString(changed->GetMethod().ToString());
  if (method != Str(original, "method")) {
    params.insert(QStringLiteral("method"), method);
  }
  CefRequest::HeaderMap headers;
  changed->GetHeaderMap(headers);
  const QString referrer =
      QString::fromStdString(changed->GetReferrerURL().ToString());
  if (NormalisedHeaders(headers, referrer) !=
      NormalisedHeaders(original.value(QLatin1String("headers")).toObject())) {
    QJsonArray entries = HeaderEntries(headers);
    if (!referrer.isEmpty()) {
      entries.append(QJsonObject{{"name", "Referer"}, {"value", referrer}});
    }
    params.insert(QStringLiteral("headers"), entries);
  }
  QByteArray old_body;
  const bool old_known = ProtocolBody(original, &old_body);
  std::string new_body;
  CefRefPtr<CefPostData> post_data = changed->GetPostData();
  auto* ours = dynamic_cast<CefPostDataImpl*>(post_data.get());
  if (post_data && !post_data->HasExcludedElements() && ours &&
      ours->Flatten(&new_body) &&
      (!old_known || QByteArray::fromStdString(new_body) != old_body)) {
    params.insert(QStringLiteral("postData"),
                  QString::fromLatin1(
                      QByteArray::fromStdString(new_body).toBase64()));
  }
  return params;
}

}  // namespace cefengine
