// An opaque C multimap from string to string, kept in insertion order.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_MULTIMAP_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_MULTIMAP_H_
#pragma once

#include "include/internal/cef_export.h"
#include "include/internal/cef_string.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _cef_string_multimap_t* cef_string_multimap_t;

CEF_EXPORT cef_string_multimap_t cef_string_multimap_alloc(void);
CEF_EXPORT size_t cef_string_multimap_size(cef_string_multimap_t map);
CEF_EXPORT size_t cef_string_multimap_find_count(cef_string_multimap_t map,
                                                 const cef_string_t* key);
// Copies the |value_index|-th value stored under |key|.
CEF_EXPORT int cef_string_multimap_enumerate(cef_string_multimap_t map,
                                             const cef_string_t* key,
                                             size_t value_index,
                                             cef_string_t* value);
CEF_EXPORT int cef_string_multimap_key(cef_string_multimap_t map,
                                       size_t index,
                                       cef_string_t* key);
CEF_EXPORT int cef_string_multimap_value(cef_string_multimap_t map,
                                         size_t index,
                                         cef_string_t* value);
CEF_EXPORT int cef_string_multimap_append(cef_string_multimap_t map,
                                          const cef_string_t* key,
                                          const cef_string_t* value);
CEF_EXPORT void cef_string_multimap_clear(cef_string_multimap_t map);
CEF_EXPORT void cef_string_multimap_free(cef_string_multimap_t map);

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_MULTIMAP_H_
