// CefStringBase<traits>: a C++ wrapper around one of the C string structs of
// cef_string_types.h. The wrapper either owns its struct or is attached to a
// struct owned by someone else (for instance a cef_string_t field inside a
// settings struct); writing through an attached wrapper writes that struct:
//   CefString(&settings.cache_path) = "/tmp/cache";
// Conversions to and from std::string (UTF-8), std::u16string (UTF-16) and
// std::wstring (UTF-32 on Linux) go through the C conversion functions.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_WRAPPERS_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_WRAPPERS_H_
#pragma once

#include <cstring>
#include <string>
#include <utility>

#include "include/base/cef_build.h"
#include "include/internal/cef_string_types.h"

namespace cef_string_internal {

// Runs |convert| into a temporary C struct of |Out| and returns its text as a
// std::basic_string; the temporary is cleared afterwards.
template <typename OutStruct, typename OutChar, typename Convert>
inline std::basic_string<OutChar> ConvertToStd(Convert convert,
                                               void (*clear)(OutStruct*)) {
  OutStruct cstr;
  memset(&cstr, 0, sizeof(cstr));
  convert(&cstr);
  std::basic_string<OutChar> result;
  if (cstr.length > 0) {
    result.assign(cstr.str, cstr.length);
  }
  clear(&cstr);
  return result;
}

}  // namespace cef_string_internal

struct CefStringTraitsWide {
  typedef wchar_t char_type;
  typedef cef_string_wide_t struct_type;
  typedef cef_string_userfree_wide_t userfree_struct_type;

  static inline void clear(struct_type* s) { cef_string_wide_clear(s); }
  static inline int set(const char_type* src,
                        size_t src_size,
                        struct_type* output,
                        int copy) {
    return cef_string_wide_set(src, src_size, output, copy);
  }
  static inline int compare(const struct_type* s1, const struct_type* s2) {
    return cef_string_wide_cmp(s1, s2);
  }
  static inline userfree_struct_type userfree_alloc() {
    return cef_string_userfree_wide_alloc();
  }
  static inline void userfree_free(userfree_struct_type ufs) {
    cef_string_userfree_wide_free(ufs);
  }
  static inline bool from_ascii(const char* str, size_t len, struct_type* s) {
    return cef_string_ascii_to_wide(str, len, s) != 0;
  }
  static inline std::string to_string(const struct_type* s) {
    return cef_string_internal::ConvertToStd<cef_string_utf8_t, char>(
        [s](cef_string_utf8_t* out) {
          cef_string_wide_to_utf8(s->str, s->length, out);
        },
        cef_string_utf8_clear);
  }
  static inline bool from_string(const std::string::value_type* data,
                                 size_t length,
                                 struct_type* s) {
    return cef_string_utf8_to_wide(data, length, s) != 0;
  }
  static inline bool from_string(const std::string& str, struct_type* s) {
    return from_string(str.data(), str.length(), s);
  }
  static inline std::wstring to_wstring(const struct_type* s) {
    return std::wstring(s->str, s->length);
  }
  static inline bool from_wstring(const std::wstring::value_type* data,
                                  size_t length,
                                  struct_type* s) {
    return cef_string_wide_set(data, length, s, true) != 0;
  }
  static inline bool from_wstring(const std::wstring& str, struct_type* s) {
    return from_wstring(str.data(), str.length(), s);
  }
  static inline std::u16string to_string16(const struct_type* s) {
    return cef_string_internal::ConvertToStd<cef_string_utf16_t, char16_t>(
        [s](cef_string_utf16_t* out) {
          cef_string_wide_to_utf16(s->str, s->length, out);
        },
        cef_string_utf16_clear);
  }
  static inline bool from_string16(const std::u16string::value_type* data,
                                   size_t length,
                                   struct_type* s) {
    return cef_string_utf16_to_wide(data, length, s) != 0;
  }
  static inline bool from_string16(const std::u16string& str, struct_type* s) {
    return from_string16(str.data(), str.length(), s);
  }
};

struct CefStringTraitsUTF8 {
  typedef char char_type;
  typedef cef_string_utf8_t struct_type;
  typedef cef_string_userfree_utf8_t userfree_struct_type;

