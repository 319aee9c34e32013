// CefDictionaryValue over a DictionaryNode of the value store.

#ifndef CEF_LIBCEF_DICTIONARY_VALUE_IMPL_H_
#define CEF_LIBCEF_DICTIONARY_VALUE_IMPL_H_

#include <memory>

#include "include/cef_values.h"
#include "libcef/value_store.h"

namespace cefengine {

class DictionaryValueImpl : public CefDictionaryValue {
 public:
  explicit DictionaryValueImpl(std::shared_ptr<DictionaryNode> node);

  // The referenced node while valid, else null.
  std::shared_ptr<DictionaryNode> node() const;
  // Drops the reference after the node moved into a container.
  void Detach() { node_.reset(); }

  bool IsValid() override;
  bool IsOwned() override;
  bool IsReadOnly() override;
  bool IsSame(CefRefPtr<CefDictionaryValue> that) override;
  bool IsEqual(CefRefPtr<CefDictionaryValue> that) override;
  CefRefPtr<CefDictionaryValue> Copy(bool exclude_empty_children) override;
  size_t GetSize() override;
  bool Clear() override;
  bool HasKey(const CefString& key) override;
  bool GetKeys(KeyList& keys) override;
  bool Remove(const CefString& key) override;
  CefValueType GetType(const CefString& key) override;
  CefRefPtr<CefValue> GetValue(const CefString& key) override;
  bool GetBool(const CefString& key) override;
  int GetInt(const CefString& key) override;
  double GetDouble(const CefString& key) override;
  CefString GetString(const CefString& key) override;
  CefRefPtr<CefBinaryValue> GetBinary(const CefString& key) override;
  CefRefPtr<CefDictionaryValue> GetDictionary(const CefString& key) override;
  CefRefPtr<CefListValue> GetList(const CefString& key) override;
  bool SetValue(const CefString& key, CefRefPtr<CefValue> value) override;
  bool SetNull(const CefString& key) override;
  bool SetBool(const CefString& key, bool value) override;
  bool SetInt(const CefString& key, int value) override;
  bool SetDouble(const CefString& key, double value) override;
  bool SetString(const CefString& key, const CefString& value) override;
  bool SetBinary(const CefString& key,
                 CefRefPtr<CefBinaryValue> value) override;
  bool SetDictionary(const CefString& key,
                     CefRefPtr<CefDictionaryValue> value) override;
  bool SetList(const CefString& key, CefRefPtr<CefListValue> value) override;

 private:
  // The entry under |key|, or null.
  const ValueEntry* Find(const CefString& key) const;
  // Null unless the node is valid and writable.
  DictionaryNode* Writable() const;
  // Replaces the entry under |key|, releasing the old one.
  bool Store(const CefString& key, ValueEntry entry);

  std::shared_ptr<DictionaryNode> node_;

  IMPLEMENT_REFCOUNTING(DictionaryValueImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_DICTIONARY_VALUE_IMPL_H_
