// C++ wrappers of the C structs of cef_types.h. Plain value structs get a
// class with constructors and helpers; structs holding cef_string_t fields
// get CefStructBase<traits>, which owns (and frees) those strings and copies
// them deeply.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_
#pragma once

#include <cstring>
#include <limits>

#include "include/internal/cef_string.h"
#include "include/internal/cef_string_list.h"
#include "include/internal/cef_types.h"

// A struct_type whose strings this object owns, unless it was attached to
// someone else's struct with AttachTo(). |traits| provides:
//   init(struct_type*)    fills defaults after zeroing (e.g. the size field)
//   clear(struct_type*)   frees the strings
//   set(const struct_type* src, struct_type* dst, bool copy)  copies fields
template <class traits>
class CefStructBase : public traits::struct_type {
 public:
  using struct_type = typename traits::struct_type;

  CefStructBase() : attached_to_(nullptr) { Init(); }
  virtual ~CefStructBase() {
    if (!attached_to_) {
      Clear(this);
    }
  }

  CefStructBase(const CefStructBase& r) {
    Init();
    *this = r;
  }
  CefStructBase(const struct_type& r) {
    Init();
    *this = r;
  }

  // Takes over the content of |source| without owning it: |source| keeps its
  // strings, and this object won't free them.
  void AttachTo(struct_type& source) {
    if (!attached_to_) {
      Clear(this);
    }
    attached_to_ = &source;
    memcpy(static_cast<struct_type*>(this), &source, sizeof(struct_type));
  }

  // Moves the content into |target| (which then owns the strings) and resets
  // this object.
  void DetachTo(struct_type& target) {
    if (attached_to_ != &target) {
      Clear(&target);
    }
    memcpy(&target, static_cast<struct_type*>(this), sizeof(struct_type));
    Init();
  }

  // Copies every field of |source|; strings are copied deeply when |copy|,
  // otherwise they point at |source|'s.
  void Set(const struct_type& source, bool copy) {
    traits::set(&source, this, copy);
  }

  CefStructBase& operator=(const CefStructBase& s) {
    return operator=(static_cast<const struct_type&>(s));
  }
  CefStructBase& operator=(const struct_type& s) {
    Set(s, true);
    return *this;
  }

 protected:
  void Init() {
    memset(static_cast<struct_type*>(this), 0, sizeof(struct_type));
    attached_to_ = nullptr;
    traits::init(this);
  }

  static void Clear(struct_type* s) { traits::clear(s); }

  struct_type* attached_to_;
};

namespace cef_types_internal {

inline void CopyString(const cef_string_t& src, cef_string_t* dst, bool copy) {
  cef_string_set(src.str, src.length, dst, copy);
}

}  // namespace cef_types_internal

class CefPoint : public cef_point_t {
 public:
  CefPoint() : cef_point_t{} {}
  CefPoint(const cef_point_t& r) : cef_point_t(r) {}
  CefPoint(int x, int y) : cef_point_t{x, y} {}

  bool IsEmpty() const { return x <= 0 && y <= 0; }
  void Set(int x_val, int y_val) {
    x = x_val;
    y = y_val;
  }
};

inline bool operator==(const CefPoint& a, const CefPoint& b) {
  return a.x == b.x && a.y == b.y;
}
inline bool operator!=(const CefPoint& a, const CefPoint& b) {
  return !(a == b);
}

class CefRect : public cef_rect_t {
 public:
  CefRect() : cef_rect_t{} {}
  CefRect(const cef_rect_t& r) : cef_rect_t(r) {}
  CefRect(int x, int y, int width, int height)
      : cef_rect_t{x, y, width, height} {}

  bool IsEmpty() const { return width <= 0 || height <= 0; }
  void Set(int x_val, int y_val, int width_val, int height_val) {
    x = x_val;
    y = y_val;
    width = width_val;
    height = height_val;
  }

  // The right and bottom edges are outside the rectangle.
  bool Contains(int point_x, int point_y) const {
    return point_x >= x && point_x < x + width && point_y >= y &&
           point_y < y + height;
  }
  bool Contains(const CefPoint& point) const {
    return Contains(point.x, point.y);
  }
};

inline bool operator==(const CefRect& a, const CefRect& b) {
  return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}
inline bool operator!=(const CefRect& a, const CefRect& b) {
  return !(a == b);
}

