#include "libcef/value_impl.h"

#include "libcef/binary_value_impl.h"
#include "libcef/dictionary_value_impl.h"
#include "libcef/list_value_impl.h"
#include "libcef/value_access.h"

namespace cefengine {

ValueImpl::ValueImpl(ValueEntry entry, bool read_only)
    : entry_(std::move(entry)), read_only_(read_only) {}

bool ValueImpl::IsValid() {
  ValueNode* node = EntryNode(entry_);
  return !node || node->valid;
}

bool ValueImpl::IsOwned() {
  ValueNode* node = EntryNode(entry_);
  return node && node->valid && node->owned;
}

bool ValueImpl::IsReadOnly() {
  ValueNode* node = EntryNode(entry_);
  return read_only_ || (node && node->read_only);
}

bool ValueImpl::IsSame(CefRefPtr<CefValue> that) {
  if (!that || !IsValid() || !that->IsValid()) {
    return false;
  }
  if (that.get() == this) {
    return true;
  }
  ValueNode* node = EntryNode(entry_);
  return node &&
         node == EntryNode(static_cast<ValueImpl*>(that.get())->entry());
}

bool ValueImpl::IsEqual(CefRefPtr<CefValue> that) {
  if (!that || !IsValid() || !that->IsValid()) {
    return false;
  }
  return EntriesEqual(entry_, static_cast<ValueImpl*>(that.get())->entry());
}

CefRefPtr<CefValue> ValueImpl::Copy() {
  if (!IsValid()) {
    return nullptr;
  }
  return new ValueImpl(CopyEntry(entry_, false), false);
}

CefValueType ValueImpl::GetType() {
  return EntryType(entry_);
}

bool ValueImpl::GetBool() {
  return EntryBool(entry_);
}

int ValueImpl::GetInt() {
  return EntryInt(entry_);
}

double ValueImpl::GetDouble() {
  return EntryDouble(entry_);
}

CefString ValueImpl::GetString() {
  return EntryString(entry_);
}

CefRefPtr<CefBinaryValue> ValueImpl::GetBinary() {
  return WrapBinary(entry_);
}

CefRefPtr<CefDictionaryValue> ValueImpl::GetDictionary() {
  return WrapDictionary(entry_);
}

CefRefPtr<CefListValue> ValueImpl::GetList() {
  return WrapList(entry_);
}

bool ValueImpl::Assign(ValueEntry entry) {
  if (IsReadOnly()) {
    return false;
  }
  entry_ = std::move(entry);
  return true;
}

bool ValueImpl::SetNull() {
  return Assign(ValueEntry());
}

bool ValueImpl::SetBool(bool value) {
  return Assign(value);
}

bool ValueImpl::SetInt(int value) {
  return Assign(value);
}

bool ValueImpl::SetDouble(double value) {
  return Assign(value);
}

bool ValueImpl::SetString(const CefString& value) {
  return Assign(value.ToString16());
}

bool ValueImpl::SetBinary(CefRefPtr<CefBinaryValue> value) {
  auto node = value ? static_cast<BinaryValueImpl*>(value.get())->node()
                    : nullptr;
  return node && Assign(node);
}

bool ValueImpl::SetDictionary(CefRefPtr<CefDictionaryValue> value) {
  auto node = value ? static_cast<DictionaryValueImpl*>(value.get())->node()
                    : nullptr;
  return node && Assign(node);
}

bool ValueImpl::SetList(CefRefPtr<CefListValue> value) {
  auto node =
      value ? static_cast<ListValueImpl*>(value.get())->node() : nullptr;
  return node && Assign(node);
}

}  // namespace cefengine

CefRefPtr<CefValue> CefValue::Create() {
  return new cefengine::ValueImpl(cefengine::ValueEntry(), false);
}
