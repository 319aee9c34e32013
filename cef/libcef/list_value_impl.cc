#include "libcef/list_value_impl.h"

#include "libcef/value_access.h"

namespace cefengine {
namespace {

std::shared_ptr<ListNode> NodeOf(const CefRefPtr<CefListValue>& value) {
  return value ? static_cast<ListValueImpl*>(value.get())->node() : nullptr;
}

const ValueEntry kNoEntry;

}  // namespace

ListValueImpl::ListValueImpl(std::shared_ptr<ListNode> node)
    : node_(std::move(node)) {}

std::shared_ptr<ListNode> ListValueImpl::node() const {
  return (node_ && node_->valid) ? node_ : nullptr;
}

ListNode* ListValueImpl::Writable() const {
  auto n = node();
  return (n && !n->read_only) ? n.get() : nullptr;
}

const ValueEntry* ListValueImpl::At(size_t index) const {
  auto n = node();
  return (n && index < n->items.size()) ? &n->items[index] : nullptr;
}

bool ListValueImpl::Store(size_t index, ValueEntry entry) {
  ListNode* n = Writable();
  if (!n || index >= kMaxSize) {
    return false;
  }
  if (index >= n->items.size()) {
    n->items.resize(index + 1);
  }
  AdoptEntry(entry, n);
  ReleaseEntry(n->items[index]);
  n->items[index] = std::move(entry);
  return true;
}

bool ListValueImpl::IsValid() {
  return node() != nullptr;
}

bool ListValueImpl::IsOwned() {
  auto n = node();
  return n && n->owned;
}

bool ListValueImpl::IsReadOnly() {
  auto n = node();
  return !n || n->read_only;
}

bool ListValueImpl::IsSame(CefRefPtr<CefListValue> that) {
  auto n = node();
  return n && n == NodeOf(that);
}

bool ListValueImpl::IsEqual(CefRefPtr<CefListValue> that) {
  auto n = node();
  auto other = NodeOf(that);
  return n && other && ListsEqual(*n, *other);
}

CefRefPtr<CefListValue> ListValueImpl::Copy() {
  auto n = node();
  return n ? new ListValueImpl(CopyList(*n)) : nullptr;
}

bool ListValueImpl::SetSize(size_t size) {
  ListNode* n = Writable();
  if (!n || size > kMaxSize) {
    return false;
  }
  for (size_t i = size; i < n->items.size(); ++i) {
    ReleaseEntry(n->items[i]);
  }
  n->items.resize(size);
  return true;
}

size_t ListValueImpl::GetSize() {
  auto n = node();
  return n ? n->items.size() : 0;
}

bool ListValueImpl::Clear() {
  return SetSize(0);
}

bool ListValueImpl::Remove(size_t index) {
  ListNode* n = Writable();
  if (!n || index >= n->items.size()) {
    return false;
  }
  ReleaseEntry(n->items[index]);
  n->items.erase(n->items.begin() + static_cast<std::ptrdiff_t>(index));
  return true;
}

CefValueType ListValueImpl::GetType(size_t index) {
  const ValueEntry* entry = At(index);
  return entry ? EntryType(*entry) : VTYPE_INVALID;
}

CefRefPtr<CefValue> ListValueImpl::GetValue(size_t index) {
  const ValueEntry* entry = At(index);
  return entry ? WrapValue(*entry, node_->read_only) : nullptr;
}

bool ListValueImpl::GetBool(size_t index) {
  const ValueEntry* entry = At(index);
  return EntryBool(entry ? *entry : kNoEntry);
}

int ListValueImpl::GetInt(size_t index) {
  const ValueEntry* entry = At(index);
  return EntryInt(entry ? *entry : kNoEntry);
}

double ListValueImpl::GetDouble(size_t index) {
  const ValueEntry* entry = At(index);
  return EntryDouble(entry ? *entry : kNoEntry);
}

CefString ListValueImpl::GetString(size_t index) {
  const ValueEntry* entry = At(index);
  return EntryString(entry ? *entry : kNoEntry);
}

CefRefPtr<CefBinaryValue> ListValueImpl::GetBinary(size_t index) {
  const ValueEntry* entry = At(index);
  return entry ? WrapBinary(*entry) : nullptr;
}

CefRefPtr<CefDictionaryValue> ListValueImpl::GetDictionary(size_t index) {
  const ValueEntry* entry = At(index);
  return entry ? WrapDictionary(*entry) : nullptr;
}

CefRefPtr<CefListValue> ListValueImpl::GetList(size_t index) {
  const ValueEntry* entry = At(index);
  return entry ? WrapList(*entry) : nullptr;
}

bool ListValueImpl::SetValue(size_t index, CefRefPtr<CefValue> value) {
  ValueEntry entry;
  return Writable() && index < kMaxSize && TakeValue(value, node_.get(), &entry) &&
         Store(index, std::move(entry));
}

bool ListValueImpl::SetNull(size_t index) {
  return Store(index, ValueEntry());
}

bool ListValueImpl::SetBool(size_t index, bool value) {
  return Store(index, value);
}

bool ListValueImpl::SetInt(size_t index, int value) {
  return Store(index, value);
}

bool ListValueImpl::SetDouble(size_t index, double value) {
  return Store(index, value);
}

bool ListValueImpl::SetString(size_t index, const CefString& value) {
  return Store(index, value.ToString16());
}

bool ListValueImpl::SetBinary(size_t index, CefRefPtr<CefBinaryValue> value) {
  ValueEntry entry;
  return Writable() && index < kMaxSize && TakeBinary(value, node_.get(), &entry) &&
         Store(index, std::move(entry));
}

bool ListValueImpl::SetDictionary(size_t index,
                                  CefRefPtr<CefDictionaryValue> value) {
  ValueEntry entry;
  return Writable() && index < kMaxSize && TakeDictionary(value, node_.get(), &entry) &&
         Store(index, std::move(entry));
}

bool ListValueImpl::SetList(size_t index, CefRefPtr<CefListValue> value) {
  ValueEntry entry;
  return Writable() && index < kMaxSize && TakeList(value, node_.get(), &entry) &&
         Store(index, std::move(entry));
}

}  // namespace cefengine

CefRefPtr<CefListValue> CefListValue::Create() {
  return new cefengine::ListValueImpl(std::make_shared<cefengine::ListNode>());
}