  static inline void clear(struct_type* s) { cef_string_utf8_clear(s); }
  static inline int set(const char_type* src,
                        size_t src_size,
                        struct_type* output,
                        int copy) {
    return cef_string_utf8_set(src, src_size, output, copy);
  }
  static inline int compare(const struct_type* s1, const struct_type* s2) {
    return cef_string_utf8_cmp(s1, s2);
  }
  static inline userfree_struct_type userfree_alloc() {
    return cef_string_userfree_utf8_alloc();
  }
  static inline void userfree_free(userfree_struct_type ufs) {
    cef_string_userfree_utf8_free(ufs);
  }
  static inline bool from_ascii(const char* str, size_t len, struct_type* s) {
    return cef_string_utf8_copy(str, len, s) != 0;
  }
  static inline std::string to_string(const struct_type* s) {
    return std::string(s->str, s->length);
  }
  static inline bool from_string(const std::string::value_type* data,
                                 size_t length,
                                 struct_type* s) {
    return cef_string_utf8_copy(data, length, s) != 0;
  }
  static inline bool from_string(const std::string& str, struct_type* s) {
    return from_string(str.data(), str.length(), s);
  }
  static inline std::wstring to_wstring(const struct_type* s) {
    return cef_string_internal::ConvertToStd<cef_string_wide_t, wchar_t>(
        [s](cef_string_wide_t* out) {
          cef_string_utf8_to_wide(s->str, s->length, out);
        },
        cef_string_wide_clear);
  }
  static inline bool from_wstring(const std::wstring::value_type* data,
                                  size_t length,
                                  struct_type* s) {
    return cef_string_wide_to_utf8(data, length, s) != 0;
  }
  static inline bool from_wstring(const std::wstring& str, struct_type* s) {
    return from_wstring(str.data(), str.length(), s);
  }
  static inline std::u16string to_string16(const struct_type* s) {
    return cef_string_internal::ConvertToStd<cef_string_utf16_t, char16_t>(
        [s](cef_string_utf16_t* out) {
          cef_string_utf8_to_utf16(s->str, s->length, out);
        },
        cef_string_utf16_clear);
  }
  static inline bool from_string16(const std::u16string::value_type* data,
                                   size_t length,
                                   struct_type* s) {
    return cef_string_utf16_to_utf8(data, length, s) != 0;
  }
  static inline bool from_string16(const std::u16string& str, struct_type* s) {
    return from_string16(str.data(), str.length(), s);
  }
};

struct CefStringTraitsUTF16 {
  typedef char16_t char_type;
  typedef cef_string_utf16_t struct_type;
  typedef cef_string_userfree_utf16_t userfree_struct_type;

  static inline void clear(struct_type* s) { cef_string_utf16_clear(s); }
  static inline int set(const char_type* src,
                        size_t src_size,
                        struct_type* output,
                        int copy) {
    return cef_string_utf16_set(src, src_size, output, copy);
  }
  static inline int compare(const struct_type* s1, const struct_type* s2) {
    return cef_string_utf16_cmp(s1, s2);
  }
  static inline userfree_struct_type userfree_alloc() {
    return cef_string_userfree_utf16_alloc();
  }
  static inline void userfree_free(userfree_struct_type ufs) {
    cef_string_userfree_utf16_free(ufs);
  }
  static inline bool from_ascii(const char* str, size_t len, struct_type* s) {
    return cef_string_ascii_to_utf16(str, len, s) != 0;
  }
  static inline std::string to_string(const struct_type* s) {
    return cef_string_internal::ConvertToStd<cef_string_utf8_t, char>(
        [s](cef_string_utf8_t* out) {
          cef_string_utf16_to_utf8(s->str, s->length, out);
        },
        cef_string_utf8_clear);
  }
  static inline bool from_string(const std::string::value_type* data,
                                 size_t length,
                                 struct_type* s) {
    return cef_string_utf8_to_utf16(data, length, s) != 0;
  }
  static inline bool from_string(const std::string& str, struct_type* s) {
    return from_string(str.data(), str.length(), s);
  }
  static inline std::wstring to_wstring(const struct_type* s) {
    return cef_string_internal::ConvertToStd<cef_string_wide_t, wchar_t>(
        [s](cef_string_wide_t* out) {
          cef_string_utf16_to_wide(s->str, s->length, out);
        },
        cef_string_wide_clear);
  }
  static inline bool from_wstring(const std::wstring::value_type* data,
                                  size_t length,
                                  struct_type* s) {
    return cef_string_wide_to_utf16(data, length, s) != 0;
  }
  static inline bool from_wstring(const std::wstring& str, struct_type* s) {
    return from_wstring(str.data(), str.length(), s);
  }
  static inline std::u16string to_string16(const struct_type* s) {
    return std::u16string(s->str, s->length);
  }
  static inline bool from_string16(const std::u16string::value_type* data,
                                   size_t length,
                                   struct_type* s) {
    return cef_string_utf16_set(data, length, s, true) != 0;
  }
  static inline bool from_string16(const std::u16string& str, struct_type* s) {
    return from_string16(str.data(), str.length(), s);
  }
};

