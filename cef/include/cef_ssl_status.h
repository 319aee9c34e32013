// SSL state of a navigation entry.

#ifndef CEF_INCLUDE_CEF_SSL_STATUS_H_
#define CEF_INCLUDE_CEF_SSL_STATUS_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_values.h"
#include "include/cef_x509_certificate.h"

class CefSSLStatus : public virtual CefBaseRefCounted {
 public:
  // True for HTTPS and other secure connections.
  virtual bool IsSecureConnection() = 0;
  virtual cef_cert_status_t GetCertStatus() = 0;
  virtual cef_ssl_version_t GetSSLVersion() = 0;
  // Whether the page showed or ran insecure content (flags).
  virtual cef_ssl_content_status_t GetContentStatus() = 0;
  virtual CefRefPtr<CefX509Certificate> GetX509Certificate() = 0;
};

#endif  // CEF_INCLUDE_CEF_SSL_STATUS_H_
