// Moves data between the CefValue family's wrappers and the value store, with
// CEF's ownership rules. Also the engine's helpers for handing values to
// client code read-only.

#ifndef CEF_LIBCEF_VALUE_ACCESS_H_
#define CEF_LIBCEF_VALUE_ACCESS_H_

#include "include/cef_values.h"
#include "libcef/value_store.h"

namespace cefengine {

// Prepare a complex value for storage in |container|. Data nobody owns is
// moved (the wrapper passed in becomes invalid); data owned elsewhere, or that
// would make a cycle, is copied. Return false for null or invalid values.
bool TakeBinary(CefRefPtr<CefBinaryValue> value,
                const ValueNode* container,
                ValueEntry* out);
bool TakeDictionary(CefRefPtr<CefDictionaryValue> value,
                    const ValueNode* container,
                    ValueEntry* out);
bool TakeList(CefRefPtr<CefListValue> value,
              const ValueNode* container,
              ValueEntry* out);

// Prepare |value|'s data for storage in |container|: simple data is copied;
// complex data is shared with |value|, or copied if owned elsewhere, in which
// case |value| is rebound to the copy.
bool TakeValue(CefRefPtr<CefValue> value,
               const ValueNode* container,
               ValueEntry* out);

// Wrappers for an entry read from a container. Simple data is copied into the
// CefValue; complex data is referenced. The typed ones return nullptr when the
// entry holds another type or is no longer valid.
CefRefPtr<CefValue> WrapValue(const ValueEntry& entry, bool read_only);
CefRefPtr<CefBinaryValue> WrapBinary(const ValueEntry& entry);
CefRefPtr<CefDictionaryValue> WrapDictionary(const ValueEntry& entry);
CefRefPtr<CefListValue> WrapList(const ValueEntry& entry);

// Typed reads with CEF's defaults for other types. EntryDouble also accepts
// an int.
bool EntryBool(const ValueEntry& entry);
int EntryInt(const ValueEntry& entry);
double EntryDouble(const ValueEntry& entry);
CefString EntryString(const ValueEntry& entry);

// Deep copies that client code cannot modify, for values the engine passes to
// handlers. Return nullptr for null or invalid input.
CefRefPtr<CefDictionaryValue> ReadOnlyCopy(CefRefPtr<CefDictionaryValue> value);
CefRefPtr<CefListValue> ReadOnlyCopy(CefRefPtr<CefListValue> value);

}  // namespace cefengine

#endif  // CEF_LIBCEF_VALUE_ACCESS_H_
