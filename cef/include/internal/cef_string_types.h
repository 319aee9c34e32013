// C string structs in three encodings (wide, UTF-8, UTF-16) and the functions
// that set, convert, compare and free them. A struct owns its buffer when
// |dtor| is set; cef_string_*_clear() calls |dtor| and zeroes the struct.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_TYPES_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_TYPES_H_
#pragma once

#include <stddef.h>
#include <uchar.h>

#include "include/internal/cef_export.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _cef_string_wide_t {
  wchar_t* str;
  size_t length;
  void (*dtor)(wchar_t* str);
} cef_string_wide_t;

typedef struct _cef_string_utf8_t {
  char* str;
  size_t length;
  void (*dtor)(char* str);
} cef_string_utf8_t;

typedef struct _cef_string_utf16_t {
  char16_t* str;
  size_t length;
  void (*dtor)(char16_t* str);
} cef_string_utf16_t;

// Replace |output| with |src_len| units of |src|. With |copy| the data is
// copied and owned; without it |output| only points at |src|. Return 1 on
// success.
CEF_EXPORT int cef_string_wide_set(const wchar_t* src,
                                   size_t src_len,
                                   cef_string_wide_t* output,
                                   int copy);
CEF_EXPORT int cef_string_utf8_set(const char* src,
                                   size_t src_len,
                                   cef_string_utf8_t* output,
                                   int copy);
CEF_EXPORT int cef_string_utf16_set(const char16_t* src,
                                    size_t src_len,
                                    cef_string_utf16_t* output,
                                    int copy);

#define cef_string_wide_copy(src, src_len, output) \
  cef_string_wide_set(src, src_len, output, true)
#define cef_string_utf8_copy(src, src_len, output) \
  cef_string_utf8_set(src, src_len, output, true)
#define cef_string_utf16_copy(src, src_len, output) \
  cef_string_utf16_set(src, src_len, output, true)

CEF_EXPORT void cef_string_wide_clear(cef_string_wide_t* str);
CEF_EXPORT void cef_string_utf8_clear(cef_string_utf8_t* str);
CEF_EXPORT void cef_string_utf16_clear(cef_string_utf16_t* str);

// Compare code unit by code unit: <0, 0 or >0.
CEF_EXPORT int cef_string_wide_cmp(const cef_string_wide_t* str1,
                                   const cef_string_wide_t* str2);
CEF_EXPORT int cef_string_utf8_cmp(const cef_string_utf8_t* str1,
                                   const cef_string_utf8_t* str2);
CEF_EXPORT int cef_string_utf16_cmp(const cef_string_utf16_t* str1,
                                    const cef_string_utf16_t* str2);

// Convert between encodings into an owned |output|. Invalid input sequences
// become U+FFFD and the function returns 0; it returns 1 otherwise.
CEF_EXPORT int cef_string_wide_to_utf8(const wchar_t* src,
                                       size_t src_len,
                                       cef_string_utf8_t* output);
CEF_EXPORT int cef_string_utf8_to_wide(const char* src,
                                       size_t src_len,
                                       cef_string_wide_t* output);
CEF_EXPORT int cef_string_wide_to_utf16(const wchar_t* src,
                                        size_t src_len,
                                        cef_string_utf16_t* output);
CEF_EXPORT int cef_string_utf16_to_wide(const char16_t* src,
                                        size_t src_len,
                                        cef_string_wide_t* output);
CEF_EXPORT int cef_string_utf8_to_utf16(const char* src,
                                        size_t src_len,
                                        cef_string_utf16_t* output);
CEF_EXPORT int cef_string_utf16_to_utf8(const char16_t* src,
                                        size_t src_len,
                                        cef_string_utf8_t* output);

// Widen ASCII text; returns 0 if |src| holds a byte above 0x7F.
CEF_EXPORT int cef_string_ascii_to_wide(const char* src,
                                        size_t src_len,
                                        cef_string_wide_t* output);
CEF_EXPORT int cef_string_ascii_to_utf16(const char* src,
                                         size_t src_len,
                                         cef_string_utf16_t* output);

// Heap-allocated strings handed across the API; free with the matching
// cef_string_userfree_*_free().
typedef cef_string_wide_t* cef_string_userfree_wide_t;
typedef cef_string_utf8_t* cef_string_userfree_utf8_t;
typedef cef_string_utf16_t* cef_string_userfree_utf16_t;

CEF_EXPORT cef_string_userfree_wide_t cef_string_userfree_wide_alloc(void);
CEF_EXPORT cef_string_userfree_utf8_t cef_string_userfree_utf8_alloc(void);
CEF_EXPORT cef_string_userfree_utf16_t cef_string_userfree_utf16_alloc(void);

CEF_EXPORT void cef_string_userfree_wide_free(cef_string_userfree_wide_t str);
CEF_EXPORT void cef_string_userfree_utf8_free(cef_string_userfree_utf8_t str);
CEF_EXPORT void cef_string_userfree_utf16_free(cef_string_userfree_utf16_t str);

// Case mapping of UTF-16 text.
CEF_EXPORT int cef_string_utf16_to_lower(const char16_t* src,
                                         size_t src_len,
                                         cef_string_utf16_t* output);
CEF_EXPORT int cef_string_utf16_to_upper(const char16_t* src,
                                         size_t src_len,
                                         cef_string_utf16_t* output);

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_TYPES_H_
