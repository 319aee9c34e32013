// A server's certificate and the chain it sent, parsed with OpenSSL.

#ifndef CEF_LIBCEF_NETWORK_X509_CERTIFICATE_IMPL_H_
#define CEF_LIBCEF_NETWORK_X509_CERTIFICATE_IMPL_H_

#include <string>
#include <vector>

#include "include/cef_x509_certificate.h"

namespace cefengine {

// Immutable; any thread.
class CefX509CertificateImpl : public CefX509Certificate {
 public:
  // From DER certificates, the server's own first; null when that one does
  // not parse (issuers that do not parse are left out).
  static CefRefPtr<CefX509CertificateImpl> FromDerChain(
      const std::vector<std::string>& chain);

  CefRefPtr<CefX509CertPrincipal> GetSubject() override;
  CefRefPtr<CefX509CertPrincipal> GetIssuer() override;
  CefRefPtr<CefBinaryValue> GetSerialNumber() override;
  CefBaseTime GetValidStart() override;
  CefBaseTime GetValidExpiry() override;
  CefRefPtr<CefBinaryValue> GetDEREncoded() override;
  CefRefPtr<CefBinaryValue> GetPEMEncoded() override;
  size_t GetIssuerChainSize() override;
  void GetDEREncodedIssuerChain(IssuerChainBinaryList& chain) override;
  void GetPEMEncodedIssuerChain(IssuerChainBinaryList& chain) override;

 private:
  // One certificate, in both encodings.
  struct Encoded {
    std::string der;
    std::string pem;
  };

  CefX509CertificateImpl() = default;

  CefRefPtr<CefX509CertPrincipal> subject_;
  CefRefPtr<CefX509CertPrincipal> issuer_;
  std::string serial_number_;
  CefBaseTime valid_start_;
  CefBaseTime valid_expiry_;
  Encoded self_;
  std::vector<Encoded> issuers_;
  IMPLEMENT_REFCOUNTING(CefX509CertificateImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_X509_CERTIFICATE_IMPL_H_
