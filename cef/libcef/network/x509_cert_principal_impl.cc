#include "libcef/network/x509_cert_principal_impl.h"

#include <utility>

namespace cefengine {

namespace {

void Copy(const std::vector<std::string>& from, std::vector<CefString>& to) {
  to.clear();
  for (const std::string& name : from) {
    to.emplace_back(name);
  }
}

}  // namespace

CefX509CertPrincipalImpl::CefX509CertPrincipalImpl(Fields fields)
    : fields_(std::move(fields)) {}

CefString CefX509CertPrincipalImpl::GetDisplayName() {
  if (!fields_.common_name.empty()) {
    return fields_.common_name;
  }
  if (!fields_.organization_names.empty()) {
    return fields_.organization_names.front();
  }
  if (!fields_.organization_unit_names.empty()) {
    return fields_.organization_unit_names.front();
  }
  return CefString();
}

CefString CefX509CertPrincipalImpl::GetCommonName() {
  return fields_.common_name;
}

CefString CefX509CertPrincipalImpl::GetLocalityName() {
  return fields_.locality_name;
}

CefString CefX509CertPrincipalImpl::GetStateOrProvinceName() {
  return fields_.state_or_province_name;
}

CefString CefX509CertPrincipalImpl::GetCountryName() {
  return fields_.country_name;
}

void CefX509CertPrincipalImpl::GetOrganizationNames(
    std::vector<CefString>& names) {
  Copy(fields_.organization_names, names);
}

void CefX509CertPrincipalImpl::GetOrganizationUnitNames(
    std::vector<CefString>& names) {
  Copy(fields_.organization_unit_names, names);
}

}  // namespace cefengine
