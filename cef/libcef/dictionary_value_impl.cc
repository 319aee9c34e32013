#include "libcef/dictionary_value_impl.h"

#include "libcef/value_access.h"

namespace cefengine {
namespace {

std::shared_ptr<DictionaryNode> NodeOf(
    const CefRefPtr<CefDictionaryValue>& value) {
  return value ? static_cast<DictionaryValueImpl*>(value.get())->node()
               : nullptr;
}

const ValueEntry kNoEntry;

}  // namespace

DictionaryValueImpl::DictionaryValueImpl(std::shared_ptr<DictionaryNode> node)
    : node_(std::move(node)) {}

std::shared_ptr<DictionaryNode> DictionaryValueImpl::node() const {
  return (node_ && node_->valid) ? node_ : nullptr;
}

DictionaryNode* DictionaryValueImpl::Writable() const {
  auto n = node();
  return (n && !n->read_only) ? n.get() : nullptr;
}

const ValueEntry* DictionaryValueImpl::Find(const CefString& key) const {
  auto n = node();
  if (!n) {
    return nullptr;
  }
  auto it = n->items.find(key.ToString());
  return it == n->items.end() ? nullptr : &it->second;
}

bool DictionaryValueImpl::Store(const CefString& key, ValueEntry entry) {
  DictionaryNode* n = Writable();
  if (!n) {
    return false;
  }
  AdoptEntry(entry, n);
  ValueEntry& slot = n->items[key.ToString()];
  ReleaseEntry(slot);
  slot = std::move(entry);
  return true;
}

bool DictionaryValueImpl::IsValid() {
  return node() != nullptr;
}

bool DictionaryValueImpl::IsOwned() {
  auto n = node();
  return n && n->owned;
}

bool DictionaryValueImpl::IsReadOnly() {
  auto n = node();
  return !n || n->read_only;
}

bool DictionaryValueImpl::IsSame(CefRefPtr<CefDictionaryValue> that) {
  auto n = node();
  return n && n == NodeOf(that);
}

bool DictionaryValueImpl::IsEqual(CefRefPtr<CefDictionaryValue> that) {
  auto n = node();
  auto other = NodeOf(that);
  return n && other && DictionariesEqual(*n, *other);
}

CefRefPtr<CefDictionaryValue> DictionaryValueImpl::Copy(
    bool exclude_empty_children) {
  auto n = node();
  return n ? new DictionaryValueImpl(
                 CopyDictionary(*n, exclude_empty_children))
           : nullptr;
}

size_t DictionaryValueImpl::GetSize() {
  auto n = node();
  return n ? n->items.size() : 0;
}

bool DictionaryValueImpl::Clear() {
  DictionaryNode* n = Writable();
  if (!n) {
    return false;
  }
  for (const auto& item : n->items) {
    ReleaseEntry(item.second);
  }
  n->items.clear();
  return true;
}

bool DictionaryValueImpl::HasKey(const CefString& key) {
  return Find(key) != nullptr;
}

bool DictionaryValueImpl::GetKeys(KeyList& keys) {
  auto n = node();
  if (!n) {
    return false;
  }
  for (const auto& item : n->items) {
    keys.push_back(CefString(item.first));
  }
  return true;
}

bool DictionaryValueImpl::Remove(const CefString& key) {
  DictionaryNode* n = Writable();
  if (!n) {
    return false;
  }
  auto it = n->items.find(key.ToString());
  if (it == n->items.end()) {
    return false;
  }
  ReleaseEntry(it->second);
  n->items.erase(it);
  return true;
}

CefValueType DictionaryValueImpl::GetType(const CefString& key) {
  const ValueEntry* entry = Find(key);
  return entry ? EntryType(*entry) : VTYPE_INVALID;
}

CefRefPtr<CefValue> DictionaryValueImpl::GetValue(const CefString& key) {
  const ValueEntry* entry = Find(key);
  return entry ? WrapValue(*entry, node_->read_only) : nullptr;
}

bool DictionaryValueImpl::GetBool(const CefString& key) {
  const ValueEntry* entry = Find(key);
  return EntryBool(entry ? *entry : kNoEntry);
}

int DictionaryValueImpl::GetInt(const CefString& key) {
  const ValueEntry* entry = Find(key);
  return EntryInt(entry ? *entry : kNoEntry);
}

double DictionaryValueImpl::GetDouble(const CefString& key) {
  const ValueEntry* entry = Find(key);
  return EntryDouble(entry ? *entry : kNoEntry);
}

CefString DictionaryValueImpl::GetString(const CefString& key) {
  const ValueEntry* entry = Find(key);
  return EntryString(entry ? *entry : kNoEntry);
}

CefRefPtr<CefBinaryValue> DictionaryValueImpl::GetBinary(
    const CefString& key) {
  const ValueEntry* entry = Find(key);
  return entry ? WrapBinary(*entry) : nullptr;
}

CefRefPtr<CefDictionaryValue> DictionaryValueImpl::GetDictionary(
    const CefString& key) {
  const ValueEntry* entry = Find(key);
  return entry ? WrapDictionary(*entry) : nullptr;
}

CefRefPtr<CefListValue> DictionaryValueImpl::GetList(const CefString& key) {
  const ValueEntry* entry = Find(key);
  return entry ? WrapList(*entry) : nullptr;
}

bool DictionaryValueImpl::SetValue(const CefString& key,
                                   CefRefPtr<CefValue> value) {
  ValueEntry entry;
  return Writable() && TakeValue(value, node_.get(), &entry) &&
         Store(key, std::move(entry));
}

bool DictionaryValueImpl::SetNull(const CefString& key) {
  return Store(key, ValueEntry());
}

bool DictionaryValueImpl::SetBool(const CefString& key, bool value) {
  return Store(key, value);
}

bool DictionaryValueImpl::SetInt(const CefString& key, int value) {
  return Store(key, value);
}

bool DictionaryValueImpl::SetDouble(const CefString& key, double value) {
  return Store(key, value);
}

bool DictionaryValueImpl::SetString(const CefString& key,
                                    const CefString& value) {
  return Store(key, value.ToString16());
}

bool DictionaryValueImpl::SetBinary(const CefString& key,
                                    CefRefPtr<CefBinaryValue> value) {
  ValueEntry entry;
  return Writable() && TakeBinary(value, node_.get(), &entry) &&
         Store(key, std::move(entry));
}

bool DictionaryValueImpl::SetDictionary(const CefString& key,
                                        CefRefPtr<CefDictionaryValue> value) {
  ValueEntry entry;
  return Writable() && TakeDictionary(value, node_.get(), &entry) &&
         Store(key, std::move(entry));
}

bool DictionaryValueImpl::SetList(const CefString& key,
                                  CefRefPtr<CefListValue> value) {
  ValueEntry entry;
  return Writable() && TakeList(value, node_.get(), &entry) &&
         Store(key, std::move(entry));
}

}  // namespace cefengine

CefRefPtr<CefDictionaryValue> CefDictionaryValue::Create() {
  return new cefengine::DictionaryValueImpl(
      std::make_shared<cefengine::DictionaryNode>());
}
