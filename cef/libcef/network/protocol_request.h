// Requests as the protocol's Fetch domain shows them, and back.

#ifndef CEF_LIBCEF_NETWORK_PROTOCOL_REQUEST_H_
#define CEF_LIBCEF_NETWORK_PROTOCOL_REQUEST_H_

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include "include/cef_request.h"
#include "libcef/network/request_impl.h"

namespace cefengine {

// Fetch.requestPaused's resourceType ("Image", "Document", ...).
cef_resource_type_t ResourceTypeFromProtocol(const QString& type,
                                             bool main_frame);
// Network.Request's referrerPolicy ("strict-origin-when-cross-origin", ...).
cef_referrer_policy_t ReferrerPolicyFromProtocol(const QString& policy);

// A writable request from a Network.Request object: address (with its
// fragment), method, headers (the Referer header becomes the referrer) and
// body. A body the protocol left out counts as excluded elements.
CefRefPtr<CefRequestImpl> RequestFromProtocol(const QJsonObject& request);

// Fetch.continueRequest's parameters for |request_id|, with what |changed|
// alters of |original| (a Network.Request): address, method, headers,
// body. A body with a file part cannot be sent and stays as it was.
QJsonObject ContinueParams(const QString& request_id,
                           const QJsonObject& original,
                           CefRefPtr<CefRequestImpl> changed);

// Header entries [{name, value}] as Fetch wants them.
QJsonArray HeaderEntries(const CefRequest::HeaderMap& headers);

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_PROTOCOL_REQUEST_H_
