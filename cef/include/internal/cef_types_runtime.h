// Browser runtime styles.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_RUNTIME_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_RUNTIME_H_
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
  CEF_RUNTIME_STYLE_DEFAULT = 0,
  CEF_RUNTIME_STYLE_CHROME = 1,
  // The style windowless (off-screen) browsers use.
  CEF_RUNTIME_STYLE_ALLOY = 2,
} cef_runtime_style_t;

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_RUNTIME_H_
