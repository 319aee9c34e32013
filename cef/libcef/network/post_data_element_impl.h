// One part of a request body.

#ifndef CEF_LIBCEF_NETWORK_POST_DATA_ELEMENT_IMPL_H_
#define CEF_LIBCEF_NETWORK_POST_DATA_ELEMENT_IMPL_H_

#include <mutex>
#include <string>

#include "include/cef_request.h"

namespace cefengine {

// Any thread. Changes to a read-only element are ignored.
class CefPostDataElementImpl : public CefPostDataElement {
 public:
  CefPostDataElementImpl() = default;

  void SetReadOnly(bool read_only);

  bool IsReadOnly() override;
  void SetToEmpty() override;
  void SetToFile(const CefString& fileName) override;
  void SetToBytes(size_t size, const void* bytes) override;
  Type GetType() override;
  CefString GetFile() override;
  size_t GetBytesCount() override;
  size_t GetBytes(size_t size, void* bytes) override;

 private:
  std::mutex mutex_;
  bool read_only_ = false;
  Type type_ = PDE_TYPE_EMPTY;
  std::string bytes_;
  CefString file_;
  IMPLEMENT_REFCOUNTING(CefPostDataElementImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_POST_DATA_ELEMENT_IMPL_H_