template <class traits>
class CefStringBase final {
 public:
  typedef typename traits::char_type char_type;
  typedef typename traits::struct_type struct_type;
  typedef typename traits::userfree_struct_type userfree_struct_type;

  CefStringBase() : string_(nullptr), owner_(false) {}

  // Always makes an owned copy, even of an attached string.
  CefStringBase(const CefStringBase& str) : string_(nullptr), owner_(false) {
    FromString(str.c_str(), str.length(), true);
  }

  CefStringBase(const std::string& src) : string_(nullptr), owner_(false) {
    FromString(src);
  }
  // |src| is UTF-8; a |length| of 0 means NUL-terminated.
  CefStringBase(const char* src, size_t length = 0)
      : string_(nullptr), owner_(false) {
    if (src) {
      FromString(src, length);
    }
  }

  CefStringBase(const std::wstring& src) : string_(nullptr), owner_(false) {
    FromWString(src);
  }
  CefStringBase(const wchar_t* src, size_t length = 0)
      : string_(nullptr), owner_(false) {
    if (src) {
      FromWString(src, length);
    }
  }

  CefStringBase(const std::u16string& src) : string_(nullptr), owner_(false) {
    FromString16(src);
  }
  CefStringBase(const std::u16string::value_type* src, size_t length = 0)
      : string_(nullptr), owner_(false) {
    if (src) {
      FromString16(src, length);
    }
  }

  // Native-encoding data; without |copy| the string only refers to |src|,
  // which must then outlive it.
  CefStringBase(const char_type* src, size_t src_len, bool copy)
      : string_(nullptr), owner_(false) {
    if (src && src_len > 0) {
      FromString(src, src_len, copy);
    }
  }

  // Attaches to |src| without taking ownership: reads and writes go to it.
  CefStringBase(const struct_type* src) : string_(nullptr), owner_(false) {
    if (!src) {
      return;
    }
    Attach(const_cast<struct_type*>(src), false);
  }

  ~CefStringBase() { ClearAndFree(); }

  const char_type* c_str() const { return string_ ? string_->str : nullptr; }
  size_t length() const { return string_ ? string_->length : 0; }
  inline size_t size() const { return length(); }
  bool empty() const { return string_ == nullptr || string_->length == 0; }

  int compare(const CefStringBase& str) const {
    if (empty() && str.empty()) {
      return 0;
    }
    if (empty()) {
      return -1;
    }
    if (str.empty()) {
      return 1;
    }
    return traits::compare(string_, str.GetStruct());
  }

  // Empties the text (of the attached struct too) but keeps the attachment.
  void clear() {
    if (string_) {
      traits::clear(string_);
    }
  }

  void swap(CefStringBase& str) {
    std::swap(string_, str.string_);
    std::swap(owner_, str.owner_);
  }

  bool IsOwner() const { return owner_; }
  const struct_type* GetStruct() const { return string_; }
  struct_type* GetWritableStruct() {
    AllocIfNeeded();
    return string_;
  }

  // Frees an owned struct, or forgets an attached one.
  void ClearAndFree() {
    if (!string_) {
      return;
    }
    if (owner_) {
      clear();
      delete string_;
    }
    string_ = nullptr;
    owner_ = false;
  }

  // With |owner| the struct must come from new and is deleted by this.
  void Attach(struct_type* str, bool owner) {
    ClearAndFree();
    string_ = str;
    owner_ = owner;
  }

  // Takes over the text of |str| and frees |str|.
  void AttachToUserFree(userfree_struct_type str) {
    ClearAndFree();
    if (!str) {
      return;
    }
    AllocIfNeeded();
    owner_ = true;
    memcpy(string_, str, sizeof(struct_type));
    memset(str, 0, sizeof(struct_type));
    traits::userfree_free(str);
  }

  void Detach() {
    string_ = nullptr;
    owner_ = false;
  }

  // Moves the text into a new userfree struct (null when empty).
  userfree_struct_type DetachToUserFree() {
    if (empty()) {
      return nullptr;
    }
    userfree_struct_type str = traits::userfree_alloc();
    if (owner_) {
      memcpy(str, string_, sizeof(struct_type));
      memset(string_, 0, sizeof(struct_type));
    } else {
      traits::set(string_->str, string_->length, str, true);
    }
    ClearAndFree();
    return str;
  }

