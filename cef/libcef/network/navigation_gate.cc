#include "libcef/network/navigation_gate.h"

#include <utility>

#include "include/cef_client.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/frame_impl.h"
#include "libcef/browser/net_error.h"
#include "libcef/browser/page_navigation.h"
#include "libcef/browser/request_context_impl.h"
#include "libcef/context.h"
#include "libcef/devtools/devtools_session.h"
#include "libcef/network/protocol_request.h"
#include "libcef/network/resource_request_job.h"
#include "libcef/network/scheme_proxy.h"
#include "libcef/network/url_schemes.h"

namespace cefengine {

namespace {

// Every browser goes through a gate.
[[maybe_unused]] const bool kRegistered = [] {
  SetNavigationPolicyFactory(
      [](BrowserImpl*) -> std::unique_ptr<NavigationPolicy> {
        return std::make_unique<NavigationGate>();
      });
  return true;
}();

QString Str(const QJsonObject& object, const char* name) {
  return object.value(QLatin1String(name)).toString();
}

QString UrlOf(const QJsonObject& network_request) {
  return Str(network_request, "url") + Str(network_request, "urlFragment");
}

bool IsUserAction(const QString& reason) {
  return reason == QLatin1String("anchorClick") ||
         reason.startsWith(QLatin1String("formSubmission"));
}

// How CEF would name the navigation; |reason| is the page's
// (ClientNavigationReason), empty when the engine started it.
cef_transition_type_t TransitionFor(bool main_frame,
                                    const QString& reason,
                                    bool is_redirect) {
  int transition = TT_LINK;
  if (!main_frame) {
    transition = IsUserAction(reason) ? TT_MANUAL_SUBFRAME : TT_AUTO_SUBFRAME;
  } else if (reason.isEmpty()) {
    transition = TT_EXPLICIT;
  } else if (reason.startsWith(QLatin1String("formSubmission"))) {
    transition = TT_FORM_SUBMIT;
  } else if (reason == QLatin1String("reload")) {
    transition = TT_RELOAD;
  } else if (reason.endsWith(QLatin1String("Refresh"))) {
    transition = TT_LINK | TT_CLIENT_REDIRECT_FLAG;
  }
  if (is_redirect) {
    transition |= TT_SERVER_REDIRECT_FLAG;
  }
  return static_cast<cef_transition_type_t>(transition);
}

}  // namespace

void NavigationGate::OnAttached(BrowserImpl* browser) {
  certificates_ = std::make_unique<CertificateErrorHandler>(browser, overrides_);
  if (!browser->devtools()) {
    return;
  }
  Intercept(browser, browser->session_id());
  certificates_->Enable();
}

void NavigationGate::OnFrameSessionAttached(BrowserImpl* browser,
                                            const QString& session_id) {
  Intercept(browser, session_id);
}

void NavigationGate::Intercept(BrowserImpl* browser,
                               const QString& session_id) {
  DevToolsSession* session = browser->devtools();
  if (!session) {
    return;
  }
  // Sent before the page runs, so that its first navigation is paused too.
  // Every request, not only documents: once Fetch is on at all Chromium
  // routes each request through its interceptor, and pausing the rest as
  // well adds little to a page load, while any client (a resource request
  // handler, a scheme factory registered later) may want them.
  session->sendCommand(
      QStringLiteral("Fetch.enable"),
      QJsonObject{{"patterns",
                   QJsonArray{QJsonObject{{"urlPattern", "*"},
                                          {"requestStage", "Request"}}}}},
      session_id, {});
  const QString proxy =
      SchemeProxy::PageScript(Context::Get()->custom_schemes());
  if (!proxy.isEmpty()) {
    session->sendCommand(
        QStringLiteral("Page.addScriptToEvaluateOnNewDocument"),
        QJsonObject{{"source", proxy}, {"runImmediately", true}}, session_id,
        {});
  }
}

bool NavigationGate::OnPageEvent(BrowserImpl* browser,
                                 const QString& method,
                                 const QJsonObject& params) {
  if (method == QLatin1String("Fetch.requestPaused")) {
    OnRequestPaused(browser, params);
    return true;
  }
  if (method == QLatin1String("Security.certificateError")) {
    certificates_->OnCertificateError(params, LoaderFor(Str(params, "requestURL")));
    return true;
  }
  if (method == QLatin1String("Network.requestWillBeSent")) {
    if (Str(params, "type") == QLatin1String("Document")) {
      Document& document = documents_[Str(params, "requestId")];
      document.url = UrlOf(params.value(QLatin1String("request")).toObject());
      if (!params.contains(QLatin1String("redirectResponse"))) {
        document.user_gesture =
            params.value(QLatin1String("hasUserGesture")).toBool();
      }
    }
  } else if (method == QLatin1String("Network.loadingFinished") ||
             method == QLatin1String("Network.loadingFailed")) {
    documents_.erase(Str(params, "requestId"));
  } else if (method == QLatin1String("Page.frameRequestedNavigation")) {
    OnFrameRequestedNavigation(browser, params);
  } else if (method == QLatin1String("Page.frameStartedNavigating")) {
    OnFrameStartedNavigating(browser, params);
  } else if (method == QLatin1String("Page.frameAttached")) {
    parents_[Str(params, "frameId")] = Str(params, "parentFrameId");
  } else if (method == QLatin1String("Page.frameDetached") &&
             Str(params, "reason") != QLatin1String("swap")) {
    requests_.erase(Str(params, "frameId"));
    parents_.erase(Str(params, "frameId"));
  }
  return false;
}

bool NavigationGate::OnNavigate(BrowserImpl* browser,
                                const QString& frame_id,
                                const QString& url) {
  const QString scheme = SchemeOf(url);
  // Fetch pauses these; an address without a scheme fails in Chromium.
  if (scheme.isEmpty() || IsPausableDocumentScheme(scheme) ||
      scheme == QLatin1String("javascript")) {
    return false;
  }
  const QString frame = frame_id.isEmpty() ? browser->target_id() : frame_id;
  if (JudgeUnpausable(browser, frame, url, QString(), false) !=
      Verdict::kProceed) {
    return true;
  }
  requests_[frame] = Request{url, QString(), true, false};
  return false;
}

QString NavigationGate::OnLoadFailed(BrowserImpl* browser,
                                     const QString& loader_id,
                                     const QString& error_text) {
  QString replacement;
  return overrides_->Take(loader_id, &replacement) ? replacement : error_text;
}

void NavigationGate::OnRequestPaused(BrowserImpl* browser,
                                     const QJsonObject& params) {
  const QString type = Str(params, "resourceType");
  if (type == QLatin1String("Document")) {
    OnDocumentPaused(browser, params);
    return;
  }
  QJsonObject network_request =
      params.value(QLatin1String("request")).toObject();
  const QString original = SchemeProxy::Unwrap(UrlOf(network_request));
  if (!original.isEmpty()) {
    if (IsPreflight(network_request)) {
      AnswerPreflight(browser, Str(params, "requestId"), network_request);
      return;
    }
    network_request.insert(QStringLiteral("url"), original);
  } else if (type == QLatin1String("Preflight") ||
             IsPreflight(network_request)) {
    // CORS preflights are the network stack's own business, unseen in CEF.
    browser->SendPageCommand(
        QStringLiteral("Fetch.continueRequest"),
        QJsonObject{{"requestId", Str(params, "requestId")}});
    return;
  }
  const QString frame_id = Str(params, "frameId");
  CefRefPtr<CefFrame> frame = FrameFor(browser, frame_id);
  PausedRequest paused;
  paused.proxied = !original.isEmpty();
  paused.browser = browser;
  paused.frame = frame;
  paused.request_context = browser->request_context();
  paused.fetch_id = Str(params, "requestId");
  paused.network_request = network_request;
  paused.resource_type =
      ResourceTypeFromProtocol(type, frame_id == browser->target_id());
  paused.identifier = CefRequestImpl::NextIdentifier();
  paused.initiator =
      frame ? OriginOf(QString::fromStdString(frame->GetURL().ToString()))
            : QString();
  ResourceRequestJob::Start(std::move(paused));
}

namespace {

// The value of header |name| of a Network.Request, empty when absent.
QString HeaderOf(const QJsonObject& network_request, const char* name) {
  const QJsonObject headers =
      network_request.value(QLatin1String("headers")).toObject();
  for (auto it = headers.begin(); it != headers.end(); ++it) {
    if (it.key().compare(QLatin1String(name), Qt::CaseInsensitive) == 0) {
      return it.value().toString();
    }
  }
  return QString();
}

}  // namespace

bool NavigationGate::IsPreflight(const QJsonObject& network_request) {
  // Chromium pauses a page's preflight with the type of the request it
  // precedes.
  return Str(network_request, "method") == QLatin1String("OPTIONS") &&
         !HeaderOf(network_request, "Access-Control-Request-Method").isEmpty();
}

void NavigationGate::AnswerPreflight(BrowserImpl* browser,
                                     const QString& fetch_id,
                                     const QJsonObject& network_request) {
  browser->SendPageCommand(
      QStringLiteral("Fetch.fulfillRequest"),
      QJsonObject{
          {"requestId", fetch_id},
          {"responseCode", 204},
          {"responseHeaders",
           SchemeProxy::PreflightHeaders(
               HeaderOf(network_request, "Origin"),
               HeaderOf(network_request, "Access-Control-Request-Headers"))}});
}

void NavigationGate::OnDocumentPaused(BrowserImpl* browser,
                                      const QJsonObject& params) {
  const QString fetch_id = Str(params, "requestId");
  const QString loader_id = Str(params, "networkId");
  const QString frame_id = Str(params, "frameId");
  const QJsonObject network_request =
      params.value(QLatin1String("request")).toObject();
  const QString url = UrlOf(network_request);
  const bool main_frame = frame_id == browser->target_id();

  Document& document = documents_[loader_id];
  const bool is_redirect = document.paused ||
                           params.contains(QLatin1String("redirectedRequestId"));
  if (!document.paused) {
    auto asked = requests_.find(frame_id);
    if (asked != requests_.end() && !asked->second.decided &&
        asked->second.url == url) {
      document.reason = asked->second.reason;
      requests_.erase(asked);
    }
  }
  document.paused = true;

  const cef_transition_type_t transition =
      TransitionFor(main_frame, document.reason, is_redirect);
  const uint64_t identifier = CefRequestImpl::NextIdentifier();
  CefRefPtr<CefRequestImpl> request = RequestFromProtocol(network_request);
  request->SetEngineDetails(main_frame ? RT_MAIN_FRAME : RT_SUB_FRAME,
                            transition, identifier);
  request->SetReadOnly(true);
  CefRefPtr<CefFrame> frame = FrameFor(browser, frame_id);
  if (Browse(browser, frame, request, document.user_gesture, is_redirect)) {
    browser->SendPageCommand(
        QStringLiteral("Fetch.failRequest"),
        QJsonObject{{"requestId", fetch_id}, {"errorReason", "Aborted"}});
    ReportLoadError(browser, frame, url, "ERR_ABORTED");
    overrides_->Set(loader_id, QString());
    return;
  }
  PausedRequest paused;
  paused.browser = browser;
  paused.frame = frame;
  paused.request_context = browser->request_context();
  paused.fetch_id = fetch_id;
  paused.network_request = network_request;
  paused.resource_type = main_frame ? RT_MAIN_FRAME : RT_SUB_FRAME;
  paused.transition_type = transition;
  paused.identifier = identifier;
  paused.is_navigation = true;
  // The engine's own navigations have no initiator.
  if (!document.reason.isEmpty() && frame) {
    paused.initiator = OriginOf(QString::fromStdString(frame->GetURL().ToString()));
  }
  ResourceRequestJob::Start(std::move(paused));
}

void NavigationGate::OnFrameRequestedNavigation(BrowserImpl* browser,
                                                const QJsonObject& params) {
  const QString frame_id = Str(params, "frameId");
  const QString url = Str(params, "url");
  const QString reason = Str(params, "reason");
  const QString disposition = Str(params, "disposition");
  if (disposition == QLatin1String("download")) {
    return;
  }
  if (disposition != QLatin1String("currentTab")) {
    // Ctrl, shift or middle click: CEF asks first, and by default opens the
    // address in the browser's own main frame.
    CefRefPtr<CefClient> client = browser->client();
    CefRefPtr<CefRequestHandler> handler =
        client ? client->GetRequestHandler() : nullptr;
    const cef_window_open_disposition_t target =
        disposition == QLatin1String("newWindow") ? CEF_WOD_NEW_WINDOW
                                                  : CEF_WOD_NEW_BACKGROUND_TAB;
    if (!handler ||
        !handler->OnOpenURLFromTab(browser, FrameFor(browser, frame_id),
                                   url.toStdString(), target, true)) {
      browser->navigation()->Navigate(QString(), url.toStdString());
    }
    return;
  }
  const QString scheme = SchemeOf(url);
  // A frame's initial empty document is no navigation for CEF.
  if (scheme == QLatin1String("javascript") ||
      (reason == QLatin1String("initialFrameNavigation") &&
       url == QLatin1String("about:blank"))) {
    return;
  }
  Request request{url, reason};
  if (!IsPausableDocumentScheme(scheme)) {
    request.decided = true;
    request.reported =
        DecideUnderWay(browser, frame_id, url, reason, IsUserAction(reason));
  }
  requests_[frame_id] = request;
}

void NavigationGate::OnFrameStartedNavigating(BrowserImpl* browser,
                                              const QJsonObject& params) {
  const QString type = Str(params, "navigationType");
  if (type == QLatin1String("sameDocument") ||
      type == QLatin1String("historySameDocument")) {
    return;
  }
  const QString frame_id = Str(params, "frameId");
  const QString url = Str(params, "url");
  const QString loader_id = Str(params, "loaderId");
  auto asked = requests_.find(frame_id);
  if (asked != requests_.end() && asked->second.decided &&
      asked->second.url == url) {
    if (asked->second.reported) {
      overrides_->Set(loader_id, QString());
    }
    requests_.erase(asked);
    return;
  }
  if (IsPausableDocumentScheme(SchemeOf(url))) {
    return;
  }
  if (DecideUnderWay(browser, frame_id, url, QString(), false)) {
    overrides_->Set(loader_id, QString());
  }
}

NavigationGate::Verdict NavigationGate::JudgeUnpausable(
    BrowserImpl* browser,
    const QString& frame_id,
    const QString& url,
    const QString& reason,
    bool user_gesture) {
  const bool main_frame = frame_id == browser->target_id();
  CefRefPtr<CefRequestImpl> request = new CefRequestImpl();
  request->Set(url.toStdString(), "GET", nullptr, {});
  request->SetEngineDetails(main_frame ? RT_MAIN_FRAME : RT_SUB_FRAME,
                            TransitionFor(main_frame, reason, false),
                            CefRequestImpl::NextIdentifier());
  request->SetReadOnly(true);
  CefRefPtr<CefFrame> frame = FrameFor(browser, frame_id);
  if (Browse(browser, frame, request, user_gesture, false)) {
    ReportLoadError(browser, frame, url, "ERR_ABORTED");
    return Verdict::kCancelled;
  }
  if (!IsBuiltInScheme(SchemeOf(url))) {
    // Nothing in Chromium serves the scheme: the load fails as in CEF.
    ReportLoadError(browser, frame, url, "ERR_UNKNOWN_URL_SCHEME");
    return Verdict::kUnknownScheme;
  }
  return Verdict::kProceed;
}

bool NavigationGate::DecideUnderWay(BrowserImpl* browser,
                                    const QString& frame_id,
                                    const QString& url,
                                    const QString& reason,
                                    bool user_gesture) {
  const Verdict verdict =
      JudgeUnpausable(browser, frame_id, url, reason, user_gesture);
  if (verdict == Verdict::kCancelled && IsBuiltInScheme(SchemeOf(url))) {
    browser->SendPageCommand(QStringLiteral("Page.stopLoading"), {});
  }
  return verdict != Verdict::kProceed;
}

bool NavigationGate::Browse(BrowserImpl* browser,
                            CefRefPtr<CefFrame> frame,
                            CefRefPtr<CefRequestImpl> request,
                            bool user_gesture,
                            bool is_redirect) {
  CefRefPtr<CefClient> client = browser->client();
  CefRefPtr<CefRequestHandler> handler =
      client ? client->GetRequestHandler() : nullptr;
  return handler && handler->OnBeforeBrowse(browser, frame, request.get(),
                                            user_gesture, is_redirect);
}

void NavigationGate::ReportLoadError(BrowserImpl* browser,
                                     CefRefPtr<CefFrame> frame,
                                     const QString& url,
                                     const char* error_name) {
  CefRefPtr<CefClient> client = browser->client();
  CefRefPtr<CefLoadHandler> handler =
      client ? client->GetLoadHandler() : nullptr;
  if (!handler || !frame) {
    return;
  }
  const NetError error = NetErrorFromText(QLatin1String(error_name));
  handler->OnLoadError(browser, frame, error.code, error.name,
                       url.toStdString());
}

CefRefPtr<CefFrame> NavigationGate::FrameFor(BrowserImpl* browser,
                                             const QString& frame_id) {
  if (frame_id.isEmpty()) {
    return nullptr;
  }
  if (CefRefPtr<CefFrame> frame =
          browser->GetFrameByIdentifier(frame_id.toStdString())) {
    return frame;
  }
  if (frame_id == browser->target_id()) {
    return browser->GetMainFrame();
  }
  // The browser learns of new frames a little later than the gate.
  auto parent = parents_.find(frame_id);
  return new FrameImpl(browser, frame_id,
                       parent == parents_.end() ? browser->target_id()
                                                : parent->second);
}

QString NavigationGate::LoaderFor(const QString& url) const {
  for (const auto& [loader_id, document] : documents_) {
    if (document.url == url) {
      return loader_id;
    }
  }
  return QString();
}

}  // namespace cefengine
