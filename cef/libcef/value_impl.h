// CefValue: one entry of the value store, held on its own.

#ifndef CEF_LIBCEF_VALUE_IMPL_H_
#define CEF_LIBCEF_VALUE_IMPL_H_

#include "include/cef_values.h"
#include "libcef/value_store.h"

namespace cefengine {

class ValueImpl : public CefValue {
 public:
  ValueImpl(ValueEntry entry, bool read_only);

  const ValueEntry& entry() const { return entry_; }
  // Points this value at |entry| (used when a container stored a copy).
  void Rebind(ValueEntry entry) { entry_ = std::move(entry); }

  bool IsValid() override;
  bool IsOwned() override;
  bool IsReadOnly() override;
  bool IsSame(CefRefPtr<CefValue> that) override;
  bool IsEqual(CefRefPtr<CefValue> that) override;
  CefRefPtr<CefValue> Copy() override;
  CefValueType GetType() override;
  bool GetBool() override;
  int GetInt() override;
  double GetDouble() override;
  CefString GetString() override;
  CefRefPtr<CefBinaryValue> GetBinary() override;
  CefRefPtr<CefDictionaryValue> GetDictionary() override;
  CefRefPtr<CefListValue> GetList() override;
  bool SetNull() override;
  bool SetBool(bool value) override;
  bool SetInt(int value) override;
  bool SetDouble(double value) override;
  bool SetString(const CefString& value) override;
  bool SetBinary(CefRefPtr<CefBinaryValue> value) override;
  bool SetDictionary(CefRefPtr<CefDictionaryValue> value) override;
  bool SetList(CefRefPtr<CefListValue> value) override;

 private:
  bool Assign(ValueEntry entry);

  ValueEntry entry_;
  // Set for values read out of a read-only container.
  bool read_only_;

  IMPLEMENT_REFCOUNTING(ValueImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_VALUE_IMPL_H_