class CefSize : public cef_size_t {
 public:
  CefSize() : cef_size_t{} {}
  CefSize(const cef_size_t& r) : cef_size_t(r) {}
  CefSize(int width, int height) : cef_size_t{width, height} {}

  bool IsEmpty() const { return width <= 0 || height <= 0; }
  void Set(int width_val, int height_val) {
    width = width_val;
    height = height_val;
  }
};

inline bool operator==(const CefSize& a, const CefSize& b) {
  return a.width == b.width && a.height == b.height;
}
inline bool operator!=(const CefSize& a, const CefSize& b) {
  return !(a == b);
}

class CefRange : public cef_range_t {
 public:
  CefRange() : cef_range_t{} {}
  CefRange(const cef_range_t& r) : cef_range_t(r) {}
  CefRange(uint32_t from, uint32_t to) : cef_range_t{from, to} {}

  // The range meaning "no selection".
  static CefRange InvalidRange() {
    return CefRange((std::numeric_limits<uint32_t>::max)(),
                    (std::numeric_limits<uint32_t>::max)());
  }

  void Set(int from_val, int to_val) {
    from = static_cast<uint32_t>(from_val);
    to = static_cast<uint32_t>(to_val);
  }
};

inline bool operator==(const CefRange& a, const CefRange& b) {
  return a.from == b.from && a.to == b.to;
}
inline bool operator!=(const CefRange& a, const CefRange& b) {
  return !(a == b);
}

class CefInsets : public cef_insets_t {
 public:
  CefInsets() : cef_insets_t{} {}
  CefInsets(const cef_insets_t& r) : cef_insets_t(r) {}
  CefInsets(int top, int left, int bottom, int right)
      : cef_insets_t{top, left, bottom, right} {}

  void Set(int top_val, int left_val, int bottom_val, int right_val) {
    top = top_val;
    left = left_val;
    bottom = bottom_val;
    right = right_val;
  }
};

inline bool operator==(const CefInsets& a, const CefInsets& b) {
  return a.top == b.top && a.left == b.left && a.bottom == b.bottom &&
         a.right == b.right;
}
inline bool operator!=(const CefInsets& a, const CefInsets& b) {
  return !(a == b);
}

class CefDraggableRegion : public cef_draggable_region_t {
 public:
  CefDraggableRegion() : cef_draggable_region_t{} {}
  CefDraggableRegion(const cef_draggable_region_t& r)
      : cef_draggable_region_t(r) {}
  CefDraggableRegion(const cef_rect_t& bounds, bool draggable)
      : cef_draggable_region_t{bounds, draggable} {}

  void Set(const CefRect& bounds_val, bool draggable_val) {
    bounds = bounds_val;
    draggable = draggable_val;
  }
};

inline bool operator==(const CefDraggableRegion& a,
                       const CefDraggableRegion& b) {
  return a.bounds == b.bounds && a.draggable == b.draggable;
}
inline bool operator!=(const CefDraggableRegion& a,
                       const CefDraggableRegion& b) {
  return !(a == b);
}

class CefScreenInfo : public cef_screen_info_t {
 public:
  CefScreenInfo() : cef_screen_info_t{} {}
  CefScreenInfo(const cef_screen_info_t& r) : cef_screen_info_t(r) {}
  CefScreenInfo(float device_scale_factor,
                int depth,
                int depth_per_component,
                bool is_monochrome,
                const cef_rect_t& rect,
                const cef_rect_t& available_rect)
      : cef_screen_info_t{device_scale_factor, depth, depth_per_component,
                          is_monochrome,       rect,  available_rect} {}

  void Set(float device_scale_factor_val,
           int depth_val,
           int depth_per_component_val,
           bool is_monochrome_val,
           const CefRect& rect_val,
           const CefRect& available_rect_val) {
    device_scale_factor = device_scale_factor_val;
    depth = depth_val;
    depth_per_component = depth_per_component_val;
    is_monochrome = is_monochrome_val;
    rect = rect_val;
    available_rect = available_rect_val;
  }
};

class CefKeyEvent : public cef_key_event_t {
 public:
  CefKeyEvent() : cef_key_event_t{} {}
  CefKeyEvent(const cef_key_event_t& r) : cef_key_event_t(r) {}
};

class CefMouseEvent : public cef_mouse_event_t {
 public:
  CefMouseEvent() : cef_mouse_event_t{} {}
  CefMouseEvent(const cef_mouse_event_t& r) : cef_mouse_event_t(r) {}
};

