// CefListValue over a ListNode of the value store.

#ifndef CEF_LIBCEF_LIST_VALUE_IMPL_H_
#define CEF_LIBCEF_LIST_VALUE_IMPL_H_

#include <memory>

#include "include/cef_values.h"
#include "libcef/value_store.h"

namespace cefengine {

class ListValueImpl : public CefListValue {
 public:
  // Lists refuse to grow past this many entries (SetSize or Set* past the
  // end return false) rather than exhaust memory on a bad index.
  static constexpr size_t kMaxSize = size_t{1} << 24;

  explicit ListValueImpl(std::shared_ptr<ListNode> node);

  // The referenced node while valid, else null.
  std::shared_ptr<ListNode> node() const;
  // Drops the reference after the node moved into a container.
  void Detach() { node_.reset(); }

  bool IsValid() override;
  bool IsOwned() override;
  bool IsReadOnly() override;
  bool IsSame(CefRefPtr<CefListValue> that) override;
  bool IsEqual(CefRefPtr<CefListValue> that) override;
  CefRefPtr<CefListValue> Copy() override;
  bool SetSize(size_t size) override;
  size_t GetSize() override;
  bool Clear() override;
  bool Remove(size_t index) override;
  CefValueType GetType(size_t index) override;
  CefRefPtr<CefValue> GetValue(size_t index) override;
  bool GetBool(size_t index) override;
  int GetInt(size_t index) override;
  double GetDouble(size_t index) override;
  CefString GetString(size_t index) override;
  CefRefPtr<CefBinaryValue> GetBinary(size_t index) override;
  CefRefPtr<CefDictionaryValue> GetDictionary(size_t index) override;
  CefRefPtr<CefListValue> GetList(size_t index) override;
  bool SetValue(size_t index, CefRefPtr<CefValue> value) override;
  bool SetNull(size_t index) override;
  bool SetBool(size_t index, bool value) override;
  bool SetInt(size_t index, int value) override;
  bool SetDouble(size_t index, double value) override;
  bool SetString(size_t index, const CefString& value) override;
  bool SetBinary(size_t index, CefRefPtr<CefBinaryValue> value) override;
  bool SetDictionary(size_t index,
                     CefRefPtr<CefDictionaryValue> value) override;
  bool SetList(size_t index, CefRefPtr<CefListValue> value) override;

 private:
  const ValueEntry* At(size_t index) const;
  // Null unless the node is valid and writable.
  ListNode* Writable() const;
  // Replaces the entry at |index|, growing the list with nulls if needed.
  bool Store(size_t index, ValueEntry entry);

  std::shared_ptr<ListNode> node_;

  IMPLEMENT_REFCOUNTING(ListValueImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_LIST_VALUE_IMPL_H_
