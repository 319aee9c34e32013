// SSL state of a request that failed certificate checks.

#ifndef CEF_INCLUDE_CEF_SSL_INFO_H_
#define CEF_INCLUDE_CEF_SSL_INFO_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_values.h"
#include "include/cef_x509_certificate.h"

class CefSSLInfo : public virtual CefBaseRefCounted {
 public:
  // Combination of cef_cert_status_t flags.
  virtual cef_cert_status_t GetCertStatus() = 0;
  virtual CefRefPtr<CefX509Certificate> GetX509Certificate() = 0;
};

// True if |status| holds any error flag (as opposed to informational ones).
bool CefIsCertStatusError(cef_cert_status_t status);

#endif  // CEF_INCLUDE_CEF_SSL_INFO_H_
