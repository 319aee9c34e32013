// A page's certificate errors as CefRequestHandler::OnCertificateError:
// Chromium holds the load until Security.handleCertificateError, and the
// client decides, now or later, with the server's certificate in hand.

#ifndef CEF_LIBCEF_NETWORK_CERTIFICATE_ERROR_HANDLER_H_
#define CEF_LIBCEF_NETWORK_CERTIFICATE_ERROR_HANDLER_H_

#include <memory>

#include <QJsonObject>
#include <QString>

#include "libcef/browser/browser_impl.h"
#include "libcef/network/load_error_overrides.h"

namespace cefengine {

// Engine UI thread; owned by the browser's gate.
class CertificateErrorHandler {
 public:
  CertificateErrorHandler(BrowserImpl* browser,
                          std::shared_ptr<LoadErrorOverrides> overrides);

  // Asks Chromium to hold certificate errors for the engine; sent straight
  // to the session of a page that is attached and held.
  void Enable();

  // Security.certificateError; |loader_id| is the document load it stops,
  // if known, whose failure then reports the certificate error itself.
  void OnCertificateError(const QJsonObject& params, const QString& loader_id);

 private:
  BrowserImpl* const browser_;
  const std::shared_ptr<LoadErrorOverrides> overrides_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_CERTIFICATE_ERROR_HANDLER_H_
