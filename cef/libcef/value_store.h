// The data model behind the CefValue family. Simple data is held inline;
// complex data (binary, dictionary, list) lives in nodes shared between the
// container that owns them and any wrappers referring to them. A node that
// leaves its container, or whose container is destroyed, is marked invalid
// so that references to it stop working, as CEF's values do.
// Not thread-safe: one thread at a time per tree.

#ifndef CEF_LIBCEF_VALUE_STORE_H_
#define CEF_LIBCEF_VALUE_STORE_H_

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "include/internal/cef_types.h"

namespace cefengine {

struct ValueNode {
  virtual ~ValueNode() = default;

  // The container node holding this one, for cycle checks.
  ValueNode* parent = nullptr;
  // Held by a container or by a process message.
  bool owned = false;
  bool valid = true;
  bool read_only = false;
};

struct BinaryNode;
struct DictionaryNode;
struct ListNode;

// One stored value; the alternatives follow cef_value_type_t from VTYPE_NULL.
using ValueEntry = std::variant<std::monostate,
                                bool,
                                int,
                                double,
                                std::u16string,
                                std::shared_ptr<BinaryNode>,
                                std::shared_ptr<DictionaryNode>,
                                std::shared_ptr<ListNode>>;

struct BinaryNode : ValueNode {
  std::vector<uint8_t> bytes;
};

struct DictionaryNode : ValueNode {
  ~DictionaryNode() override;
  // Keyed by UTF-8, which orders keys as Chromium does.
  std::map<std::string, ValueEntry> items;
};

struct ListNode : ValueNode {
  ~ListNode() override;
  std::vector<ValueEntry> items;
};

// The node of a complex entry, or null.
ValueNode* EntryNode(const ValueEntry& entry);

// VTYPE_NULL ... VTYPE_LIST; VTYPE_INVALID for complex data no longer valid.
cef_value_type_t EntryType(const ValueEntry& entry);

// Deep copies; the copies are unowned, valid and writable.
ValueEntry CopyEntry(const ValueEntry& entry, bool exclude_empty_children);
std::shared_ptr<BinaryNode> CopyBinary(const BinaryNode& node);
std::shared_ptr<DictionaryNode> CopyDictionary(const DictionaryNode& node,
                                               bool exclude_empty_children);
std::shared_ptr<ListNode> CopyList(const ListNode& node);

bool EntriesEqual(const ValueEntry& a, const ValueEntry& b);
bool BinariesEqual(const BinaryNode& a, const BinaryNode& b);
bool DictionariesEqual(const DictionaryNode& a, const DictionaryNode& b);
bool ListsEqual(const ListNode& a, const ListNode& b);

// Makes |container| the owner of |entry|'s node, if it has one.
void AdoptEntry(const ValueEntry& entry, ValueNode* container);

// Called when |entry| leaves its container: invalidates its node and the
// node's descendants.
void ReleaseEntry(const ValueEntry& entry);

// Marks |node| and its descendants invalid.
void InvalidateTree(ValueNode* node);

// Marks |node| and its descendants read-only.
void MarkTreeReadOnly(ValueNode* node);

// True if |node| is |container| or one of its ancestors.
bool IsSelfOrAncestor(const ValueNode* node, const ValueNode* container);

}  // namespace cefengine

#endif  // CEF_LIBCEF_VALUE_STORE_H_
