// The engine's string type: UTF-16. cef_string_t is the C struct, CefString
// the C++ wrapper, and the cef_string_* macros map to the UTF-16 functions.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_H_
#pragma once

#define CEF_STRING_TYPE_UTF16 1

#include "include/internal/cef_string_types.h"

#ifdef __cplusplus
#include "include/internal/cef_string_wrappers.h"
typedef CefStringUTF16 CefString;
#endif

typedef char16_t cef_char_t;
typedef cef_string_userfree_utf16_t cef_string_userfree_t;
typedef cef_string_utf16_t cef_string_t;

#define cef_string_set cef_string_utf16_set
#define cef_string_copy cef_string_utf16_copy
#define cef_string_clear cef_string_utf16_clear
#define cef_string_userfree_alloc cef_string_userfree_utf16_alloc
#define cef_string_userfree_free cef_string_userfree_utf16_free
#define cef_string_from_ascii cef_string_ascii_to_utf16
#define cef_string_to_utf8 cef_string_utf16_to_utf8
#define cef_string_from_utf8 cef_string_utf8_to_utf16
#define cef_string_to_utf16 cef_string_utf16_copy
#define cef_string_from_utf16 cef_string_utf16_copy
#define cef_string_to_wide cef_string_utf16_to_wide
#define cef_string_from_wide cef_string_wide_to_utf16

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_H_
