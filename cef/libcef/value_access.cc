#include "libcef/value_access.h"

#include "libcef/binary_value_impl.h"
#include "libcef/dictionary_value_impl.h"
#include "libcef/list_value_impl.h"
#include "libcef/value_impl.h"

namespace cefengine {
namespace {

// Moves |node| into a container unless it is owned or would create a cycle,
// in which case a copy goes in. Returns whether |node| itself was taken.
template <typename Node, typename CopyFn>
bool MoveOrCopy(const std::shared_ptr<Node>& node,
                const ValueNode* container,
                ValueEntry* out,
                CopyFn copy) {
  if (node->owned || IsSelfOrAncestor(node.get(), container)) {
    *out = copy(*node);
    return false;
  }
  *out = node;
  return true;
}

}  // namespace

bool TakeBinary(CefRefPtr<CefBinaryValue> value,
                const ValueNode* container,
                ValueEntry* out) {
  auto* impl = static_cast<BinaryValueImpl*>(value.get());
  auto node = impl ? impl->node() : nullptr;
  if (!node) {
    return false;
  }
  if (MoveOrCopy(node, container, out,
                 [](const BinaryNode& n) { return CopyBinary(n); })) {
    impl->Detach();
  }
  return true;
}

bool TakeDictionary(CefRefPtr<CefDictionaryValue> value,
                    const ValueNode* container,
                    ValueEntry* out) {
  auto* impl = static_cast<DictionaryValueImpl*>(value.get());
  auto node = impl ? impl->node() : nullptr;
  if (!node) {
    return false;
  }
  if (MoveOrCopy(node, container, out, [](const DictionaryNode& n) {
        return CopyDictionary(n, false);
      })) {
    impl->Detach();
  }
  return true;
}

bool TakeList(CefRefPtr<CefListValue> value,
              const ValueNode* container,
              ValueEntry* out) {
  auto* impl = static_cast<ListValueImpl*>(value.get());
  auto node = impl ? impl->node() : nullptr;
  if (!node) {
    return false;
  }
  if (MoveOrCopy(node, container, out,
                 [](const ListNode& n) { return CopyList(n); })) {
    impl->Detach();
  }
  return true;
}

bool TakeValue(CefRefPtr<CefValue> value,
               const ValueNode* container,
               ValueEntry* out) {
  auto* impl = static_cast<ValueImpl*>(value.get());
  if (!impl || !impl->IsValid()) {
    return false;
  }
  ValueNode* node = EntryNode(impl->entry());
  if (!node) {
    *out = impl->entry();
    return true;
  }
  if (node->owned || IsSelfOrAncestor(node, container)) {
    *out = CopyEntry(impl->entry(), false);
    impl->Rebind(*out);
  } else {
    *out = impl->entry();
  }
  return true;
}

CefRefPtr<CefValue> WrapValue(const ValueEntry& entry, bool read_only) {
  // Simple data is copied by value; complex data is shared with the node.
  return new ValueImpl(entry, read_only);
}

CefRefPtr<CefBinaryValue> WrapBinary(const ValueEntry& entry) {
  auto* node = std::get_if<std::shared_ptr<BinaryNode>>(&entry);
  return (node && (*node)->valid) ? new BinaryValueImpl(*node) : nullptr;
}

CefRefPtr<CefDictionaryValue> WrapDictionary(const ValueEntry& entry) {
  auto* node = std::get_if<std::shared_ptr<DictionaryNode>>(&entry);
  return (node && (*node)->valid) ? new DictionaryValueImpl(*node) : nullptr;
}

CefRefPtr<CefListValue> WrapList(const ValueEntry& entry) {
  auto* node = std::get_if<std::shared_ptr<ListNode>>(&entry);
  return (node && (*node)->valid) ? new ListValueImpl(*node) : nullptr;
}

bool EntryBool(const ValueEntry& entry) {
  auto* value = std::get_if<bool>(&entry);
  return value ? *value : false;
}

int EntryInt(const ValueEntry& entry) {
  auto* value = std::get_if<int>(&entry);
  return value ? *value : 0;
}

double EntryDouble(const ValueEntry& entry) {
  if (auto* value = std::get_if<double>(&entry)) {
    return *value;
  }
  if (auto* value = std::get_if<int>(&entry)) {
    return *value;
  }
  return 0.0;
}

CefString EntryString(const ValueEntry& entry) {
  auto* value = std::get_if<std::u16string>(&entry);
  return value ? CefString(*value) : CefString();
}

CefRefPtr<CefDictionaryValue> ReadOnlyCopy(
    CefRefPtr<CefDictionaryValue> value) {
  auto node =
      value ? static_cast<DictionaryValueImpl*>(value.get())->node() : nullptr;
  if (!node) {
    return nullptr;
  }
  auto copy = CopyDictionary(*node, false);
  MarkTreeReadOnly(copy.get());
  return new DictionaryValueImpl(copy);
}

CefRefPtr<CefListValue> ReadOnlyCopy(CefRefPtr<CefListValue> value) {
  auto node =
      value ? static_cast<ListValueImpl*>(value.get())->node() : nullptr;
  if (!node) {
    return nullptr;
  }
  auto copy = CopyList(*node);
  MarkTreeReadOnly(copy.get());
  return new ListValueImpl(copy);
}

}  // namespace cefengine