  bool FromString(const char_type* src, size_t src_len, bool copy) {
    if (src == nullptr || src_len == 0) {
      clear();
      return true;
    }
    AllocIfNeeded();
    return traits::set(src, src_len, string_, copy) != 0;
  }

  // Fails (returns false) if |str| is not pure ASCII.
  bool FromASCII(const char* str) {
    size_t len = str ? strlen(str) : 0;
    if (len == 0) {
      clear();
      return true;
    }
    AllocIfNeeded();
    return traits::from_ascii(str, len, string_);
  }

  // UTF-8.
  std::string ToString() const {
    if (empty()) {
      return std::string();
    }
    return traits::to_string(string_);
  }
  bool FromString(const std::string& str) {
    if (str.empty()) {
      clear();
      return true;
    }
    AllocIfNeeded();
    return traits::from_string(str, string_);
  }
  bool FromString(const std::string::value_type* data, size_t length = 0) {
    if (data && length == 0) {
      length = std::char_traits<std::string::value_type>::length(data);
    }
    if (!data || length == 0) {
      clear();
      return true;
    }
    AllocIfNeeded();
    return traits::from_string(data, length, string_);
  }

  std::wstring ToWString() const {
    if (empty()) {
      return std::wstring();
    }
    return traits::to_wstring(string_);
  }
  bool FromWString(const std::wstring& str) {
    if (str.empty()) {
      clear();
      return true;
    }
    AllocIfNeeded();
    return traits::from_wstring(str, string_);
  }
  bool FromWString(const std::wstring::value_type* data, size_t length = 0) {
    if (data && length == 0) {
      length = std::char_traits<std::wstring::value_type>::length(data);
    }
    if (!data || length == 0) {
      clear();
      return true;
    }
    AllocIfNeeded();
    return traits::from_wstring(data, length, string_);
  }

  std::u16string ToString16() const {
    if (empty()) {
      return std::u16string();
    }
    return traits::to_string16(string_);
  }
  bool FromString16(const std::u16string& str) {
    if (str.empty()) {
      clear();
      return true;
    }
    AllocIfNeeded();
    return traits::from_string16(str, string_);
  }
  bool FromString16(const std::u16string::value_type* data, size_t length = 0) {
    if (data && length == 0) {
      length = std::char_traits<std::u16string::value_type>::length(data);
    }
    if (!data || length == 0) {
      clear();
      return true;
    }
    AllocIfNeeded();
    return traits::from_string16(data, length, string_);
  }

  bool operator<(const CefStringBase& str) const { return compare(str) < 0; }
  bool operator<=(const CefStringBase& str) const { return compare(str) <= 0; }
  bool operator>(const CefStringBase& str) const { return compare(str) > 0; }
  bool operator>=(const CefStringBase& str) const { return compare(str) >= 0; }
  bool operator==(const CefStringBase& str) const { return compare(str) == 0; }
  bool operator!=(const CefStringBase& str) const { return compare(str) != 0; }

  // Copies the text; an attached string keeps writing into its struct.
  CefStringBase& operator=(const CefStringBase& str) {
    if (this != &str) {
      FromString(str.c_str(), str.length(), true);
    }
    return *this;
  }

  operator std::string() const { return ToString(); }
  CefStringBase& operator=(const std::string& str) {
    FromString(str);
    return *this;
  }
  CefStringBase& operator=(const std::string::value_type* str) {
    FromString(str);
    return *this;
  }

  operator std::wstring() const { return ToWString(); }
  CefStringBase& operator=(const std::wstring& str) {
    FromWString(str);
    return *this;
  }
  CefStringBase& operator=(const std::wstring::value_type* str) {
    FromWString(str);
    return *this;
  }

  operator std::u16string() const { return ToString16(); }
  CefStringBase& operator=(const std::u16string& str) {
    FromString16(str);
    return *this;
  }
  CefStringBase& operator=(const std::u16string::value_type* str) {
    FromString16(str);
    return *this;
  }

 private:
  void AllocIfNeeded() {
    if (string_ == nullptr) {
      string_ = new struct_type;
      memset(string_, 0, sizeof(struct_type));
      owner_ = true;
    }
  }

  struct_type* string_;
  bool owner_;
};

typedef CefStringBase<CefStringTraitsWide> CefStringWide;
typedef CefStringBase<CefStringTraitsUTF8> CefStringUTF8;
typedef CefStringBase<CefStringTraitsUTF16> CefStringUTF16;

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_WRAPPERS_H_