class CefTouchEvent : public cef_touch_event_t {
 public:
  CefTouchEvent() : cef_touch_event_t{} {}
  CefTouchEvent(const cef_touch_event_t& r) : cef_touch_event_t(r) {}
};

class CefPopupFeatures : public cef_popup_features_t {
 public:
  CefPopupFeatures() : cef_popup_features_t{} {}
  CefPopupFeatures(const cef_popup_features_t& r) : cef_popup_features_t(r) {}
};

struct CefSettingsTraits {
  using struct_type = cef_settings_t;

  static inline void init(struct_type* s) { s->size = sizeof(struct_type); }

  static inline void clear(struct_type* s) {
    cef_string_clear(&s->browser_subprocess_path);
    cef_string_clear(&s->framework_dir_path);
    cef_string_clear(&s->main_bundle_path);
    cef_string_clear(&s->cache_path);
    cef_string_clear(&s->root_cache_path);
    cef_string_clear(&s->user_agent);
    cef_string_clear(&s->user_agent_product);
    cef_string_clear(&s->locale);
    cef_string_clear(&s->log_file);
    cef_string_clear(&s->javascript_flags);
    cef_string_clear(&s->resources_dir_path);
    cef_string_clear(&s->locales_dir_path);
    cef_string_clear(&s->accept_language_list);
    cef_string_clear(&s->cookieable_schemes_list);
    cef_string_clear(&s->chrome_policy_id);
  }

  static inline void set(const struct_type* src, struct_type* dst, bool copy) {
    using cef_types_internal::CopyString;
    dst->no_sandbox = src->no_sandbox;
    CopyString(src->browser_subprocess_path, &dst->browser_subprocess_path,
               copy);
    CopyString(src->framework_dir_path, &dst->framework_dir_path, copy);
    CopyString(src->main_bundle_path, &dst->main_bundle_path, copy);
    dst->multi_threaded_message_loop = src->multi_threaded_message_loop;
    dst->external_message_pump = src->external_message_pump;
    dst->windowless_rendering_enabled = src->windowless_rendering_enabled;
    dst->command_line_args_disabled = src->command_line_args_disabled;
    CopyString(src->cache_path, &dst->cache_path, copy);
    CopyString(src->root_cache_path, &dst->root_cache_path, copy);
    dst->persist_session_cookies = src->persist_session_cookies;
    CopyString(src->user_agent, &dst->user_agent, copy);
    CopyString(src->user_agent_product, &dst->user_agent_product, copy);
    CopyString(src->locale, &dst->locale, copy);
    CopyString(src->log_file, &dst->log_file, copy);
    dst->log_severity = src->log_severity;
    dst->log_items = src->log_items;
    CopyString(src->javascript_flags, &dst->javascript_flags, copy);
    CopyString(src->resources_dir_path, &dst->resources_dir_path, copy);
    CopyString(src->locales_dir_path, &dst->locales_dir_path, copy);
    dst->remote_debugging_port = src->remote_debugging_port;
    dst->uncaught_exception_stack_size = src->uncaught_exception_stack_size;
    dst->background_color = src->background_color;
    CopyString(src->accept_language_list, &dst->accept_language_list, copy);
    CopyString(src->cookieable_schemes_list, &dst->cookieable_schemes_list,
               copy);
    dst->cookieable_schemes_exclude_defaults =
        src->cookieable_schemes_exclude_defaults;
    CopyString(src->chrome_policy_id, &dst->chrome_policy_id, copy);
    dst->chrome_app_icon_id = src->chrome_app_icon_id;
#if defined(OS_POSIX)
    dst->disable_signal_handlers = src->disable_signal_handlers;
#endif
  }
};

using CefSettings = CefStructBase<CefSettingsTraits>;

struct CefRequestContextSettingsTraits {
  using struct_type = cef_request_context_settings_t;

  static inline void init(struct_type* s) { s->size = sizeof(struct_type); }

  static inline void clear(struct_type* s) {
    cef_string_clear(&s->cache_path);
    cef_string_clear(&s->accept_language_list);
    cef_string_clear(&s->cookieable_schemes_list);
  }

  static inline void set(const struct_type* src, struct_type* dst, bool copy) {
    using cef_types_internal::CopyString;
    CopyString(src->cache_path, &dst->cache_path, copy);
    dst->persist_session_cookies = src->persist_session_cookies;
    CopyString(src->accept_language_list, &dst->accept_language_list, copy);
    CopyString(src->cookieable_schemes_list, &dst->cookieable_schemes_list,
               copy);
    dst->cookieable_schemes_exclude_defaults =
        src->cookieable_schemes_exclude_defaults;
  }
};

