// An X.509 certificate with its issuer chain, and the names in it.

#ifndef CEF_INCLUDE_CEF_X509_CERTIFICATE_H_
#define CEF_INCLUDE_CEF_X509_CERTIFICATE_H_
#pragma once

#include <vector>

#include "include/cef_base.h"
#include "include/cef_values.h"

// The subject or issuer of a certificate.
class CefX509CertPrincipal : public virtual CefBaseRefCounted {
 public:
  // The common name, else the first organization name, else the first
  // organizational unit name.
  virtual CefString GetDisplayName() = 0;
  virtual CefString GetCommonName() = 0;
  virtual CefString GetLocalityName() = 0;
  virtual CefString GetStateOrProvinceName() = 0;
  virtual CefString GetCountryName() = 0;
  virtual void GetOrganizationNames(std::vector<CefString>& names) = 0;
  virtual void GetOrganizationUnitNames(std::vector<CefString>& names) = 0;
};

class CefX509Certificate : public virtual CefBaseRefCounted {
 public:
  typedef std::vector<CefRefPtr<CefBinaryValue>> IssuerChainBinaryList;

  virtual CefRefPtr<CefX509CertPrincipal> GetSubject() = 0;
  virtual CefRefPtr<CefX509CertPrincipal> GetIssuer() = 0;
  // Big-endian bytes of the serial number.
  virtual CefRefPtr<CefBinaryValue> GetSerialNumber() = 0;

  // Validity period; empty when not set.
  virtual CefBaseTime GetValidStart() = 0;
  virtual CefBaseTime GetValidExpiry() = 0;

  // This certificate alone, as DER bytes or PEM text.
  virtual CefRefPtr<CefBinaryValue> GetDEREncoded() = 0;
  virtual CefRefPtr<CefBinaryValue> GetPEMEncoded() = 0;

  // The certificates that issued this one.
  virtual size_t GetIssuerChainSize() = 0;
  virtual void GetDEREncodedIssuerChain(IssuerChainBinaryList& chain) = 0;
  virtual void GetPEMEncodedIssuerChain(IssuerChainBinaryList& chain) = 0;
};

#endif  // CEF_INCLUDE_CEF_X509_CERTIFICATE_H_
