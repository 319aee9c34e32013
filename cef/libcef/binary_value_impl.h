// CefBinaryValue over a BinaryNode of the value store.

#ifndef CEF_LIBCEF_BINARY_VALUE_IMPL_H_
#define CEF_LIBCEF_BINARY_VALUE_IMPL_H_

#include <memory>

#include "include/cef_values.h"
#include "libcef/value_store.h"

namespace cefengine {

class BinaryValueImpl : public CefBinaryValue {
 public:
  explicit BinaryValueImpl(std::shared_ptr<BinaryNode> node);

  // The referenced node while valid, else null.
  std::shared_ptr<BinaryNode> node() const;
  // Drops the reference after the node moved into a container.
  void Detach() { node_.reset(); }

  bool IsValid() override;
  bool IsOwned() override;
  bool IsSame(CefRefPtr<CefBinaryValue> that) override;
  bool IsEqual(CefRefPtr<CefBinaryValue> that) override;
  CefRefPtr<CefBinaryValue> Copy() override;
  const void* GetRawData() override;
  size_t GetSize() override;
  size_t GetData(void* buffer, size_t buffer_size, size_t data_offset) override;

 private:
  std::shared_ptr<BinaryNode> node_;

  IMPLEMENT_REFCOUNTING(BinaryValueImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BINARY_VALUE_IMPL_H_
