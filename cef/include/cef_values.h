// Typed value containers: CefValue (any one value), CefBinaryValue (bytes),
// CefDictionaryValue (string keys) and CefListValue (indexes).
//
// Ownership follows CEF: simple data (null, bool, int, double, string) is
// always copied. Complex data (binary, dictionary, list) lives in exactly one
// place. Setting a complex value that nobody owns into a container moves it
// there and invalidates the reference passed in; setting one already owned
// elsewhere copies it. Getting a complex child returns a reference into the
// container: changes through it change the container, and it becomes invalid
// (IsValid() == false) once the container drops the child or is destroyed.
// Values handed to handlers by the engine are read-only; Set* then fails.
// A value and everything reachable from it is used by one thread at a time.

#ifndef CEF_INCLUDE_CEF_VALUES_H_
#define CEF_INCLUDE_CEF_VALUES_H_
#pragma once

#include <vector>

#include "include/cef_base.h"

class CefBinaryValue;
class CefDictionaryValue;
class CefListValue;

typedef cef_value_type_t CefValueType;

// Holds one value of any type.
class CefValue : public virtual CefBaseRefCounted {
 public:
  // A new value of type VTYPE_NULL.
  static CefRefPtr<CefValue> Create();

  // False once complex data referenced by this value was dropped by its
  // owner. Set*() can still reuse the object.
  virtual bool IsValid() = 0;
  // True if the referenced complex data belongs to a container.
  virtual bool IsOwned() = 0;
  virtual bool IsReadOnly() = 0;
  // True if both refer to the same data, so changes show in both.
  virtual bool IsSame(CefRefPtr<CefValue> that) = 0;
  // True if both hold equal contents.
  virtual bool IsEqual(CefRefPtr<CefValue> that) = 0;
  // A deep, writable copy.
  virtual CefRefPtr<CefValue> Copy() = 0;

  virtual CefValueType GetType() = 0;

  // Getters return the type's default (false, 0, empty, nullptr) when the
  // value holds another type.
  virtual bool GetBool() = 0;
  virtual int GetInt() = 0;
  virtual double GetDouble() = 0;
  virtual CefString GetString() = 0;
  // The complex getters return references to the held data.
  virtual CefRefPtr<CefBinaryValue> GetBinary() = 0;
  virtual CefRefPtr<CefDictionaryValue> GetDictionary() = 0;
  virtual CefRefPtr<CefListValue> GetList() = 0;

  // Setters return false if the value is read-only.
  virtual bool SetNull() = 0;
  virtual bool SetBool(bool value) = 0;
  virtual bool SetInt(int value) = 0;
  virtual bool SetDouble(double value) = 0;
  virtual bool SetString(const CefString& value) = 0;
  // These keep a reference to |value|; its ownership does not change.
  virtual bool SetBinary(CefRefPtr<CefBinaryValue> value) = 0;
  virtual bool SetDictionary(CefRefPtr<CefDictionaryValue> value) = 0;
  virtual bool SetList(CefRefPtr<CefListValue> value) = 0;
};

// An immutable block of bytes.
class CefBinaryValue : public virtual CefBaseRefCounted {
 public:
  // Copies |data_size| bytes of |data|. Returns nullptr if |data| is null or
  // |data_size| is 0.
  static CefRefPtr<CefBinaryValue> Create(const void* data, size_t data_size);

  virtual bool IsValid() = 0;
  virtual bool IsOwned() = 0;
  virtual bool IsSame(CefRefPtr<CefBinaryValue> that) = 0;
  virtual bool IsEqual(CefRefPtr<CefBinaryValue> that) = 0;
  virtual CefRefPtr<CefBinaryValue> Copy() = 0;

  // The bytes, valid while this value is; nullptr when invalid.
  virtual const void* GetRawData() = 0;
  virtual size_t GetSize() = 0;

  // Copies up to |buffer_size| bytes starting at |data_offset| into |buffer|
  // and returns how many were copied.
  virtual size_t GetData(void* buffer,
                         size_t buffer_size,
                         size_t data_offset) = 0;
};

// A map from string keys to values, kept in key order.
class CefDictionaryValue : public virtual CefBaseRefCounted {
 public:
  typedef std::vector<CefString> KeyList;

  static CefRefPtr<CefDictionaryValue> Create();

  virtual bool IsValid() = 0;
  virtual bool IsOwned() = 0;
  virtual bool IsReadOnly() = 0;
  virtual bool IsSame(CefRefPtr<CefDictionaryValue> that) = 0;
  virtual bool IsEqual(CefRefPtr<CefDictionaryValue> that) = 0;
  // A deep, writable copy; with |exclude_empty_children| empty dictionaries
  // and lists are left out.
  virtual CefRefPtr<CefDictionaryValue> Copy(bool exclude_empty_children) = 0;

