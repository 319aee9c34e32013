#include "libcef/network/x509_certificate_impl.h"

#include <ctime>
#include <memory>

#include <openssl/bio.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include "include/internal/cef_time.h"
#include "libcef/network/x509_cert_principal_impl.h"

namespace cefengine {

namespace {

struct X509Free {
  void operator()(X509* cert) const { X509_free(cert); }
};
using X509Ptr = std::unique_ptr<X509, X509Free>;

struct BioFree {
  void operator()(BIO* bio) const { BIO_free(bio); }
};

X509Ptr ParseDer(const std::string& der) {
  const auto* data = reinterpret_cast<const unsigned char*>(der.data());
  X509Ptr cert(d2i_X509(nullptr, &data, static_cast<long>(der.size())));
  // Bytes after the certificate mean it was not one DER certificate.
  if (cert && data != reinterpret_cast<const unsigned char*>(der.data()) +
                          der.size()) {
    cert.reset();
  }
  return cert;
}

std::string Pem(X509* cert) {
  std::unique_ptr<BIO, BioFree> bio(BIO_new(BIO_s_mem()));
  if (!bio || PEM_write_bio_X509(bio.get(), cert) != 1) {
    return std::string();
  }
  char* data = nullptr;
  const long size = BIO_get_mem_data(bio.get(), &data);
  return std::string(data, size > 0 ? static_cast<size_t>(size) : 0);
}

std::vector<std::string> Entries(X509_NAME* name, int nid) {
  std::vector<std::string> values;
  for (int index = X509_NAME_get_index_by_NID(name, nid, -1); index >= 0;
       index = X509_NAME_get_index_by_NID(name, nid, index)) {
    ASN1_STRING* data =
        X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, index));
    unsigned char* utf8 = nullptr;
    const int length = ASN1_STRING_to_UTF8(&utf8, data);
    if (length >= 0) {
      values.emplace_back(reinterpret_cast<char*>(utf8), length);
      OPENSSL_free(utf8);
    }
  }
  return values;
}

std::string First(X509_NAME* name, int nid) {
  std::vector<std::string> values = Entries(name, nid);
  return values.empty() ? std::string() : values.front();
}

CefRefPtr<CefX509CertPrincipal> Principal(X509_NAME* name) {
  CefX509CertPrincipalImpl::Fields fields;
  if (name) {
    fields.common_name = First(name, NID_commonName);
    fields.locality_name = First(name, NID_localityName);
    fields.state_or_province_name = First(name, NID_stateOrProvinceName);
    fields.country_name = First(name, NID_countryName);
    fields.organization_names = Entries(name, NID_organizationName);
    fields.organization_unit_names = Entries(name, NID_organizationalUnitName);
  }
  return new CefX509CertPrincipalImpl(std::move(fields));
}

CefBaseTime BaseTime(const ASN1_TIME* time) {
  std::tm parts{};
  if (!time || ASN1_TIME_to_tm(time, &parts) != 1) {
    return CefBaseTime();
  }
  cef_time_t cef_time{};
  cef_basetime_t base{};
  if (!cef_time_from_timet(timegm(&parts), &cef_time) ||
      !cef_time_to_basetime(&cef_time, &base)) {
    return CefBaseTime();
  }
  return base;
}

CefRefPtr<CefBinaryValue> Binary(const std::string& bytes) {
  return CefBinaryValue::Create(bytes.data(), bytes.size());
}

}  // namespace

CefRefPtr<CefX509CertificateImpl> CefX509CertificateImpl::FromDerChain(
    const std::vector<std::string>& chain) {
  if (chain.empty()) {
    return nullptr;
  }
  X509Ptr leaf = ParseDer(chain.front());
  if (!leaf) {
    return nullptr;
  }
  CefRefPtr<CefX509CertificateImpl> result = new CefX509CertificateImpl();
  result->subject_ = Principal(X509_get_subject_name(leaf.get()));
  result->issuer_ = Principal(X509_get_issuer_name(leaf.get()));
  const ASN1_INTEGER* serial = X509_get0_serialNumber(leaf.get());
  result->serial_number_.assign(
      reinterpret_cast<const char*>(ASN1_STRING_get0_data(serial)),
      ASN1_STRING_length(serial));
  result->valid_start_ = BaseTime(X509_get0_notBefore(leaf.get()));
  result->valid_expiry_ = BaseTime(X509_get0_notAfter(leaf.get()));
  result->self_ = {chain.front(), Pem(leaf.get())};
  for (size_t i = 1; i < chain.size(); ++i) {
    if (X509Ptr issuer = ParseDer(chain[i])) {
      result->issuers_.push_back({chain[i], Pem(issuer.get())});
    }
  }
  return result;
}

CefRefPtr<CefX509CertPrincipal> CefX509CertificateImpl::GetSubject() {
  return subject_;
}

CefRefPtr<CefX509CertPrincipal> CefX509CertificateImpl::GetIssuer() {
  return issuer_;
}

CefRefPtr<CefBinaryValue> CefX509CertificateImpl::GetSerialNumber() {
  return Binary(serial_number_);
}

CefBaseTime CefX509CertificateImpl::GetValidStart() {
  return valid_start_;
}

CefBaseTime CefX509CertificateImpl::GetValidExpiry() {
  return valid_expiry_;
}

CefRefPtr<CefBinaryValue> CefX509CertificateImpl::GetDEREncoded() {
  return Binary(self_.der);
}

CefRefPtr<CefBinaryValue> CefX509CertificateImpl::GetPEMEncoded() {
  return Binary(self_.pem);
}

size_t CefX509CertificateImpl::GetIssuerChainSize() {
  return issuers_.size();
}

void CefX509CertificateImpl::GetDEREncodedIssuerChain(
    IssuerChainBinaryList& chain) {
  chain.clear();
  for (const Encoded& issuer : issuers_) {
    chain.push_back(Binary(issuer.der));
  }
}

void CefX509CertificateImpl::GetPEMEncodedIssuerChain(
    IssuerChainBinaryList& chain) {
  chain.clear();
  for (const Encoded& issuer : issuers_) {
    chain.push_back(Binary(issuer.pem));
  }
}

}  // namespace cefengine
