#include "libcef/network/resource_request_job.h"

#include <utility>

#include <QJsonArray>
#include <QUrl>

#include "libcef/browser/context_storage.h"
#include "libcef/context.h"
#include "libcef/network/engine_task.h"
#include "libcef/network/once_callback.h"
#include "libcef/network/protocol_request.h"
#include "libcef/network/url_schemes.h"

namespace cefengine {

namespace {

// Fetch.failRequest's closest reason for |error|.
QString FailReason(cef_errorcode_t error) {
  switch (error) {
    case ERR_ABORTED:
      return QStringLiteral("Aborted");
    case ERR_TIMED_OUT:
      return QStringLiteral("TimedOut");
    case ERR_ACCESS_DENIED:
      return QStringLiteral("AccessDenied");
    case ERR_CONNECTION_CLOSED:
      return QStringLiteral("ConnectionClosed");
    case ERR_CONNECTION_RESET:
      return QStringLiteral("ConnectionReset");
    case ERR_CONNECTION_REFUSED:
      return QStringLiteral("ConnectionRefused");
    case ERR_CONNECTION_ABORTED:
      return QStringLiteral("ConnectionAborted");
    case ERR_CONNECTION_FAILED:
      return QStringLiteral("ConnectionFailed");
    case ERR_NAME_NOT_RESOLVED:
      return QStringLiteral("NameNotResolved");
    case ERR_INTERNET_DISCONNECTED:
      return QStringLiteral("InternetDisconnected");
    case ERR_ADDRESS_UNREACHABLE:
      return QStringLiteral("AddressUnreachable");
    case ERR_BLOCKED_BY_CLIENT:
      return QStringLiteral("BlockedByClient");
    case ERR_BLOCKED_BY_RESPONSE:
      return QStringLiteral("BlockedByResponse");
    default:
      return QStringLiteral("Failed");
  }
}

}  // namespace

void ResourceRequestJob::Start(PausedRequest paused) {
  auto job = std::make_shared<ResourceRequestJob>(std::move(paused));
  RunOnIoThread([job] { job->AskHandlers(); });
}

ResourceRequestJob::ResourceRequestJob(PausedRequest paused)
    : paused_(std::move(paused)),
      request_(RequestFromProtocol(paused_.network_request)) {
  request_->SetEngineDetails(paused_.resource_type, paused_.transition_type,
                             paused_.identifier);
  request_->SetReadOnly(true);
}

bool ResourceRequestJob::IsCustomScheme() const {
  return !IsBuiltInScheme(
      SchemeOf(QString::fromStdString(request_->GetURL().ToString())));
}

void ResourceRequestJob::AskHandlers() {
  CefRefPtr<BrowserImpl> browser = paused_.browser;
  if (!browser->IsValid()) {
    return;
  }
  const CefString initiator = paused_.initiator.toStdString();
  CefRefPtr<CefClient> client = browser->client();
  if (CefRefPtr<CefRequestHandler> handler =
          client ? client->GetRequestHandler() : nullptr) {
    handler_ = handler->GetResourceRequestHandler(
        browser.get(), paused_.frame, request_.get(), paused_.is_navigation,
        false, initiator, disable_default_handling_);
  }
  CefRefPtr<CefRequestContextHandler> context_handler =
      paused_.request_context ? paused_.request_context->GetHandler() : nullptr;
  if (!handler_ && !disable_default_handling_ && context_handler) {
    handler_ = context_handler->GetResourceRequestHandler(
        browser.get(), paused_.frame, request_.get(), paused_.is_navigation,
        false, initiator, disable_default_handling_);
  }
  if (!handler_) {
    ChooseResponder();
    return;
  }
  request_->SetReadOnly(false);
  std::shared_ptr<ResourceRequestJob> self = shared_from_this();
  CefRefPtr<OnceCallback> callback = new OnceCallback([self](bool proceed) {
    PostEngineTask(TID_IO, [self, proceed] {
      self->OnBeforeLoadDecided(proceed);
    });
  });
  const cef_return_value_t decision = handler_->OnBeforeResourceLoad(
      browser.get(), paused_.frame, request_.get(), callback.get());
  if (decision == RV_CONTINUE_ASYNC) {
    return;
  }
  callback->Disarm();
  OnBeforeLoadDecided(decision == RV_CONTINUE);
}

void ResourceRequestJob::OnBeforeLoadDecided(bool proceed) {
  request_->SetReadOnly(true);
  if (!proceed) {
    Fail(ERR_ABORTED);
    return;
  }
  ChooseResponder();
}

void ResourceRequestJob::ChooseResponder() {
  CefRefPtr<BrowserImpl> browser = paused_.browser;
  if (!browser->IsValid()) {
    return;
  }
  CefRefPtr<CefResourceHandler> responder =
      handler_ ? handler_->GetResourceHandler(browser.get(), paused_.frame,
                                              request_.get())
               : nullptr;
  if (!responder && !disable_default_handling_) {
    const QUrl url(QString::fromStdString(request_->GetURL().ToString()));
    const std::string scheme = url.scheme().toLower().toStdString();
    const std::string host = url.host().toStdString();
    CefRefPtr<CefSchemeHandlerFactory> factory =
        paused_.request_context
            ? paused_.request_context->storage()->scheme_handlers.Find(scheme,
                                                                       host)
            : nullptr;
    if (!factory) {
      factory = Context::Get()->scheme_handlers().Find(scheme, host);
    }
    if (factory) {
      responder = factory->Create(browser.get(), paused_.frame, scheme,
                                  request_.get());
    }
  }
  if (!responder) {
    // A custom scheme nobody serves fails as Chromium fails it.
    if (disable_default_handling_ && !IsCustomScheme()) {
      Fail(ERR_ABORTED);
    } else {
      Continue();
    }
    return;
  }
  std::shared_ptr<ResourceRequestJob> self = shared_from_this();
  ResourceHandlerRunner::Start(
      responder, request_.get(), [browser] { return browser->IsValid(); },
      [self](ServedResponse response) { self->OnServed(std::move(response)); });
}

void ResourceRequestJob::OnServed(ServedResponse response) {
  switch (response.outcome) {
    case ServedResponse::Outcome::kDeclined:
      // CEF answers 404 for a network scheme, and fails a custom one.
      if (IsCustomScheme()) {
        Continue();
        return;
      }
      response.status = 404;
      response.headers.clear();
      response.body.clear();
      break;
    case ServedResponse::Outcome::kFailed:
      Fail(response.error);
      return;
    case ServedResponse::Outcome::kServed:
      break;
  }
  if (paused_.proxied) {
    AllowCrossOrigin(response.headers);
  }
  paused_.browser->SendPageCommand(
      QStringLiteral("Fetch.fulfillRequest"),
      QJsonObject{{"requestId", paused_.fetch_id},
                  {"responseCode", response.status},
                  {"responseHeaders", HeaderEntries(response.headers)},
                  {"body", QString::fromLatin1(response.body.toBase64())}});
}

void ResourceRequestJob::AllowCrossOrigin(CefResponse::HeaderMap& headers) const {
  // The page sees the stand-in address as another origin; the handler
  // answered for the custom scheme's own.
  for (const auto& [name, value] : headers) {
    if (QString::fromStdString(name.ToString())
            .compare(QLatin1String("Access-Control-Allow-Origin"),
                     Qt::CaseInsensitive) == 0) {
      return;
    }
  }
  const QString origin = QString::fromStdString(
      request_->GetHeaderByName("Origin").ToString());
  headers.emplace("Access-Control-Allow-Origin",
                  origin.isEmpty() || origin == QLatin1String("null")
                      ? std::string("*")
                      : origin.toStdString());
}

void ResourceRequestJob::Continue() {
  if (paused_.proxied) {
    // Nothing serves the scheme: the page's request fails as Chromium fails
    // a scheme it does not know.
    Fail(ERR_UNKNOWN_URL_SCHEME);
    return;
  }
  paused_.browser->SendPageCommand(
      QStringLiteral("Fetch.continueRequest"),
      ContinueParams(paused_.fetch_id, paused_.network_request, request_));
}

void ResourceRequestJob::Fail(cef_errorcode_t error) {
  paused_.browser->SendPageCommand(
      QStringLiteral("Fetch.failRequest"),
      QJsonObject{{"requestId", paused_.fetch_id},
                  {"errorReason", FailReason(error)}});
}

}  // namespace cefengine