  virtual size_t GetSize() = 0;
  virtual bool Clear() = 0;
  virtual bool HasKey(const CefString& key) = 0;
  // Appends the keys, in order, to |keys|.
  virtual bool GetKeys(KeyList& keys) = 0;
  virtual bool Remove(const CefString& key) = 0;
  // VTYPE_INVALID for a missing key.
  virtual CefValueType GetType(const CefString& key) = 0;

  // Simple data comes back as a copy; complex data as a reference.
  virtual CefRefPtr<CefValue> GetValue(const CefString& key) = 0;
  virtual bool GetBool(const CefString& key) = 0;
  virtual int GetInt(const CefString& key) = 0;
  virtual double GetDouble(const CefString& key) = 0;
  virtual CefString GetString(const CefString& key) = 0;
  virtual CefRefPtr<CefBinaryValue> GetBinary(const CefString& key) = 0;
  virtual CefRefPtr<CefDictionaryValue> GetDictionary(const CefString& key) = 0;
  virtual CefRefPtr<CefListValue> GetList(const CefString& key) = 0;

  // Stores |value|'s data: simple data is copied, complex data is shared
  // with |value| (or copied if another container owns it).
  virtual bool SetValue(const CefString& key, CefRefPtr<CefValue> value) = 0;
  virtual bool SetNull(const CefString& key) = 0;
  virtual bool SetBool(const CefString& key, bool value) = 0;
  virtual bool SetInt(const CefString& key, int value) = 0;
  virtual bool SetDouble(const CefString& key, double value) = 0;
  virtual bool SetString(const CefString& key, const CefString& value) = 0;
  // Moves an unowned |value| in (invalidating |value|) or copies an owned one.
  virtual bool SetBinary(const CefString& key,
                         CefRefPtr<CefBinaryValue> value) = 0;
  virtual bool SetDictionary(const CefString& key,
                             CefRefPtr<CefDictionaryValue> value) = 0;
  virtual bool SetList(const CefString& key, CefRefPtr<CefListValue> value) = 0;
};

// A sequence of values. Setting past the end grows the list with nulls.
class CefListValue : public virtual CefBaseRefCounted {
 public:
  static CefRefPtr<CefListValue> Create();

  virtual bool IsValid() = 0;
  virtual bool IsOwned() = 0;
  virtual bool IsReadOnly() = 0;
  virtual bool IsSame(CefRefPtr<CefListValue> that) = 0;
  virtual bool IsEqual(CefRefPtr<CefListValue> that) = 0;
  virtual CefRefPtr<CefListValue> Copy() = 0;

  // Grows with nulls or shrinks to |size| entries.
  virtual bool SetSize(size_t size) = 0;
  virtual size_t GetSize() = 0;
  virtual bool Clear() = 0;
  // Removes the entry at |index|; later entries move down.
  virtual bool Remove(size_t index) = 0;
  // VTYPE_INVALID for an index out of range.
  virtual CefValueType GetType(size_t index) = 0;

  virtual CefRefPtr<CefValue> GetValue(size_t index) = 0;
  virtual bool GetBool(size_t index) = 0;
  virtual int GetInt(size_t index) = 0;
  virtual double GetDouble(size_t index) = 0;
  virtual CefString GetString(size_t index) = 0;
  virtual CefRefPtr<CefBinaryValue> GetBinary(size_t index) = 0;
  virtual CefRefPtr<CefDictionaryValue> GetDictionary(size_t index) = 0;
  virtual CefRefPtr<CefListValue> GetList(size_t index) = 0;

  virtual bool SetValue(size_t index, CefRefPtr<CefValue> value) = 0;
  virtual bool SetNull(size_t index) = 0;
  virtual bool SetBool(size_t index, bool value) = 0;
  virtual bool SetInt(size_t index, int value) = 0;
  virtual bool SetDouble(size_t index, double value) = 0;
  virtual bool SetString(size_t index, const CefString& value) = 0;
  virtual bool SetBinary(size_t index, CefRefPtr<CefBinaryValue> value) = 0;
  virtual bool SetDictionary(size_t index,
                             CefRefPtr<CefDictionaryValue> value) = 0;
  virtual bool SetList(size_t index, CefRefPtr<CefListValue> value) = 0;
};

#endif  // CEF_INCLUDE_CEF_VALUES_H_
