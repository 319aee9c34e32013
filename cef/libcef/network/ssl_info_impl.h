// What a client learns about a certificate error: the status flags and the
// server's certificate.

#ifndef CEF_LIBCEF_NETWORK_SSL_INFO_IMPL_H_
#define CEF_LIBCEF_NETWORK_SSL_INFO_IMPL_H_

#include "include/cef_ssl_info.h"

namespace cefengine {

// The status flag that goes with a certificate error code; CERT_STATUS_NONE
// for other codes.
cef_cert_status_t CertStatusFromError(cef_errorcode_t error);

// Immutable; any thread.
class CefSSLInfoImpl : public CefSSLInfo {
 public:
  // |certificate| may be null when the engine could not read it.
  CefSSLInfoImpl(cef_cert_status_t status,
                 CefRefPtr<CefX509Certificate> certificate);

  cef_cert_status_t GetCertStatus() override;
  CefRefPtr<CefX509Certificate> GetX509Certificate() override;

 private:
  const cef_cert_status_t status_;
  const CefRefPtr<CefX509Certificate> certificate_;
  IMPLEMENT_REFCOUNTING(CefSSLInfoImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_SSL_INFO_IMPL_H_