using CefRequestContextSettings =
    CefStructBase<CefRequestContextSettingsTraits>;

struct CefBrowserSettingsTraits {
  using struct_type = cef_browser_settings_t;

  static inline void init(struct_type* s) { s->size = sizeof(struct_type); }

  static inline void clear(struct_type* s) {
    cef_string_clear(&s->standard_font_family);
    cef_string_clear(&s->fixed_font_family);
    cef_string_clear(&s->serif_font_family);
    cef_string_clear(&s->sans_serif_font_family);
    cef_string_clear(&s->cursive_font_family);
    cef_string_clear(&s->fantasy_font_family);
    cef_string_clear(&s->default_encoding);
  }

  static inline void set(const struct_type* src, struct_type* dst, bool copy) {
    using cef_types_internal::CopyString;
    dst->windowless_frame_rate = src->windowless_frame_rate;
    CopyString(src->standard_font_family, &dst->standard_font_family, copy);
    CopyString(src->fixed_font_family, &dst->fixed_font_family, copy);
    CopyString(src->serif_font_family, &dst->serif_font_family, copy);
    CopyString(src->sans_serif_font_family, &dst->sans_serif_font_family,
               copy);
    CopyString(src->cursive_font_family, &dst->cursive_font_family, copy);
    CopyString(src->fantasy_font_family, &dst->fantasy_font_family, copy);
    dst->default_font_size = src->default_font_size;
    dst->default_fixed_font_size = src->default_fixed_font_size;
    dst->minimum_font_size = src->minimum_font_size;
    dst->minimum_logical_font_size = src->minimum_logical_font_size;
    CopyString(src->default_encoding, &dst->default_encoding, copy);
    dst->remote_fonts = src->remote_fonts;
    dst->javascript = src->javascript;
    dst->javascript_close_windows = src->javascript_close_windows;
    dst->javascript_access_clipboard = src->javascript_access_clipboard;
    dst->javascript_dom_paste = src->javascript_dom_paste;
    dst->image_loading = src->image_loading;
    dst->image_shrink_standalone_to_fit = src->image_shrink_standalone_to_fit;
    dst->text_area_resize = src->text_area_resize;
    dst->tab_to_links = src->tab_to_links;
    dst->local_storage = src->local_storage;
    dst->databases = src->databases;
    dst->webgl = src->webgl;
    dst->background_color = src->background_color;
    dst->chrome_status_bubble = src->chrome_status_bubble;
    dst->chrome_zoom_bubble = src->chrome_zoom_bubble;
  }
};

using CefBrowserSettings = CefStructBase<CefBrowserSettingsTraits>;

struct CefURLPartsTraits {
  using struct_type = cef_urlparts_t;

  static inline void init(struct_type*) {}

  static inline void clear(struct_type* s) {
    cef_string_clear(&s->spec);
    cef_string_clear(&s->scheme);
    cef_string_clear(&s->username);
    cef_string_clear(&s->password);
    cef_string_clear(&s->host);
    cef_string_clear(&s->port);
    cef_string_clear(&s->origin);
    cef_string_clear(&s->path);
    cef_string_clear(&s->query);
    cef_string_clear(&s->fragment);
  }

  static inline void set(const struct_type* src, struct_type* dst, bool copy) {
    using cef_types_internal::CopyString;
    CopyString(src->spec, &dst->spec, copy);
    CopyString(src->scheme, &dst->scheme, copy);
    CopyString(src->username, &dst->username, copy);
    CopyString(src->password, &dst->password, copy);
    CopyString(src->host, &dst->host, copy);
    CopyString(src->port, &dst->port, copy);
    CopyString(src->origin, &dst->origin, copy);
    CopyString(src->path, &dst->path, copy);
    CopyString(src->query, &dst->query, copy);
    CopyString(src->fragment, &dst->fragment, copy);
  }
};

using CefURLParts = CefStructBase<CefURLPartsTraits>;

class CefTouchHandleState : public cef_touch_handle_state_t {
 public:
  CefTouchHandleState() : cef_touch_handle_state_t{} {}
  CefTouchHandleState(const cef_touch_handle_state_t& r)
      : cef_touch_handle_state_t(r) {}
};

struct CefCookieTraits {
  using struct_type = cef_cookie_t;

