// The C string functions of include/internal/cef_string_types.h.

#include <QString>

#include <algorithm>
#include <cstring>
#include <string>

#include "include/internal/cef_string_types.h"
#include "libcef/utf_conversion.h"

namespace {

template <typename Char>
void FreeBuffer(Char* str) {
  delete[] str;
}

// Sets |output| to |src|. Copies go into a fresh NUL-terminated buffer
// before the old text is released, so |src| may point into |output|.
template <typename Char, typename Struct>
int SetString(const Char* src, size_t src_len, Struct* output, int copy) {
  if (!output) {
    return 0;
  }
  if (!src) {
    src_len = 0;
  }
  if (!copy && src && src == output->str) {
    output->length = src_len;
    return 1;
  }
  Char* buffer = nullptr;
  if (copy && src_len > 0) {
    buffer = new Char[src_len + 1];
    std::memcpy(buffer, src, src_len * sizeof(Char));
    buffer[src_len] = 0;
  } else if (!copy) {
    buffer = const_cast<Char*>(src);
  }
  if (output->dtor && output->str && output->str != buffer) {
    output->dtor(output->str);
  }
  output->str = buffer;
  output->length = src_len;
  output->dtor = (copy && buffer) ? &FreeBuffer<Char> : nullptr;
  return 1;
}

template <typename Struct>
void ClearString(Struct* str) {
  if (!str) {
    return;
  }
  if (str->dtor && str->str) {
    str->dtor(str->str);
  }
  str->str = nullptr;
  str->length = 0;
  str->dtor = nullptr;
}

// Compares code units as unsigned values, then lengths.
template <typename Unit, typename Struct>
int CompareString(const Struct* s1, const Struct* s2) {
  size_t len1 = (s1 && s1->str) ? s1->length : 0;
  size_t len2 = (s2 && s2->str) ? s2->length : 0;
  size_t n = std::min(len1, len2);
  for (size_t i = 0; i < n; ++i) {
    Unit a = static_cast<Unit>(s1->str[i]);
    Unit b = static_cast<Unit>(s2->str[i]);
    if (a != b) {
      return a < b ? -1 : 1;
    }
  }
  if (len1 == len2) {
    return 0;
  }
  return len1 < len2 ? -1 : 1;
}

// Runs |convert| from |src| into a std::basic_string and copies the result
// into |output|; returns 0 on invalid input (the replaced text is still set).
template <typename StdString, typename In, typename Struct, typename Fn>
int ConvertInto(const In* src, size_t src_len, Struct* output, Fn convert) {
  if (!output) {
    return 0;
  }
  StdString converted;
  bool ok = src ? convert(src, src_len, &converted) : true;
  SetString(converted.data(), converted.size(), output, true);
  return ok ? 1 : 0;
}

template <typename Struct, typename Char>
int AsciiInto(const char* src, size_t src_len, Struct* output) {
  if (!output) {
    return 0;
  }
  if (!src) {
    src_len = 0;
  }
  std::basic_string<Char> widened(src_len, Char());
  bool ok = true;
  for (size_t i = 0; i < src_len; ++i) {
    unsigned char c = static_cast<unsigned char>(src[i]);
    if (c > 0x7F) {
      ok = false;
    }
    widened[i] = static_cast<Char>(c);
  }
  SetString(widened.data(), widened.size(), output, true);
  return ok ? 1 : 0;
}

template <typename Struct>
Struct* AllocUserFree() {
  Struct* s = new Struct;
  std::memset(s, 0, sizeof(Struct));
  return s;
}

template <typename Struct>
void FreeUserFree(Struct* s) {
  if (!s) {
    return;
  }
  ClearString(s);
  delete s;
}

int SetQString(const QString& text, cef_string_utf16_t* output) {
  return SetString(reinterpret_cast<const char16_t*>(text.utf16()),
                   static_cast<size_t>(text.size()), output, true);
}

}  // namespace

