#include "libcef/network/response_impl.h"

#include "libcef/network/header_map.h"

namespace cefengine {


bool CefResponseImpl::IsReadOnly() {
  return false;
}

cef_errorcode_t CefResponseImpl::GetError() {
  std::lock_guard<std::mutex> lock(mutex_);
  return error_;
}

void CefResponseImpl::SetError(cef_errorcode_t error) {
  std::lock_guard<std::mutex> lock(mutex_);
  error_ = error;
}

int CefResponseImpl::GetStatus() {
  std::lock_guard<std::mutex> lock(mutex_);
  return status_;
}

void CefResponseImpl::SetStatus(int status) {
  std::lock_guard<std::mutex> lock(mutex_);
  status_ = status;
}

CefString CefResponseImpl::GetStatusText() {
  std::lock_guard<std::mutex> lock(mutex_);
  return status_text_;
}

void CefResponseImpl::SetStatusText(const CefString& statusText) {
  std::lock_guard<std::mutex> lock(mutex_);
  status_text_ = statusText;
}

CefString CefResponseImpl::GetMimeType() {
  std::lock_guard<std::mutex> lock(mutex_);
  return mime_type_;
}

void CefResponseImpl::SetMimeType(const CefString& mimeType) {
  std::lock_guard<std::mutex> lock(mutex_);
  mime_type_ = mimeType;
}

CefString CefResponseImpl::GetCharset() {
  std::lock_guard<std::mutex> lock(mutex_);
  return charset_;
}

void CefResponseImpl::SetCharset(const CefString& charset) {
  std::lock_guard<std::mutex> lock(mutex_);
  charset_ = charset;
}

CefString CefResponseImpl::GetHeaderByName(const CefString& name) {
  std::lock_guard<std::mutex> lock(mutex_);
  return FindHeader(headers_, name);
}

void CefResponseImpl::SetHeaderByName(const CefString& name,
                                      const CefString& value,
                                      bool overwrite) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (name.empty()) {
    return;
  }
  SetHeader(headers_, name, value, overwrite);
}

void CefResponseImpl::GetHeaderMap(HeaderMap& headerMap) {
  std::lock_guard<std::mutex> lock(mutex_);
  headerMap = headers_;
}

void CefResponseImpl::SetHeaderMap(const HeaderMap& headerMap) {
  std::lock_guard<std::mutex> lock(mutex_);
  headers_ = headerMap;
}

CefString CefResponseImpl::GetURL() {
  std::lock_guard<std::mutex> lock(mutex_);
  return url_;
}

void CefResponseImpl::SetURL(const CefString& url) {
  std::lock_guard<std::mutex> lock(mutex_);
  url_ = url;
}

}  // namespace cefengine

CefRefPtr<CefResponse> CefResponse::Create() {
  return new cefengine::CefResponseImpl();
}
