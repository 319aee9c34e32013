#include "libcef/network/ssl_info_impl.h"

namespace cefengine {

namespace {

// Bits 16 to 23 describe the certificate (EV, revocation checked, ...)
// rather than fault it.
constexpr unsigned kErrorStatusBits = 0xFF00FFFFu;

}  // namespace

cef_cert_status_t CertStatusFromError(cef_errorcode_t error) {
  switch (error) {
    case ERR_CERT_COMMON_NAME_INVALID:
      return CERT_STATUS_COMMON_NAME_INVALID;
    case ERR_CERT_DATE_INVALID:
      return CERT_STATUS_DATE_INVALID;
    case ERR_CERT_AUTHORITY_INVALID:
      return CERT_STATUS_AUTHORITY_INVALID;
    case ERR_CERT_NO_REVOCATION_MECHANISM:
      return CERT_STATUS_NO_REVOCATION_MECHANISM;
    case ERR_CERT_UNABLE_TO_CHECK_REVOCATION:
      return CERT_STATUS_UNABLE_TO_CHECK_REVOCATION;
    case ERR_CERT_REVOKED:
      return CERT_STATUS_REVOKED;
    case ERR_CERT_CONTAINS_ERRORS:
    case ERR_CERT_INVALID:
      return CERT_STATUS_INVALID;
    case ERR_CERT_WEAK_SIGNATURE_ALGORITHM:
      return CERT_STATUS_WEAK_SIGNATURE_ALGORITHM;
    case ERR_CERT_NON_UNIQUE_NAME:
      return CERT_STATUS_NON_UNIQUE_NAME;
    case ERR_CERT_WEAK_KEY:
      return CERT_STATUS_WEAK_KEY;
    case ERR_CERT_NAME_CONSTRAINT_VIOLATION:
      return CERT_STATUS_NAME_CONSTRAINT_VIOLATION;
    case ERR_CERT_VALIDITY_TOO_LONG:
      return CERT_STATUS_VALIDITY_TOO_LONG;
    default:
      return CERT_STATUS_NONE;
  }
}

CefSSLInfoImpl::CefSSLInfoImpl(cef_cert_status_t status,
                               CefRefPtr<CefX509Certificate> certificate)
    : status_(status), certificate_(certificate) {}

cef_cert_status_t CefSSLInfoImpl::GetCertStatus() {
  return status_;
}

CefRefPtr<CefX509Certificate> CefSSLInfoImpl::GetX509Certificate() {
  return certificate_;
}

}  // namespace cefengine

bool CefIsCertStatusError(cef_cert_status_t status) {
  return (static_cast<unsigned>(status) & cefengine::kErrorStatusBits) != 0;
}