extern "C" {

int cef_string_wide_set(const wchar_t* src,
                        size_t src_len,
                        cef_string_wide_t* output,
                        int copy) {
  return SetString(src, src_len, output, copy);
}

int cef_string_utf8_set(const char* src,
                        size_t src_len,
                        cef_string_utf8_t* output,
                        int copy) {
  return SetString(src, src_len, output, copy);
}

int cef_string_utf16_set(const char16_t* src,
                         size_t src_len,
                         cef_string_utf16_t* output,
                         int copy) {
  return SetString(src, src_len, output, copy);
}

void cef_string_wide_clear(cef_string_wide_t* str) {
  ClearString(str);
}

void cef_string_utf8_clear(cef_string_utf8_t* str) {
  ClearString(str);
}

void cef_string_utf16_clear(cef_string_utf16_t* str) {
  ClearString(str);
}

int cef_string_wide_cmp(const cef_string_wide_t* str1,
                        const cef_string_wide_t* str2) {
  return CompareString<unsigned int>(str1, str2);
}

int cef_string_utf8_cmp(const cef_string_utf8_t* str1,
                        const cef_string_utf8_t* str2) {
  return CompareString<unsigned char>(str1, str2);
}

int cef_string_utf16_cmp(const cef_string_utf16_t* str1,
                         const cef_string_utf16_t* str2) {
  return CompareString<char16_t>(str1, str2);
}

int cef_string_wide_to_utf8(const wchar_t* src,
                            size_t src_len,
                            cef_string_utf8_t* output) {
  return ConvertInto<std::string>(src, src_len, output,
                                  [](const wchar_t* s, size_t n, std::string* o) {
                                    return cefengine::WideToUtf8(s, n, o);
                                  });
}

int cef_string_utf8_to_wide(const char* src,
                            size_t src_len,
                            cef_string_wide_t* output) {
  return ConvertInto<std::wstring>(src, src_len, output,
                                   [](const char* s, size_t n, std::wstring* o) {
                                     return cefengine::Utf8ToWide(s, n, o);
                                   });
}

int cef_string_wide_to_utf16(const wchar_t* src,
                             size_t src_len,
                             cef_string_utf16_t* output) {
  return ConvertInto<std::u16string>(
      src, src_len, output, [](const wchar_t* s, size_t n, std::u16string* o) {
        return cefengine::WideToUtf16(s, n, o);
      });
}

int cef_string_utf16_to_wide(const char16_t* src,
                             size_t src_len,
                             cef_string_wide_t* output) {
  return ConvertInto<std::wstring>(
      src, src_len, output, [](const char16_t* s, size_t n, std::wstring* o) {
        return cefengine::Utf16ToWide(s, n, o);
      });
}

int cef_string_utf8_to_utf16(const char* src,
                             size_t src_len,
                             cef_string_utf16_t* output) {
  return ConvertInto<std::u16string>(
      src, src_len, output, [](const char* s, size_t n, std::u16string* o) {
        return cefengine::Utf8ToUtf16(s, n, o);
      });
}

int cef_string_utf16_to_utf8(const char16_t* src,
                             size_t src_len,
                             cef_string_utf8_t* output) {
  return ConvertInto<std::string>(
      src, src_len, output, [](const char16_t* s, size_t n, std::string* o) {
        return cefengine::Utf16ToUtf8(s, n, o);
      });
}

int cef_string_ascii_to_wide(const char* src,
                             size_t src_len,
                             cef_string_wide_t* output) {
  return AsciiInto<cef_string_wide_t, wchar_t>(src, src_len, output);
}

int cef_string_ascii_to_utf16(const char* src,
                              size_t src_len,
                              cef_string_utf16_t* output) {
  return AsciiInto<cef_string_utf16_t, char16_t>(src, src_len, output);
}

cef_string_userfree_wide_t cef_string_userfree_wide_alloc(void) {
  return AllocUserFree<cef_string_wide_t>();
}

cef_string_userfree_utf8_t cef_string_userfree_utf8_alloc(void) {
  return AllocUserFree<cef_string_utf8_t>();
}

cef_string_userfree_utf16_t cef_string_userfree_utf16_alloc(void) {
  return AllocUserFree<cef_string_utf16_t>();
}

void cef_string_userfree_wide_free(cef_string_userfree_wide_t str) {
  FreeUserFree(str);
}

void cef_string_userfree_utf8_free(cef_string_userfree_utf8_t str) {
  FreeUserFree(str);
}

void cef_string_userfree_utf16_free(cef_string_userfree_utf16_t str) {
  FreeUserFree(str);
}

int cef_string_utf16_to_lower(const char16_t* src,
                              size_t src_len,
                              cef_string_utf16_t* output) {
  if (!output) {
    return 0;
  }
  QString text(reinterpret_cast<const QChar*>(src),
               src ? static_cast<int>(src_len) : 0);
  return SetQString(text.toLower(), output);
}

int cef_string_utf16_to_upper(const char16_t* src,
                              size_t src_len,
                              cef_string_utf16_t* output) {
  if (!output) {
    return 0;
  }
  QString text(reinterpret_cast<const QChar*>(src),
               src ? static_cast<int>(src_len) : 0);
  return SetQString(text.toUpper(), output);
}

}  // extern "C"
