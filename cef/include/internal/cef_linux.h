// Linux wrappers: CefMainArgs (the process arguments) and CefWindowInfo
// (how a browser is shown: as a child window or rendered off screen).

#ifndef CEF_INCLUDE_INTERNAL_CEF_LINUX_H_
#define CEF_INCLUDE_INTERNAL_CEF_LINUX_H_
#pragma once

#include "include/internal/cef_types_linux.h"
#include "include/internal/cef_types_wrappers.h"

#define CefCursorHandle cef_cursor_handle_t
#define CefEventHandle cef_event_handle_t
#define CefWindowHandle cef_window_handle_t

class CefMainArgs : public cef_main_args_t {
 public:
  CefMainArgs() : cef_main_args_t{} {}
  CefMainArgs(const cef_main_args_t& r) : cef_main_args_t(r) {}
  CefMainArgs(int argc_arg, char** argv_arg)
      : cef_main_args_t{argc_arg, argv_arg} {}
};

struct CefWindowInfoTraits {
  typedef cef_window_info_t struct_type;

  static inline void init(struct_type*) {}

  static inline void clear(struct_type* s) {
    cef_string_clear(&s->window_name);
  }

  static inline void set(const struct_type* src, struct_type* dst, bool copy) {
    cef_string_set(src->window_name.str, src->window_name.length,
                   &dst->window_name, copy);
    dst->bounds = src->bounds;
    dst->parent_window = src->parent_window;
    dst->windowless_rendering_enabled = src->windowless_rendering_enabled;
    dst->shared_texture_enabled = src->shared_texture_enabled;
    dst->external_begin_frame_enabled = src->external_begin_frame_enabled;
    dst->window = src->window;
    dst->runtime_style = src->runtime_style;
  }
};

class CefWindowInfo : public CefStructBase<CefWindowInfoTraits> {
 public:
  typedef CefStructBase<CefWindowInfoTraits> parent;

  CefWindowInfo() : parent() {}
  explicit CefWindowInfo(const cef_window_info_t& r) : parent(r) {}
  explicit CefWindowInfo(const CefWindowInfo& r) : parent(r) {}

  CefWindowInfo& operator=(const CefWindowInfo&) = default;
  CefWindowInfo& operator=(CefWindowInfo&&) = default;

  // Shows the browser as a native child of |parent| at |bounds|.
  void SetAsChild(CefWindowHandle parent, const CefRect& bounds) {
    parent_window = parent;
    this->bounds = bounds;
  }

  // Renders off screen: frames go to CefRenderHandler::OnPaint(). |parent|
  // (may be kNullWindowHandle) only anchors dialogs and menus.
  void SetAsWindowless(CefWindowHandle parent) {
    windowless_rendering_enabled = true;
    parent_window = parent;
    runtime_style = CEF_RUNTIME_STYLE_ALLOY;
  }
};

#endif  // CEF_INCLUDE_INTERNAL_CEF_LINUX_H_
