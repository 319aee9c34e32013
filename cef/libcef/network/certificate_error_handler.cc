#include "libcef/network/certificate_error_handler.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include <QUrl>

#include "libcef/browser/net_error.h"
#include "libcef/browser/ui_task.h"
#include "libcef/devtools/devtools_session.h"
#include "libcef/network/certificate_chain_fetcher.h"
#include "libcef/network/engine_task.h"
#include "libcef/network/once_callback.h"
#include "libcef/network/ssl_info_impl.h"
#include "libcef/network/x509_certificate_impl.h"

namespace cefengine {

namespace {

// Chromium holds the load meanwhile, so the handshake must not take long.
constexpr std::chrono::seconds kHandshakeTimeout{3};

// Tells the client, with whatever certificate the server showed.
void AskClient(CefRefPtr<BrowserImpl> browser,
               CefRefPtr<CefCallback> callback,
               const NetError& error,
               const QString& url,
               const std::vector<std::string>& chain) {
  CefRefPtr<CefClient> client = browser->client();
  CefRefPtr<CefRequestHandler> handler =
      client ? client->GetRequestHandler() : nullptr;
  if (!handler || !browser->IsValid()) {
    callback->Cancel();
    return;
  }
  CefRefPtr<CefSSLInfo> ssl_info = new CefSSLInfoImpl(
      CertStatusFromError(error.code),
      CefX509CertificateImpl::FromDerChain(chain).get());
  if (!handler->OnCertificateError(browser.get(), error.code,
                                   url.toStdString(), ssl_info, callback)) {
    callback->Cancel();
  }
}

}  // namespace

CertificateErrorHandler::CertificateErrorHandler(
    BrowserImpl* browser,
    std::shared_ptr<LoadErrorOverrides> overrides)
    : browser_(browser), overrides_(std::move(overrides)) {}

void CertificateErrorHandler::Enable() {
  DevToolsSession* session = browser_->devtools();
  const QString session_id = browser_->session_id();
  if (!session) {
    return;
  }
  session->sendCommand(QStringLiteral("Security.enable"), {}, session_id, {});
  // Deprecated in the protocol, still the only way to hold the load.
  session->sendCommand(QStringLiteral("Security.setOverrideCertificateErrors"),
                       QJsonObject{{"override", true}}, session_id, {});
}

void CertificateErrorHandler::OnCertificateError(const QJsonObject& params,
                                                 const QString& loader_id) {
  const int event_id = params.value(QLatin1String("eventId")).toInt();
  const QString error_type = params.value(QLatin1String("errorType")).toString();
  const QString url = params.value(QLatin1String("requestURL")).toString();
  const NetError error = NetErrorFromText(error_type);
  CefRefPtr<BrowserImpl> browser(browser_);
  std::shared_ptr<LoadErrorOverrides> overrides = overrides_;
  // Answered once, from whichever thread the client decides on; unanswered
  // and released, it cancels.
  CefRefPtr<CefCallback> callback =
      new OnceCallback([browser, overrides, event_id, loader_id,
                        error_type](bool proceed) {
        if (!proceed) {
          overrides->Set(loader_id, QStringLiteral("net::") + error_type);
        }
        browser->SendPageCommand(
            QStringLiteral("Security.handleCertificateError"),
            QJsonObject{{"eventId", event_id},
                        {"action", proceed ? "continue" : "cancel"}});
      });
  const QUrl parsed(url);
  const std::string host = parsed.host().toStdString();
  const int port = parsed.port(443);
  // The handshake blocks: it runs on the engine's background thread.
  const bool posted = PostEngineTask(
      TID_FILE_USER_BLOCKING, [browser, callback, error, url, host, port] {
        std::vector<std::string> chain =
            FetchCertificateChain(host, port, kHandshakeTimeout);
        PostUiTask([browser, callback, error, url, chain = std::move(chain)] {
          AskClient(browser, callback, error, url, chain);
        });
      });
  if (!posted) {
    callback->Cancel();
  }
}

}  // namespace cefengine
