// The subject or issuer of a certificate, read once from its X.509 name.

#ifndef CEF_LIBCEF_NETWORK_X509_CERT_PRINCIPAL_IMPL_H_
#define CEF_LIBCEF_NETWORK_X509_CERT_PRINCIPAL_IMPL_H_

#include <string>
#include <vector>

#include "include/cef_x509_certificate.h"

namespace cefengine {

// Immutable; any thread.
class CefX509CertPrincipalImpl : public CefX509CertPrincipal {
 public:
  struct Fields {
    std::string common_name;
    std::string locality_name;
    std::string state_or_province_name;
    std::string country_name;
    std::vector<std::string> organization_names;
    std::vector<std::string> organization_unit_names;
  };

  explicit CefX509CertPrincipalImpl(Fields fields);

  CefString GetDisplayName() override;
  CefString GetCommonName() override;
  CefString GetLocalityName() override;
  CefString GetStateOrProvinceName() override;
  CefString GetCountryName() override;
  void GetOrganizationNames(std::vector<CefString>& names) override;
  void GetOrganizationUnitNames(std::vector<CefString>& names) override;

 private:
  const Fields fields_;
  IMPLEMENT_REFCOUNTING(CefX509CertPrincipalImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_X509_CERT_PRINCIPAL_IMPL_H_
