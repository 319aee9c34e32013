// An opaque C list of strings.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_LIST_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_LIST_H_
#pragma once

#include "include/internal/cef_export.h"
#include "include/internal/cef_string.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _cef_string_list_t* cef_string_list_t;

CEF_EXPORT cef_string_list_t cef_string_list_alloc(void);
CEF_EXPORT size_t cef_string_list_size(cef_string_list_t list);
// Copies the entry at |index| into |value|; returns 0 if out of range.
CEF_EXPORT int cef_string_list_value(cef_string_list_t list,
                                     size_t index,
                                     cef_string_t* value);
CEF_EXPORT void cef_string_list_append(cef_string_list_t list,
                                       const cef_string_t* value);
CEF_EXPORT void cef_string_list_clear(cef_string_list_t list);
CEF_EXPORT void cef_string_list_free(cef_string_list_t list);
CEF_EXPORT cef_string_list_t cef_string_list_copy(cef_string_list_t list);

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_LIST_H_
