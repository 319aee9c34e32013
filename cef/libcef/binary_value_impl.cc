#include "libcef/binary_value_impl.h"

#include <algorithm>
#include <cstring>

namespace cefengine {
namespace {

std::shared_ptr<BinaryNode> NodeOf(const CefRefPtr<CefBinaryValue>& value) {
  return value ? static_cast<BinaryValueImpl*>(value.get())->node() : nullptr;
}

}  // namespace

BinaryValueImpl::BinaryValueImpl(std::shared_ptr<BinaryNode> node)
    : node_(std::move(node)) {}

std::shared_ptr<BinaryNode> BinaryValueImpl::node() const {
  return (node_ && node_->valid) ? node_ : nullptr;
}

bool BinaryValueImpl::IsValid() {
  return node() != nullptr;
}

bool BinaryValueImpl::IsOwned() {
  auto n = node();
  return n && n->owned;
}

bool BinaryValueImpl::IsSame(CefRefPtr<CefBinaryValue> that) {
  auto n = node();
  return n && n == NodeOf(that);
}

bool BinaryValueImpl::IsEqual(CefRefPtr<CefBinaryValue> that) {
  auto n = node();
  auto other = NodeOf(that);
  return n && other && BinariesEqual(*n, *other);
}

CefRefPtr<CefBinaryValue> BinaryValueImpl::Copy() {
  auto n = node();
  return n ? new BinaryValueImpl(CopyBinary(*n)) : nullptr;
}

const void* BinaryValueImpl::GetRawData() {
  auto n = node();
  return (n && !n->bytes.empty()) ? n->bytes.data() : nullptr;
}

size_t BinaryValueImpl::GetSize() {
  auto n = node();
  return n ? n->bytes.size() : 0;
}

size_t BinaryValueImpl::GetData(void* buffer,
                                size_t buffer_size,
                                size_t data_offset) {
  auto n = node();
  if (!n || !buffer || data_offset >= n->bytes.size()) {
    return 0;
  }
  size_t count = std::min(buffer_size, n->bytes.size() - data_offset);
  memcpy(buffer, n->bytes.data() + data_offset, count);
  return count;
}

}  // namespace cefengine

CefRefPtr<CefBinaryValue> CefBinaryValue::Create(const void* data,
                                                 size_t data_size) {
  if (!data || data_size == 0) {
    return nullptr;
  }
  auto node = std::make_shared<cefengine::BinaryNode>();
  const auto* bytes = static_cast<const uint8_t*>(data);
  node->bytes.assign(bytes, bytes + data_size);
  return new cefengine::BinaryValueImpl(std::move(node));
}
