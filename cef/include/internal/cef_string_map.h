// An opaque C map from string to string, kept in insertion order.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_MAP_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_MAP_H_
#pragma once

#include "include/internal/cef_export.h"
#include "include/internal/cef_string.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _cef_string_map_t* cef_string_map_t;

CEF_EXPORT cef_string_map_t cef_string_map_alloc(void);
CEF_EXPORT size_t cef_string_map_size(cef_string_map_t map);
// Copies the value of |key| into |value|; returns 0 if absent.
CEF_EXPORT int cef_string_map_find(cef_string_map_t map,
                                   const cef_string_t* key,
                                   cef_string_t* value);
CEF_EXPORT int cef_string_map_key(cef_string_map_t map,
                                  size_t index,
                                  cef_string_t* key);
CEF_EXPORT int cef_string_map_value(cef_string_map_t map,
                                    size_t index,
                                    cef_string_t* value);
// Adds a pair; returns 0 if |key| is already present.
CEF_EXPORT int cef_string_map_append(cef_string_map_t map,
                                     const cef_string_t* key,
                                     const cef_string_t* value);
CEF_EXPORT void cef_string_map_clear(cef_string_map_t map);
CEF_EXPORT void cef_string_map_free(cef_string_map_t map);

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_MAP_H_
