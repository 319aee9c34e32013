// Linux-specific C types: native handles, process arguments and the
// description of a browser's window.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_LINUX_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_LINUX_H_
#pragma once

#include "include/base/cef_build.h"

#if defined(OS_LINUX)

#include <stdint.h>

#include "include/internal/cef_export.h"
#include "include/internal/cef_string.h"
#include "include/internal/cef_types_color.h"
#include "include/internal/cef_types_geometry.h"
#include "include/internal/cef_types_runtime.h"

// Without X11 support, cursors and events are opaque pointers.
#define cef_cursor_handle_t void*
#define cef_event_handle_t void*
// An X11 window id.
#define cef_window_handle_t unsigned long

#define kNullCursorHandle 0
#define kNullEventHandle NULL
#define kNullWindowHandle 0

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _cef_main_args_t {
  int argc;
  char** argv;
} cef_main_args_t;

typedef struct _cef_window_info_t {
  cef_string_t window_name;
  // Position and size of a child window, or of the view when windowless.
  cef_rect_t bounds;
  cef_window_handle_t parent_window;
  // Render off screen and deliver frames to CefRenderHandler.
  int windowless_rendering_enabled;
  int shared_texture_enabled;
  int external_begin_frame_enabled;
  cef_window_handle_t window;
  cef_runtime_style_t runtime_style;
} cef_window_info_t;

// One plane of a native pixmap of an accelerated paint.
typedef struct _cef_accelerated_paint_native_pixmap_plane_info_t {
  uint32_t stride;
  uint64_t offset;
  uint64_t size;
  int fd;
} cef_accelerated_paint_native_pixmap_plane_t;

#define kAcceleratedPaintMaxPlanes 4

typedef struct _cef_accelerated_paint_info_t {
  cef_accelerated_paint_native_pixmap_plane_t
      planes[kAcceleratedPaintMaxPlanes];
  int plane_count;
  uint64_t modifier;
  cef_color_type_t format;
} cef_accelerated_paint_info_t;

#ifdef __cplusplus
}
#endif

#endif  // OS_LINUX

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_LINUX_H_
