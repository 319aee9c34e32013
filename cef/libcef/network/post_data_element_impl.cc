#include "libcef/network/post_data_element_impl.h"

#include <algorithm>
#include <cstring>

namespace cefengine {

void CefPostDataElementImpl::SetReadOnly(bool read_only) {
  std::lock_guard<std::mutex> lock(mutex_);
  read_only_ = read_only;
}

bool CefPostDataElementImpl::IsReadOnly() {
  std::lock_guard<std::mutex> lock(mutex_);
  return read_only_;
}

void CefPostDataElementImpl::SetToEmpty() {
  std::lock_guard<std::mutex> lock(mutex_);
  if (read_only_) {
    return;
  }
  type_ = PDE_TYPE_EMPTY;
  bytes_.clear();
  file_.clear();
}

void CefPostDataElementImpl::SetToFile(const CefString& fileName) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (read_only_) {
    return;
  }
  type_ = PDE_TYPE_FILE;
  bytes_.clear();
  file_ = fileName;
}

void CefPostDataElementImpl::SetToBytes(size_t size, const void* bytes) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (read_only_) {
    return;
  }
  type_ = PDE_TYPE_BYTES;
  bytes_.assign(bytes ? static_cast<const char*>(bytes) : "",
                bytes ? size : 0);
  file_.clear();
}

CefPostDataElement::Type CefPostDataElementImpl::GetType() {
  std::lock_guard<std::mutex> lock(mutex_);
  return type_;
}

CefString CefPostDataElementImpl::GetFile() {
  std::lock_guard<std::mutex> lock(mutex_);
  return file_;
}

size_t CefPostDataElementImpl::GetBytesCount() {
  std::lock_guard<std::mutex> lock(mutex_);
  return bytes_.size();
}

size_t CefPostDataElementImpl::GetBytes(size_t size, void* bytes) {
  std::lock_guard<std::mutex> lock(mutex_);
  const size_t count = std::min(size, bytes_.size());
  if (bytes && count) {
    std::memcpy(bytes, bytes_.data(), count);
  }
  return bytes ? count : 0;
}

}  // namespace cefengine

CefRefPtr<CefPostDataElement> CefPostDataElement::Create() {
  return new cefengine::CefPostDataElementImpl();
}
