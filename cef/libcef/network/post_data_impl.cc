#include "libcef/network/post_data_impl.h"

#include <algorithm>
#include <vector>

#include "libcef/network/post_data_element_impl.h"

namespace cefengine {

void CefPostDataImpl::SetReadOnly(bool read_only) {
  ElementVector elements;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    read_only_ = read_only;
    elements = elements_;
  }
  for (const auto& element : elements) {
    if (auto* ours = dynamic_cast<CefPostDataElementImpl*>(element.get())) {
      ours->SetReadOnly(read_only);
    }
  }
}

void CefPostDataImpl::SetHasExcludedElements(bool excluded) {
  std::lock_guard<std::mutex> lock(mutex_);
  has_excluded_elements_ = excluded;
}

bool CefPostDataImpl::Flatten(std::string* bytes) {
  ElementVector elements;
  GetElements(elements);
  bytes->clear();
  for (const auto& element : elements) {
    if (element->GetType() == PDE_TYPE_FILE) {
      return false;
    }
    std::vector<char> part(element->GetBytesCount());
    element->GetBytes(part.size(), part.data());
    bytes->append(part.data(), part.size());
  }
  return true;
}

bool CefPostDataImpl::IsReadOnly() {
  std::lock_guard<std::mutex> lock(mutex_);
  return read_only_;
}

bool CefPostDataImpl::HasExcludedElements() {
  std::lock_guard<std::mutex> lock(mutex_);
  return has_excluded_elements_;
}

size_t CefPostDataImpl::GetElementCount() {
  std::lock_guard<std::mutex> lock(mutex_);
  return elements_.size();
}

void CefPostDataImpl::GetElements(ElementVector& elements) {
  std::lock_guard<std::mutex> lock(mutex_);
  elements = elements_;
}

bool CefPostDataImpl::RemoveElement(CefRefPtr<CefPostDataElement> element) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (read_only_) {
    return false;
  }
  auto it = std::find(elements_.begin(), elements_.end(), element);
  if (it == elements_.end()) {
    return false;
  }
  elements_.erase(it);
  return true;
}

bool CefPostDataImpl::AddElement(CefRefPtr<CefPostDataElement> element) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (read_only_ || !element ||
      std::find(elements_.begin(), elements_.end(), element) !=
          elements_.end()) {
    return false;
  }
  elements_.push_back(element);
  return true;
}

void CefPostDataImpl::RemoveElements() {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!read_only_) {
    elements_.clear();
  }
}

}  // namespace cefengine

CefRefPtr<CefPostData> CefPostData::Create() {
  return new cefengine::CefPostDataImpl();
}
