#include "libcef/value_store.h"

namespace cefengine {
namespace {

template <typename Fn>
void ForEachChildNode(ValueNode* node, Fn fn) {
  if (auto* dict = dynamic_cast<DictionaryNode*>(node)) {
    for (auto& item : dict->items) {
      if (ValueNode* child = EntryNode(item.second)) {
        fn(child);
      }
    }
  } else if (auto* list = dynamic_cast<ListNode*>(node)) {
    for (auto& item : list->items) {
      if (ValueNode* child = EntryNode(item)) {
        fn(child);
      }
    }
  }
}

bool IsEmptyContainer(const ValueEntry& entry) {
  if (auto* dict = std::get_if<std::shared_ptr<DictionaryNode>>(&entry)) {
    return (*dict)->items.empty();
  }
  if (auto* list = std::get_if<std::shared_ptr<ListNode>>(&entry)) {
    return (*list)->items.empty();
  }
  return false;
}

// Children of a destroyed container outlive it only through references,
// which must see them as invalid.
template <typename Items>
void OrphanChildren(Items& items) {
  for (auto& item : items) {
    ValueNode* child = nullptr;
    if constexpr (std::is_same_v<typename Items::value_type, ValueEntry>) {
      child = EntryNode(item);
    } else {
      child = EntryNode(item.second);
    }
    if (child) {
      child->parent = nullptr;
      child->owned = false;
      InvalidateTree(child);
    }
  }
}

}  // namespace

DictionaryNode::~DictionaryNode() {
  OrphanChildren(items);
}

ListNode::~ListNode() {
  OrphanChildren(items);
}

ValueNode* EntryNode(const ValueEntry& entry) {
  if (auto* binary = std::get_if<std::shared_ptr<BinaryNode>>(&entry)) {
    return binary->get();
  }
  if (auto* dict = std::get_if<std::shared_ptr<DictionaryNode>>(&entry)) {
    return dict->get();
  }
  if (auto* list = std::get_if<std::shared_ptr<ListNode>>(&entry)) {
    return list->get();
  }
  return nullptr;
}

cef_value_type_t EntryType(const ValueEntry& entry) {
  if (ValueNode* node = EntryNode(entry); node && !node->valid) {
    return VTYPE_INVALID;
  }
  return static_cast<cef_value_type_t>(VTYPE_NULL + entry.index());
}

std::shared_ptr<BinaryNode> CopyBinary(const BinaryNode& node) {
  auto copy = std::make_shared<BinaryNode>();
  copy->bytes = node.bytes;
  return copy;
}

std::shared_ptr<DictionaryNode> CopyDictionary(const DictionaryNode& node,
                                               bool exclude_empty_children) {
  auto copy = std::make_shared<DictionaryNode>();
  for (const auto& item : node.items) {
    ValueEntry child = CopyEntry(item.second, exclude_empty_children);
    if (exclude_empty_children && IsEmptyContainer(child)) {
      continue;
    }
    AdoptEntry(child, copy.get());
    copy->items.emplace(item.first, std::move(child));
  }
  return copy;
}

std::shared_ptr<ListNode> CopyList(const ListNode& node) {
  auto copy = std::make_shared<ListNode>();
  copy->items.reserve(node.items.size());
  for (const auto& item : node.items) {
    ValueEntry child = CopyEntry(item, false);
    AdoptEntry(child, copy.get());
    copy->items.push_back(std::move(child));
  }
  return copy;
}

ValueEntry CopyEntry(const ValueEntry& entry, bool exclude_empty_children) {
  if (auto* binary = std::get_if<std::shared_ptr<BinaryNode>>(&entry)) {
    return CopyBinary(**binary);
  }
  if (auto* dict = std::get_if<std::shared_ptr<DictionaryNode>>(&entry)) {
    return CopyDictionary(**dict, exclude_empty_children);
  }
  if (auto* list = std::get_if<std::shared_ptr<ListNode>>(&entry)) {
    return CopyList(**list);
  }
  return entry;
}

bool BinariesEqual(const BinaryNode& a, const BinaryNode& b) {
  return a.bytes == b.bytes;
}

bool DictionariesEqual(const DictionaryNode& a, const DictionaryNode& b) {
  if (a.items.size() != b.items.size()) {
    return false;
  }
  auto it_b = b.items.begin();
  for (const auto& item : a.items) {
    if (item.first != it_b->first || !EntriesEqual(item.second, it_b->second)) {
      return false;
    }
    ++it_b;
  }
  return true;
}

bool ListsEqual(const ListNode& a, const ListNode& b) {
  if (a.items.size() != b.items.size()) {
    return false;
  }
  for (size_t i = 0; i < a.items.size(); ++i) {
    if (!EntriesEqual(a.items[i], b.items[i])) {
      return false;
    }
  }
  return true;
}

bool EntriesEqual(const ValueEntry& a, const ValueEntry& b) {
  if (a.index() != b.index()) {
    return false;
  }
  if (auto* binary = std::get_if<std::shared_ptr<BinaryNode>>(&a)) {
    return BinariesEqual(**binary,
                         *std::get<std::shared_ptr<BinaryNode>>(b));
  }
  if (auto* dict = std::get_if<std::shared_ptr<DictionaryNode>>(&a)) {
    return DictionariesEqual(**dict,
                             *std::get<std::shared_ptr<DictionaryNode>>(b));
  }
  if (auto* list = std::get_if<std::shared_ptr<ListNode>>(&a)) {
    return ListsEqual(**list, *std::get<std::shared_ptr<ListNode>>(b));
  }
  return a == b;
}

void AdoptEntry(const ValueEntry& entry, ValueNode* container) {
  if (ValueNode* node = EntryNode(entry)) {
    node->parent = container;
    node->owned = true;
  }
}

void ReleaseEntry(const ValueEntry& entry) {
  if (ValueNode* node = EntryNode(entry)) {
    node->parent = nullptr;
    node->owned = false;
    InvalidateTree(node);
  }
}

void InvalidateTree(ValueNode* node) {
  node->valid = false;
  ForEachChildNode(node, [](ValueNode* child) { InvalidateTree(child); });
}

void MarkTreeReadOnly(ValueNode* node) {
  node->read_only = true;
  ForEachChildNode(node, [](ValueNode* child) { MarkTreeReadOnly(child); });
}

bool IsSelfOrAncestor(const ValueNode* node, const ValueNode* container) {
  for (const ValueNode* p = container; p; p = p->parent) {
    if (p == node) {
      return true;
    }
  }
  return false;
}

}  // namespace cefengine
