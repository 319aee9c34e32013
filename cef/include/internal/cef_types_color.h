// Pixel formats of rendered frames.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_COLOR_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_COLOR_H_
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
  // Bytes in memory order R, G, B, A.
  CEF_COLOR_TYPE_RGBA_8888 = 0,
  // Bytes in memory order B, G, R, A (the format OnPaint delivers).
  CEF_COLOR_TYPE_BGRA_8888 = 1,
} cef_color_type_t;

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_COLOR_H_
