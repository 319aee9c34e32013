#include "libcef/network/request_impl.h"

#include <atomic>

#include "libcef/network/header_map.h"
#include "libcef/network/post_data_impl.h"

namespace cefengine {

namespace {

bool IsReferer(const CefString& name) {
  return SameHeaderName(name, "Referer");
}

}  // namespace

uint64_t CefRequestImpl::NextIdentifier() {
  static std::atomic<uint64_t> next{1};
  return next++;
}

void CefRequestImpl::SetReadOnly(bool read_only) {
  CefRefPtr<CefPostData> post_data;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    read_only_ = read_only;
    post_data = post_data_;
  }
  if (auto* ours = dynamic_cast<CefPostDataImpl*>(post_data.get())) {
    ours->SetReadOnly(read_only);
  }
}

void CefRequestImpl::SetEngineDetails(ResourceType resource_type,
                                      TransitionType transition_type,
                                      uint64_t identifier) {
  std::lock_guard<std::mutex> lock(mutex_);
  resource_type_ = resource_type;
  transition_type_ = transition_type;
  identifier_ = identifier;
}

bool CefRequestImpl::IsReadOnly() {
  std::lock_guard<std::mutex> lock(mutex_);
  return read_only_;
}

CefString CefRequestImpl::GetURL() {
  std::lock_guard<std::mutex> lock(mutex_);
  return url_;
}

void CefRequestImpl::SetURL(const CefString& url) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!read_only_) {
    url_ = url;
  }
}

CefString CefRequestImpl::GetMethod() {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!method_.empty()) {
    return method_;
  }
  return post_data_ ? "POST" : "GET";
}

void CefRequestImpl::SetMethod(const CefString& method) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!read_only_) {
    method_ = method;
  }
}

void CefRequestImpl::SetReferrer(const CefString& referrer_url,
                                 ReferrerPolicy policy) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!read_only_) {
    referrer_url_ = referrer_url;
    referrer_policy_ = policy;
  }
}

CefString CefRequestImpl::GetReferrerURL() {
  std::lock_guard<std::mutex> lock(mutex_);
  return referrer_url_;
}

CefRequest::ReferrerPolicy CefRequestImpl::GetReferrerPolicy() {
  std::lock_guard<std::mutex> lock(mutex_);
  return referrer_policy_;
}

CefRefPtr<CefPostData> CefRequestImpl::GetPostData() {
  std::lock_guard<std::mutex> lock(mutex_);
  return post_data_;
}

void CefRequestImpl::SetPostData(CefRefPtr<CefPostData> postData) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!read_only_) {
    post_data_ = postData;
  }
}

void CefRequestImpl::GetHeaderMap(HeaderMap& headerMap) {
  std::lock_guard<std::mutex> lock(mutex_);
  headerMap = headers_;
}

void CefRequestImpl::SetHeaderMap(const HeaderMap& headerMap) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!read_only_) {
    SetHeaderMapLocked(headerMap);
  }
}

void CefRequestImpl::SetHeaderMapLocked(const HeaderMap& headerMap) {
  headers_.clear();
  for (const auto& [name, value] : headerMap) {
    if (!IsReferer(name)) {
      headers_.emplace(name, value);
    }
  }
}

CefString CefRequestImpl::GetHeaderByName(const CefString& name) {
  std::lock_guard<std::mutex> lock(mutex_);
  return FindHeader(headers_, name);
}

void CefRequestImpl::SetHeaderByName(const CefString& name,
                                     const CefString& value,
                                     bool overwrite) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (read_only_ || name.empty() || IsReferer(name)) {
    return;
  }
  SetHeader(headers_, name, value, overwrite);
}

void CefRequestImpl::Set(const CefString& url,
                         const CefString& method,
                         CefRefPtr<CefPostData> postData,
                         const HeaderMap& headerMap) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (read_only_) {
    return;
  }
  url_ = url;
  method_ = method;
  post_data_ = postData;
  SetHeaderMapLocked(headerMap);
}

int CefRequestImpl::GetFlags() {
  std::lock_guard<std::mutex> lock(mutex_);
  return flags_;
}

void CefRequestImpl::SetFlags(int flags) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!read_only_) {
    flags_ = flags;
  }
}

CefString CefRequestImpl::GetFirstPartyForCookies() {
  std::lock_guard<std::mutex> lock(mutex_);
  return first_party_for_cookies_;
}

void CefRequestImpl::SetFirstPartyForCookies(const CefString& url) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!read_only_) {
    first_party_for_cookies_ = url;
  }
}

CefRequest::ResourceType CefRequestImpl::GetResourceType() {
  std::lock_guard<std::mutex> lock(mutex_);
  return resource_type_;
}

CefRequest::TransitionType CefRequestImpl::GetTransitionType() {
  std::lock_guard<std::mutex> lock(mutex_);
  return transition_type_;
}

uint64_t CefRequestImpl::GetIdentifier() {
  std::lock_guard<std::mutex> lock(mutex_);
  return identifier_;
}

}  // namespace cefengine

CefRefPtr<CefRequest> CefRequest::Create() {
  return new cefengine::CefRequestImpl();
}