  static inline void init(struct_type*) {}

  static inline void clear(struct_type* s) {
    cef_string_clear(&s->name);
    cef_string_clear(&s->value);
    cef_string_clear(&s->domain);
    cef_string_clear(&s->path);
  }

  static inline void set(const struct_type* src, struct_type* dst, bool copy) {
    using cef_types_internal::CopyString;
    CopyString(src->name, &dst->name, copy);
    CopyString(src->value, &dst->value, copy);
    CopyString(src->domain, &dst->domain, copy);
    CopyString(src->path, &dst->path, copy);
    dst->secure = src->secure;
    dst->httponly = src->httponly;
    dst->creation = src->creation;
    dst->last_access = src->last_access;
    dst->has_expires = src->has_expires;
    dst->expires = src->expires;
    dst->same_site = src->same_site;
    dst->priority = src->priority;
  }
};

using CefCookie = CefStructBase<CefCookieTraits>;

class CefCursorInfo : public cef_cursor_info_t {
 public:
  CefCursorInfo() : cef_cursor_info_t{} {}
  CefCursorInfo(const cef_cursor_info_t& r) : cef_cursor_info_t(r) {}
};

struct CefPdfPrintSettingsTraits {
  using struct_type = cef_pdf_print_settings_t;

  static inline void init(struct_type*) {}

  static inline void clear(struct_type* s) {
    cef_string_clear(&s->page_ranges);
    cef_string_clear(&s->header_template);
    cef_string_clear(&s->footer_template);
  }

  static inline void set(const struct_type* src, struct_type* dst, bool copy) {
    using cef_types_internal::CopyString;
    dst->landscape = src->landscape;
    dst->print_background = src->print_background;
    dst->scale = src->scale;
    dst->paper_width = src->paper_width;
    dst->paper_height = src->paper_height;
    dst->prefer_css_page_size = src->prefer_css_page_size;
    dst->margin_type = src->margin_type;
    dst->margin_top = src->margin_top;
    dst->margin_right = src->margin_right;
    dst->margin_bottom = src->margin_bottom;
    dst->margin_left = src->margin_left;
    CopyString(src->page_ranges, &dst->page_ranges, copy);
    dst->display_header_footer = src->display_header_footer;
    CopyString(src->header_template, &dst->header_template, copy);
    CopyString(src->footer_template, &dst->footer_template, copy);
    dst->generate_tagged_pdf = src->generate_tagged_pdf;
    dst->generate_document_outline = src->generate_document_outline;
  }
};

using CefPdfPrintSettings = CefStructBase<CefPdfPrintSettingsTraits>;

class CefCompositionUnderline : public cef_composition_underline_t {
 public:
  CefCompositionUnderline() : cef_composition_underline_t{} {}
  CefCompositionUnderline(const cef_composition_underline_t& r)
      : cef_composition_underline_t(r) {}
};

class CefAudioParameters : public cef_audio_parameters_t {
 public:
  CefAudioParameters() : cef_audio_parameters_t{} {}
  CefAudioParameters(const cef_audio_parameters_t& r)
      : cef_audio_parameters_t(r) {}
};

class CefAcceleratedPaintInfo : public cef_accelerated_paint_info_t {
 public:
  CefAcceleratedPaintInfo() : cef_accelerated_paint_info_t{} {}
  CefAcceleratedPaintInfo(const cef_accelerated_paint_info_t& r)
      : cef_accelerated_paint_info_t(r) {}
};

struct CefLinuxWindowPropertiesTraits {
  using struct_type = cef_linux_window_properties_t;

  static inline void init(struct_type*) {}

  static inline void clear(struct_type* s) {
    cef_string_clear(&s->wayland_app_id);
    cef_string_clear(&s->wm_class_class);
    cef_string_clear(&s->wm_class_name);
    cef_string_clear(&s->wm_role_name);
  }

  static inline void set(const struct_type* src, struct_type* dst, bool copy) {
    using cef_types_internal::CopyString;
    CopyString(src->wayland_app_id, &dst->wayland_app_id, copy);
    CopyString(src->wm_class_class, &dst->wm_class_class, copy);
    CopyString(src->wm_class_name, &dst->wm_class_name, copy);
    CopyString(src->wm_role_name, &dst->wm_role_name, copy);
  }
};

using CefLinuxWindowProperties = CefStructBase<CefLinuxWindowPropertiesTraits>;

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_
