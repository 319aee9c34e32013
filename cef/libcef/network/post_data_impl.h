// A request body: its parts in order.

#ifndef CEF_LIBCEF_NETWORK_POST_DATA_IMPL_H_
#define CEF_LIBCEF_NETWORK_POST_DATA_IMPL_H_

#include <mutex>
#include <string>

#include "include/cef_request.h"

namespace cefengine {

// Any thread. Changes to a read-only body are ignored.
class CefPostDataImpl : public CefPostData {
 public:
  CefPostDataImpl() = default;

  // Makes the body and its parts read-only, or writable again.
  void SetReadOnly(bool read_only);
  void SetHasExcludedElements(bool excluded);
  // The bytes of all parts together; false when a part is a file, which a
  // request sent through the protocol cannot carry.
  bool Flatten(std::string* bytes);

  bool IsReadOnly() override;
  bool HasExcludedElements() override;
  size_t GetElementCount() override;
  void GetElements(ElementVector& elements) override;
  bool RemoveElement(CefRefPtr<CefPostDataElement> element) override;
  bool AddElement(CefRefPtr<CefPostDataElement> element) override;
  void RemoveElements() override;

 private:
  std::mutex mutex_;
  bool read_only_ = false;
  bool has_excluded_elements_ = false;
  ElementVector elements_;
  IMPLEMENT_REFCOUNTING(CefPostDataImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_POST_DATA_IMPL_H_
