// One request Chromium paused (Fetch.requestPaused), decided on the engine
// IO thread as CEF decides: the client's resource request handler
// (GetResourceRequestHandler, then OnBeforeResourceLoad and
// GetResourceHandler), else a scheme handler factory, else the network.

#ifndef CEF_LIBCEF_NETWORK_RESOURCE_REQUEST_JOB_H_
#define CEF_LIBCEF_NETWORK_RESOURCE_REQUEST_JOB_H_

#include <cstdint>
#include <memory>

#include <QJsonObject>
#include <QString>

#include "include/cef_frame.h"
#include "include/cef_resource_request_handler.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/request_context_impl.h"
#include "libcef/network/request_impl.h"
#include "libcef/network/resource_handler_runner.h"

namespace cefengine {

struct PausedRequest {
  CefRefPtr<BrowserImpl> browser;
  CefRefPtr<CefFrame> frame;
  CefRefPtr<RequestContextImpl> request_context;
  QString fetch_id;             // Fetch's requestId
  QJsonObject network_request;  // Network.Request as Chromium paused it
  cef_resource_type_t resource_type = RT_SUB_RESOURCE;
  cef_transition_type_t transition_type = TT_EXPLICIT;
  uint64_t identifier = 0;
  bool is_navigation = false;
  // The origin of the document that asks.
  QString initiator;
  // A page's fetch() or XMLHttpRequest to a custom scheme, paused at its
  // stand-in address (see SchemeProxy); network_request has the original
  // URL. Never goes to the network.
  bool proxied = false;
};

class ResourceRequestJob
    : public std::enable_shared_from_this<ResourceRequestJob> {
 public:
  // Decides |paused| and answers Chromium with Fetch.continueRequest,
  // fulfillRequest or failRequest. Any thread; the work runs on the engine
  // IO thread.
  static void Start(PausedRequest paused);

  explicit ResourceRequestJob(PausedRequest paused);

 private:
  // Engine IO thread from here on.
  void AskHandlers();
  void OnBeforeLoadDecided(bool proceed);
  void ChooseResponder();
  void OnServed(ServedResponse response);
  void AllowCrossOrigin(CefResponse::HeaderMap& headers) const;
  void Continue();
  void Fail(cef_errorcode_t error);
  bool IsCustomScheme() const;

  const PausedRequest paused_;
  CefRefPtr<CefRequestImpl> request_;
  CefRefPtr<CefResourceRequestHandler> handler_;
  bool disable_default_handling_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_RESOURCE_REQUEST_JOB_H_
