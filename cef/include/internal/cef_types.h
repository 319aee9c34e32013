// C types of the engine's API: enumerations and plain structs shared by the
// C++ classes. Only the part of the API the engine implements is declared;
// names, values and field order follow CEF 128 so that client code builds
// against either.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_H_
#pragma once

#include <limits.h>
#include <stddef.h>
#include <stdint.h>

#include "include/base/cef_build.h"
#include "include/internal/cef_string.h"
#include "include/internal/cef_string_list.h"
#include "include/internal/cef_time.h"
#include "include/internal/cef_types_content_settings.h"
#include "include/internal/cef_types_geometry.h"
#if defined(OS_LINUX)
#include "include/internal/cef_types_linux.h"
#endif

// 32-bit ARGB color, 8 bits per channel.
typedef uint32_t cef_color_t;

#define CefColorGetA(color) (((color) >> 24) & 0xFF)
#define CefColorGetR(color) (((color) >> 16) & 0xFF)
#define CefColorGetG(color) (((color) >> 8) & 0xFF)
#define CefColorGetB(color) (((color) >> 0) & 0xFF)

#define CefColorSetARGB(a, r, g, b)                                         \
  static_cast<cef_color_t>(                                                 \
      (static_cast<unsigned>(a) << 24) | (static_cast<unsigned>(r) << 16) | \
      (static_cast<unsigned>(g) << 8) | (static_cast<unsigned>(b) << 0))

// Splits and joins a 64-bit integer as two 32-bit halves.
#define CefInt64Set(int32_low, int32_high) \
  static_cast<int64_t>(                    \
      (static_cast<uint32_t>(int32_low)) | \
      (static_cast<int64_t>(static_cast<int32_t>(int32_high))) << 32)
#define CefInt64GetLow(int64_val) static_cast<int32_t>(int64_val)
#define CefInt64GetHigh(int64_val) \
  static_cast<int32_t>((static_cast<int64_t>(int64_val) >> 32) & 0xFFFFFFFFL)

#ifdef __cplusplus
extern "C" {
#endif

// Minimum severity of log messages. DEFAULT means INFO.
typedef enum {
  LOGSEVERITY_DEFAULT = 0,
  LOGSEVERITY_VERBOSE = 1,
  LOGSEVERITY_DEBUG = LOGSEVERITY_VERBOSE,
  LOGSEVERITY_INFO = 2,
  LOGSEVERITY_WARNING = 3,
  LOGSEVERITY_ERROR = 4,
  LOGSEVERITY_FATAL = 5,
  LOGSEVERITY_DISABLE = 99,
} cef_log_severity_t;

// Prefix items of each log line (flags unless DEFAULT or NONE).
typedef enum {
  LOG_ITEMS_DEFAULT = 0,
  LOG_ITEMS_NONE = 1,
  LOG_ITEMS_FLAG_PROCESS_ID = 1 << 1,
  LOG_ITEMS_FLAG_THREAD_ID = 1 << 2,
  LOG_ITEMS_FLAG_TIME_STAMP = 1 << 3,
  LOG_ITEMS_FLAG_TICK_COUNT = 1 << 4,
} cef_log_items_t;

// Tri-state for optional features: DEFAULT keeps the built-in choice.
typedef enum {
  STATE_DEFAULT = 0,
  STATE_ENABLED = 1,
  STATE_DISABLED = 2,
} cef_state_t;

// Settings of the whole engine, given to CefInitialize(). Strings are
// cef_string_t so that they can be filled with CefString(&settings.field).
typedef struct _cef_settings_t {
  // sizeof(cef_settings_t); filled in by CefSettings.
  size_t size;
  int no_sandbox;
  cef_string_t browser_subprocess_path;
  cef_string_t framework_dir_path;
  cef_string_t main_bundle_path;
  int multi_threaded_message_loop;
  int external_message_pump;
  int windowless_rendering_enabled;
  int command_line_args_disabled;
  // Profile directory; must lie inside |root_cache_path|. Empty means
  // incognito.
  cef_string_t cache_path;
  cef_string_t root_cache_path;
  int persist_session_cookies;
  cef_string_t user_agent;
  cef_string_t user_agent_product;
  cef_string_t locale;
  cef_string_t log_file;
  cef_log_severity_t log_severity;
  cef_log_items_t log_items;
  cef_string_t javascript_flags;
  cef_string_t resources_dir_path;
  cef_string_t locales_dir_path;
  int remote_debugging_port;
  int uncaught_exception_stack_size;
  cef_color_t background_color;
  cef_string_t accept_language_list;
  cef_string_t cookieable_schemes_list;
  int cookieable_schemes_exclude_defaults;
  cef_string_t chrome_policy_id;
  int chrome_app_icon_id;
#if defined(OS_POSIX)
  int disable_signal_handlers;
#endif
} cef_settings_t;

// Settings of one request context (profile).
typedef struct _cef_request_context_settings_t {
  size_t size;
  cef_string_t cache_path;
  int persist_session_cookies;
  cef_string_t accept_language_list;
  cef_string_t cookieable_schemes_list;
  int cookieable_schemes_exclude_defaults;
} cef_request_context_settings_t;

// Settings of one browser.
typedef struct _cef_browser_settings_t {
  size_t size;
  // Frames per second of off-screen rendering (1 to 60, default 30).
  int windowless_frame_rate;
  cef_string_t standard_font_family;
  cef_string_t fixed_font_family;
  cef_string_t serif_font_family;
  cef_string_t sans_serif_font_family;
  cef_string_t cursive_font_family;
  cef_string_t fantasy_font_family;
  int default_font_size;
  int default_fixed_font_size;
  int minimum_font_size;
  int minimum_logical_font_size;
  cef_string_t default_encoding;
  cef_state_t remote_fonts;
  cef_state_t javascript;
  cef_state_t javascript_close_windows;
  cef_state_t javascript_access_clipboard;
  cef_state_t javascript_dom_paste;
  cef_state_t image_loading;
  cef_state_t image_shrink_standalone_to_fit;
  cef_state_t text_area_resize;
  cef_state_t tab_to_links;
  cef_state_t local_storage;
  cef_state_t databases;
  cef_state_t webgl;
  cef_color_t background_color;
  cef_state_t chrome_status_bubble;
  cef_state_t chrome_zoom_bubble;
} cef_browser_settings_t;

// Answer of an asynchronous handler: cancel, go on now, or go on later.
typedef enum {
  RV_CANCEL = 0,
  RV_CONTINUE = 1,
  RV_CONTINUE_ASYNC = 2,
} cef_return_value_t;

// Parts of a URL, as split by CefParseURL().
typedef struct _cef_urlparts_t {
  cef_string_t spec;
  cef_string_t scheme;
  cef_string_t username;
  cef_string_t password;
  cef_string_t host;
  cef_string_t port;
  cef_string_t origin;
  cef_string_t path;
  cef_string_t query;
  cef_string_t fragment;
} cef_urlparts_t;

typedef enum {
  CEF_COOKIE_PRIORITY_LOW = -1,
  CEF_COOKIE_PRIORITY_MEDIUM = 0,
  CEF_COOKIE_PRIORITY_HIGH = 1,
} cef_cookie_priority_t;

typedef enum {
  CEF_COOKIE_SAME_SITE_UNSPECIFIED = 0,
  CEF_COOKIE_SAME_SITE_NO_RESTRICTION = 1,
  CEF_COOKIE_SAME_SITE_LAX_MODE = 2,
  CEF_COOKIE_SAME_SITE_STRICT_MODE = 3,
} cef_cookie_same_site_t;

typedef struct _cef_cookie_t {
  cef_string_t name;
  cef_string_t value;
  cef_string_t domain;
  cef_string_t path;
  int secure;
  int httponly;
  cef_basetime_t creation;
  cef_basetime_t last_access;
  int has_expires;
  cef_basetime_t expires;
  cef_cookie_same_site_t same_site;
  cef_cookie_priority_t priority;
} cef_cookie_t;

// How a render process ended.
typedef enum {
  TS_ABNORMAL_TERMINATION = 0,
  TS_PROCESS_WAS_KILLED = 1,
  TS_PROCESS_CRASHED = 2,
  TS_PROCESS_OOM = 3,
  TS_LAUNCH_FAILED = 4,
  TS_INTEGRITY_FAILURE = 5,
} cef_termination_status_t;

// Directories known to CefGetPath().
typedef enum {
  PK_DIR_CURRENT = 0,
  PK_DIR_EXE = 1,
  PK_DIR_MODULE = 2,
  PK_DIR_TEMP = 3,
  PK_FILE_EXE = 4,
  PK_FILE_MODULE = 5,
  PK_LOCAL_APP_DATA = 6,
  PK_USER_DATA = 7,
  PK_DIR_RESOURCES = 8,
} cef_path_key_t;

typedef enum {
  ST_LOCALSTORAGE = 0,
  ST_SESSIONSTORAGE = 1,
} cef_storage_type_t;

// Network error codes (negative), as reported to load and request handlers.
typedef enum {
  ERR_NONE = 0,
  ERR_IO_PENDING = -1,
  ERR_FAILED = -2,
  ERR_ABORTED = -3,
  ERR_INVALID_ARGUMENT = -4,
  ERR_INVALID_HANDLE = -5,
  ERR_FILE_NOT_FOUND = -6,
  ERR_TIMED_OUT = -7,
  ERR_FILE_TOO_BIG = -8,
  ERR_UNEXPECTED = -9,
  ERR_ACCESS_DENIED = -10,
  ERR_NOT_IMPLEMENTED = -11,
  ERR_INSUFFICIENT_RESOURCES = -12,
  ERR_OUT_OF_MEMORY = -13,
  ERR_BLOCKED_BY_CLIENT = -20,
  ERR_BLOCKED_BY_RESPONSE = -27,
  ERR_CONNECTION_CLOSED = -100,
  ERR_CONNECTION_RESET = -101,
  ERR_CONNECTION_REFUSED = -102,
  ERR_CONNECTION_ABORTED = -103,
  ERR_CONNECTION_FAILED = -104,
  ERR_NAME_NOT_RESOLVED = -105,
  ERR_INTERNET_DISCONNECTED = -106,
  ERR_SSL_PROTOCOL_ERROR = -107,
  ERR_ADDRESS_INVALID = -108,
  ERR_ADDRESS_UNREACHABLE = -109,
  ERR_CERT_COMMON_NAME_INVALID = -200,
  ERR_CERT_DATE_INVALID = -201,
  ERR_CERT_AUTHORITY_INVALID = -202,
  ERR_CERT_CONTAINS_ERRORS = -203,
  ERR_CERT_NO_REVOCATION_MECHANISM = -204,
  ERR_CERT_UNABLE_TO_CHECK_REVOCATION = -205,
  ERR_CERT_REVOKED = -206,
  ERR_CERT_INVALID = -207,
  ERR_CERT_WEAK_SIGNATURE_ALGORITHM = -208,
  ERR_CERT_NON_UNIQUE_NAME = -210,
  ERR_CERT_WEAK_KEY = -211,
  ERR_CERT_NAME_CONSTRAINT_VIOLATION = -212,
  ERR_CERT_VALIDITY_TOO_LONG = -213,
  ERR_CERT_END = -219,
  ERR_INVALID_URL = -300,
  ERR_DISALLOWED_URL_SCHEME = -301,
  ERR_UNKNOWN_URL_SCHEME = -302,
  ERR_TOO_MANY_REDIRECTS = -310,
  ERR_UNSAFE_REDIRECT = -311,
  ERR_UNSAFE_PORT = -312,
  ERR_INVALID_RESPONSE = -320,
  ERR_EMPTY_RESPONSE = -324,
  ERR_CACHE_MISS = -400,
  ERR_INSECURE_RESPONSE = -501,
} cef_errorcode_t;

// Certificate problems, as flags.
typedef enum {
  CERT_STATUS_NONE = 0,
  CERT_STATUS_COMMON_NAME_INVALID = 1 << 0,
  CERT_STATUS_DATE_INVALID = 1 << 1,
  CERT_STATUS_AUTHORITY_INVALID = 1 << 2,
  CERT_STATUS_NO_REVOCATION_MECHANISM = 1 << 4,
  CERT_STATUS_UNABLE_TO_CHECK_REVOCATION = 1 << 5,
  CERT_STATUS_REVOKED = 1 << 6,
  CERT_STATUS_INVALID = 1 << 7,
  CERT_STATUS_WEAK_SIGNATURE_ALGORITHM = 1 << 8,
  CERT_STATUS_NON_UNIQUE_NAME = 1 << 10,
  CERT_STATUS_WEAK_KEY = 1 << 11,
  CERT_STATUS_PINNED_KEY_MISSING = 1 << 13,
  CERT_STATUS_NAME_CONSTRAINT_VIOLATION = 1 << 14,
  CERT_STATUS_VALIDITY_TOO_LONG = 1 << 15,
  CERT_STATUS_IS_EV = 1 << 16,
  CERT_STATUS_REV_CHECKING_ENABLED = 1 << 17,
  CERT_STATUS_SHA1_SIGNATURE_PRESENT = 1 << 19,
  CERT_STATUS_CT_COMPLIANCE_FAILED = 1 << 20,
} cef_cert_status_t;

// Exit codes of engine processes.
typedef enum {
  CEF_RESULT_CODE_NORMAL_EXIT = 0,
  CEF_RESULT_CODE_KILLED = 1,
  CEF_RESULT_CODE_HUNG = 2,
  CEF_RESULT_CODE_KILLED_BAD_MESSAGE = 3,
  CEF_RESULT_CODE_GPU_DEAD_ON_ARRIVAL = 4,
  CEF_RESULT_CODE_CHROME_FIRST = 5,
  CEF_RESULT_CODE_MISSING_DATA = 7,
  CEF_RESULT_CODE_UNSUPPORTED_PARAM = 13,
  CEF_RESULT_CODE_PROFILE_IN_USE = 21,
  CEF_RESULT_CODE_PACK_EXTENSION_ERROR = 22,
  CEF_RESULT_CODE_NORMAL_EXIT_PROCESS_NOTIFIED = 24,
  CEF_RESULT_CODE_INVALID_SANDBOX_STATE = 31,
  CEF_RESULT_CODE_CLOUD_POLICY_ENROLLMENT_FAILED = 32,
  CEF_RESULT_CODE_GPU_EXIT_ON_CONTEXT_LOST = 34,
  CEF_RESULT_CODE_NORMAL_EXIT_PACK_EXTENSION_SUCCESS = 36,
  CEF_RESULT_CODE_SYSTEM_RESOURCE_EXHAUSTED = 37,
  CEF_RESULT_CODE_CHROME_LAST = 39,
  CEF_RESULT_CODE_SANDBOX_FATAL_FIRST = 7006,
  CEF_RESULT_CODE_SANDBOX_FATAL_INTEGRITY = CEF_RESULT_CODE_SANDBOX_FATAL_FIRST,
  CEF_RESULT_CODE_SANDBOX_FATAL_DROPTOKEN = 7007,
  CEF_RESULT_CODE_SANDBOX_FATAL_FLUSHANDLES = 7008,
  CEF_RESULT_CODE_SANDBOX_FATAL_CACHEDISABLE = 7009,
  CEF_RESULT_CODE_SANDBOX_FATAL_CLOSEHANDLES = 7010,
  CEF_RESULT_CODE_SANDBOX_FATAL_MITIGATION = 7011,
  CEF_RESULT_CODE_SANDBOX_FATAL_MEMORY_EXCEEDED = 7012,
  CEF_RESULT_CODE_SANDBOX_FATAL_WARMUP = 7013,
  CEF_RESULT_CODE_SANDBOX_FATAL_LAST = 7014,
} cef_resultcode_t;

// Where a navigation asks to be shown.
typedef enum {
  CEF_WOD_UNKNOWN = 0,
  CEF_WOD_CURRENT_TAB = 1,
  CEF_WOD_SINGLETON_TAB = 2,
  CEF_WOD_NEW_FOREGROUND_TAB = 3,
  CEF_WOD_NEW_BACKGROUND_TAB = 4,
  CEF_WOD_NEW_POPUP = 5,
  CEF_WOD_NEW_WINDOW = 6,
  CEF_WOD_SAVE_TO_DISK = 7,
  CEF_WOD_OFF_THE_RECORD = 8,
  CEF_WOD_IGNORE_ACTION = 9,
  CEF_WOD_SWITCH_TO_TAB = 10,
  CEF_WOD_NEW_PICTURE_IN_PICTURE = 11,
  CEF_WOD_MAX_VALUE = CEF_WOD_NEW_PICTURE_IN_PICTURE,
} cef_window_open_disposition_t;

// Drag-and-drop operations, as flags.
typedef enum {
  DRAG_OPERATION_NONE = 0,
  DRAG_OPERATION_COPY = 1,
  DRAG_OPERATION_LINK = 2,
  DRAG_OPERATION_GENERIC = 4,
  DRAG_OPERATION_PRIVATE = 8,
  DRAG_OPERATION_MOVE = 16,
  DRAG_OPERATION_DELETE = 32,
  DRAG_OPERATION_EVERY = UINT_MAX,
} cef_drag_operations_mask_t;

// The inputmode of the focused editable element.
typedef enum {
  CEF_TEXT_INPUT_MODE_DEFAULT = 0,
  CEF_TEXT_INPUT_MODE_NONE = 1,
  CEF_TEXT_INPUT_MODE_TEXT = 2,
  CEF_TEXT_INPUT_MODE_TEL = 3,
  CEF_TEXT_INPUT_MODE_URL = 4,
  CEF_TEXT_INPUT_MODE_EMAIL = 5,
  CEF_TEXT_INPUT_MODE_NUMERIC = 6,
  CEF_TEXT_INPUT_MODE_DECIMAL = 7,
  CEF_TEXT_INPUT_MODE_SEARCH = 8,
  CEF_TEXT_INPUT_MODE_MAX = CEF_TEXT_INPUT_MODE_SEARCH,
} cef_text_input_mode_t;

typedef enum {
  PDE_TYPE_EMPTY = 0,
  PDE_TYPE_BYTES = 1,
  PDE_TYPE_FILE = 2,
} cef_postdataelement_type_t;

// What a resource request loads.
typedef enum {
  RT_MAIN_FRAME = 0,
  RT_SUB_FRAME = 1,
  RT_STYLESHEET = 2,
  RT_SCRIPT = 3,
  RT_IMAGE = 4,
  RT_FONT_RESOURCE = 5,
  RT_SUB_RESOURCE = 6,
  RT_OBJECT = 7,
  RT_MEDIA = 8,
  RT_WORKER = 9,
  RT_SHARED_WORKER = 10,
  RT_PREFETCH = 11,
  RT_FAVICON = 12,
  RT_XHR = 13,
  RT_PING = 14,
  RT_SERVICE_WORKER = 15,
  RT_CSP_REPORT = 16,
  RT_PLUGIN_RESOURCE = 17,
  RT_NAVIGATION_PRELOAD_MAIN_FRAME = 19,
  RT_NAVIGATION_PRELOAD_SUB_FRAME = 20,
} cef_resource_type_t;

// How a navigation started: a source value in the low byte plus qualifier flags.
typedef enum {
  TT_LINK = 0,
  TT_EXPLICIT = 1,
  TT_AUTO_BOOKMARK = 2,
  TT_AUTO_SUBFRAME = 3,
  TT_MANUAL_SUBFRAME = 4,
  TT_GENERATED = 5,
  TT_AUTO_TOPLEVEL = 6,
  TT_FORM_SUBMIT = 7,
  TT_RELOAD = 8,
  TT_KEYWORD = 9,
  TT_KEYWORD_GENERATED = 10,
  TT_SOURCE_MASK = 0xFF,
  TT_BLOCKED_FLAG = 0x00800000,
  TT_FORWARD_BACK_FLAG = 0x01000000,
  TT_DIRECT_LOAD_FLAG = 0x02000000,
  TT_HOME_PAGE_FLAG = 0x04000000,
  TT_FROM_API_FLAG = 0x08000000,
  TT_CHAIN_START_FLAG = 0x10000000,
  TT_CHAIN_END_FLAG = 0x20000000,
  TT_CLIENT_REDIRECT_FLAG = 0x40000000,
  TT_SERVER_REDIRECT_FLAG = 0x80000000,
  TT_IS_REDIRECT_MASK = 0xC0000000,
  TT_QUALIFIER_MASK = 0xFFFFFF00,
} cef_transition_type_t;

typedef enum {
  UR_FLAG_NONE = 0,
  UR_FLAG_SKIP_CACHE = 1 << 0,
  UR_FLAG_ONLY_FROM_CACHE = 1 << 1,
  UR_FLAG_DISABLE_CACHE = 1 << 2,
  UR_FLAG_ALLOW_STORED_CREDENTIALS = 1 << 3,
  UR_FLAG_REPORT_UPLOAD_PROGRESS = 1 << 4,
  UR_FLAG_NO_DOWNLOAD_DATA = 1 << 5,
  UR_FLAG_NO_RETRY_ON_5XX = 1 << 6,
  UR_FLAG_STOP_ON_REDIRECT = 1 << 7,
} cef_urlrequest_flags_t;

typedef enum {
  UR_UNKNOWN = 0,
  UR_SUCCESS = 1,
  UR_IO_PENDING = 2,
  UR_CANCELED = 3,
  UR_FAILED = 4,
} cef_urlrequest_status_t;

// A region of the page marked draggable (CSS app-region).
typedef struct _cef_draggable_region_t {
  cef_rect_t bounds;
  int draggable;
} cef_draggable_region_t;

typedef enum {
  PID_BROWSER = 0,
  PID_RENDERER = 1,
} cef_process_id_t;

// Named threads of the engine.
typedef enum {
  TID_UI = 0,
  TID_FILE_BACKGROUND = 1,
  TID_FILE_USER_VISIBLE = 2,
  TID_FILE_USER_BLOCKING = 3,
  TID_PROCESS_LAUNCHER = 4,
  TID_IO = 5,
  TID_RENDERER = 6,
} cef_thread_id_t;

typedef enum {
  TP_BACKGROUND = 0,
  TP_NORMAL = 1,
  TP_DISPLAY = 2,
  TP_REALTIME_AUDIO = 3,
} cef_thread_priority_t;

typedef enum {
  ML_TYPE_DEFAULT = 0,
  ML_TYPE_UI = 1,
  ML_TYPE_IO = 2,
} cef_message_loop_type_t;

// Type of a CefValue.
typedef enum {
  VTYPE_INVALID = 0,
  VTYPE_NULL = 1,
  VTYPE_BOOL = 2,
  VTYPE_INT = 3,
  VTYPE_DOUBLE = 4,
  VTYPE_STRING = 5,
  VTYPE_BINARY = 6,
  VTYPE_DICTIONARY = 7,
  VTYPE_LIST = 8,
} cef_value_type_t;

typedef enum {
  JSDIALOGTYPE_ALERT = 0,
  JSDIALOGTYPE_CONFIRM = 1,
  JSDIALOGTYPE_PROMPT = 2,
} cef_jsdialog_type_t;

// The screen a windowless browser draws for.
typedef struct _cef_screen_info_t {
  float device_scale_factor;
  int depth;
  int depth_per_component;
  int is_monochrome;
  // Screen bounds and the part not covered by panels, in screen DIPs.
  cef_rect_t rect;
  cef_rect_t available_rect;
} cef_screen_info_t;

typedef struct _cef_linux_window_properties_t {
  cef_string_t wayland_app_id;
  cef_string_t wm_class_class;
  cef_string_t wm_class_name;
  cef_string_t wm_role_name;
} cef_linux_window_properties_t;

// Command ids of the default context menu entries; custom entries use MENU_ID_USER_FIRST to MENU_ID_USER_LAST.
typedef enum {
  MENU_ID_BACK = 100,
  MENU_ID_FORWARD = 101,
  MENU_ID_RELOAD = 102,
  MENU_ID_RELOAD_NOCACHE = 103,
  MENU_ID_STOPLOAD = 104,
  MENU_ID_UNDO = 110,
  MENU_ID_REDO = 111,
  MENU_ID_CUT = 112,
  MENU_ID_COPY = 113,
  MENU_ID_PASTE = 114,
  MENU_ID_DELETE = 115,
  MENU_ID_SELECT_ALL = 116,
  MENU_ID_FIND = 130,
  MENU_ID_PRINT = 131,
  MENU_ID_VIEW_SOURCE = 132,
  MENU_ID_SPELLCHECK_SUGGESTION_0 = 200,
  MENU_ID_SPELLCHECK_SUGGESTION_1 = 201,
  MENU_ID_SPELLCHECK_SUGGESTION_2 = 202,
  MENU_ID_SPELLCHECK_SUGGESTION_3 = 203,
  MENU_ID_SPELLCHECK_SUGGESTION_4 = 204,
  MENU_ID_SPELLCHECK_SUGGESTION_LAST = 204,
  MENU_ID_NO_SPELLING_SUGGESTIONS = 205,
  MENU_ID_ADD_TO_DICTIONARY = 206,
  MENU_ID_CUSTOM_FIRST = 220,
  MENU_ID_CUSTOM_LAST = 250,
  MENU_ID_USER_FIRST = 26500,
  MENU_ID_USER_LAST = 28500,
} cef_menu_id_t;

typedef enum {
  MBT_LEFT = 0,
  MBT_MIDDLE = 1,
  MBT_RIGHT = 2,
} cef_mouse_button_type_t;

// A mouse event; x and y are in view coordinates (DIPs).
typedef struct _cef_mouse_event_t {
  int x;
  int y;
  // cef_event_flags_t bits.
  uint32_t modifiers;
} cef_mouse_event_t;

typedef enum {
  CEF_TET_RELEASED = 0,
  CEF_TET_PRESSED = 1,
  CEF_TET_MOVED = 2,
  CEF_TET_CANCELLED = 3,
} cef_touch_event_type_t;

typedef enum {
  CEF_POINTER_TYPE_TOUCH = 0,
  CEF_POINTER_TYPE_MOUSE = 1,
  CEF_POINTER_TYPE_PEN = 2,
  CEF_POINTER_TYPE_ERASER = 3,
  CEF_POINTER_TYPE_UNKNOWN = 4,
} cef_pointer_type_t;

typedef struct _cef_touch_event_t {
  int id;
  float x;
  float y;
  float radius_x;
  float radius_y;
  float rotation_angle;
  float pressure;
  cef_touch_event_type_t type;
  uint32_t modifiers;
  cef_pointer_type_t pointer_type;
} cef_touch_event_t;

typedef enum {
  PET_VIEW = 0,
  PET_POPUP = 1,
} cef_paint_element_type_t;

// Modifier and button state of input events, as flags.
typedef enum {
  EVENTFLAG_NONE = 0,
  EVENTFLAG_CAPS_LOCK_ON = 1 << 0,
  EVENTFLAG_SHIFT_DOWN = 1 << 1,
  EVENTFLAG_CONTROL_DOWN = 1 << 2,
  EVENTFLAG_ALT_DOWN = 1 << 3,
  EVENTFLAG_LEFT_MOUSE_BUTTON = 1 << 4,
  EVENTFLAG_MIDDLE_MOUSE_BUTTON = 1 << 5,
  EVENTFLAG_RIGHT_MOUSE_BUTTON = 1 << 6,
  EVENTFLAG_COMMAND_DOWN = 1 << 7,
  EVENTFLAG_NUM_LOCK_ON = 1 << 8,
  EVENTFLAG_IS_KEY_PAD = 1 << 9,
  EVENTFLAG_IS_LEFT = 1 << 10,
  EVENTFLAG_IS_RIGHT = 1 << 11,
  EVENTFLAG_ALTGR_DOWN = 1 << 12,
  EVENTFLAG_IS_REPEAT = 1 << 13,
} cef_event_flags_t;

typedef enum {
  MENUITEMTYPE_NONE = 0,
  MENUITEMTYPE_COMMAND = 1,
  MENUITEMTYPE_CHECK = 2,
  MENUITEMTYPE_RADIO = 3,
  MENUITEMTYPE_SEPARATOR = 4,
  MENUITEMTYPE_SUBMENU = 5,
} cef_menu_item_type_t;

// Colors a menu item can be given through CefMenuModel::SetColor.
typedef enum {
  CEF_MENU_COLOR_TEXT,
  CEF_MENU_COLOR_TEXT_HOVERED,
  CEF_MENU_COLOR_TEXT_ACCELERATOR,
  CEF_MENU_COLOR_TEXT_ACCELERATOR_HOVERED,
  CEF_MENU_COLOR_BACKGROUND,
  CEF_MENU_COLOR_BACKGROUND_HOVERED,
  CEF_MENU_COLOR_COUNT,
} cef_menu_color_type_t;

// What a context menu was opened on, as flags.
typedef enum {
  CM_TYPEFLAG_NONE = 0,
  CM_TYPEFLAG_PAGE = 1 << 0,
  CM_TYPEFLAG_FRAME = 1 << 1,
  CM_TYPEFLAG_LINK = 1 << 2,
  CM_TYPEFLAG_MEDIA = 1 << 3,
  CM_TYPEFLAG_SELECTION = 1 << 4,
  CM_TYPEFLAG_EDITABLE = 1 << 5,
} cef_context_menu_type_flags_t;

typedef enum {
  CM_MEDIATYPE_NONE = 0,
  CM_MEDIATYPE_IMAGE = 1,
  CM_MEDIATYPE_VIDEO = 2,
  CM_MEDIATYPE_AUDIO = 3,
  CM_MEDIATYPE_CANVAS = 4,
  CM_MEDIATYPE_FILE = 5,
  CM_MEDIATYPE_PLUGIN = 6,
} cef_context_menu_media_type_t;

typedef enum {
  CM_MEDIAFLAG_NONE = 0,
  CM_MEDIAFLAG_IN_ERROR = 1 << 0,
  CM_MEDIAFLAG_PAUSED = 1 << 1,
  CM_MEDIAFLAG_MUTED = 1 << 2,
  CM_MEDIAFLAG_LOOP = 1 << 3,
  CM_MEDIAFLAG_CAN_SAVE = 1 << 4,
  CM_MEDIAFLAG_HAS_AUDIO = 1 << 5,
  CM_MEDIAFLAG_CAN_TOGGLE_CONTROLS = 1 << 6,
  CM_MEDIAFLAG_CONTROLS = 1 << 7,
  CM_MEDIAFLAG_CAN_PRINT = 1 << 8,
  CM_MEDIAFLAG_CAN_ROTATE = 1 << 9,
  CM_MEDIAFLAG_CAN_PICTURE_IN_PICTURE = 1 << 10,
  CM_MEDIAFLAG_PICTURE_IN_PICTURE = 1 << 11,
  CM_MEDIAFLAG_CAN_LOOP = 1 << 12,
} cef_context_menu_media_state_flags_t;

// Edit commands available in a context menu, as flags.
typedef enum {
  CM_EDITFLAG_NONE = 0,
  CM_EDITFLAG_CAN_UNDO = 1 << 0,
  CM_EDITFLAG_CAN_REDO = 1 << 1,
  CM_EDITFLAG_CAN_CUT = 1 << 2,
  CM_EDITFLAG_CAN_COPY = 1 << 3,
  CM_EDITFLAG_CAN_PASTE = 1 << 4,
  CM_EDITFLAG_CAN_DELETE = 1 << 5,
  CM_EDITFLAG_CAN_SELECT_ALL = 1 << 6,
  CM_EDITFLAG_CAN_TRANSLATE = 1 << 7,
  CM_EDITFLAG_CAN_EDIT_RICHLY = 1 << 8,
} cef_context_menu_edit_state_flags_t;

typedef enum {
  QM_EDITFLAG_NONE = 0,
  QM_EDITFLAG_CAN_ELLIPSIS = 1 << 0,
  QM_EDITFLAG_CAN_CUT = 1 << 1,
  QM_EDITFLAG_CAN_COPY = 1 << 2,
  QM_EDITFLAG_CAN_PASTE = 1 << 3,
} cef_quick_menu_edit_state_flags_t;

typedef enum {
  KEYEVENT_RAWKEYDOWN = 0,
  KEYEVENT_KEYDOWN = 1,
  KEYEVENT_KEYUP = 2,
  KEYEVENT_CHAR = 3,
} cef_key_event_type_t;

// A keyboard event. |windows_key_code| is the Windows virtual-key code;
// |native_key_code| the platform's (an X11 keycode on Linux).
typedef struct _cef_key_event_t {
  cef_key_event_type_t type;
  uint32_t modifiers;
  int windows_key_code;
  int native_key_code;
  int is_system_key;
  char16_t character;
  char16_t unmodified_character;
  int focus_on_editable_field;
} cef_key_event_t;

typedef enum {
  FOCUS_SOURCE_NAVIGATION = 0,
  FOCUS_SOURCE_SYSTEM = 1,
} cef_focus_source_t;

typedef enum {
  NAVIGATION_LINK_CLICKED = 0,
  NAVIGATION_FORM_SUBMITTED = 1,
  NAVIGATION_BACK_FORWARD = 2,
  NAVIGATION_RELOAD = 3,
  NAVIGATION_FORM_RESUBMITTED = 4,
  NAVIGATION_OTHER = 5,
} cef_navigation_type_t;

// window.open() features of a popup.
typedef struct _cef_popup_features_t {
  int x;
  int xSet;
  int y;
  int ySet;
  int width;
  int widthSet;
  int height;
  int heightSet;
  int isPopup;
} cef_popup_features_t;

typedef enum {
  FILE_DIALOG_OPEN = 0,
  FILE_DIALOG_OPEN_MULTIPLE = 1,
  FILE_DIALOG_OPEN_FOLDER = 2,
  FILE_DIALOG_SAVE = 3,
} cef_file_dialog_mode_t;

typedef enum {
  COLOR_MODEL_UNKNOWN = 0,
  COLOR_MODEL_GRAY = 1,
  COLOR_MODEL_COLOR = 2,
  COLOR_MODEL_CMYK = 3,
  COLOR_MODEL_CMY = 4,
  COLOR_MODEL_KCMY = 5,
  COLOR_MODEL_CMY_K = 6,
  COLOR_MODEL_BLACK = 7,
  COLOR_MODEL_GRAYSCALE = 8,
  COLOR_MODEL_RGB = 9,
  COLOR_MODEL_RGB16 = 10,
  COLOR_MODEL_RGBA = 11,
  COLOR_MODEL_COLORMODE_COLOR = 12,
  COLOR_MODEL_COLORMODE_MONOCHROME = 13,
  COLOR_MODEL_HP_COLOR_COLOR = 14,
  COLOR_MODEL_HP_COLOR_BLACK = 15,
  COLOR_MODEL_PRINTOUTMODE_NORMAL = 16,
  COLOR_MODEL_PRINTOUTMODE_NORMAL_GRAY = 17,
  COLOR_MODEL_PROCESSCOLORMODEL_CMYK = 18,
  COLOR_MODEL_PROCESSCOLORMODEL_GREYSCALE = 19,
  COLOR_MODEL_PROCESSCOLORMODEL_RGB = 20,
} cef_color_model_t;

typedef enum {
  DUPLEX_MODE_UNKNOWN = -1,
  DUPLEX_MODE_SIMPLEX = 0,
  DUPLEX_MODE_LONG_EDGE = 1,
  DUPLEX_MODE_SHORT_EDGE = 2,
} cef_duplex_mode_t;

// Cursor shapes a page asks for.
typedef enum {
  CT_POINTER = 0,
  CT_CROSS = 1,
  CT_HAND = 2,
  CT_IBEAM = 3,
  CT_WAIT = 4,
  CT_HELP = 5,
  CT_EASTRESIZE = 6,
  CT_NORTHRESIZE = 7,
  CT_NORTHEASTRESIZE = 8,
  CT_NORTHWESTRESIZE = 9,
  CT_SOUTHRESIZE = 10,
  CT_SOUTHEASTRESIZE = 11,
  CT_SOUTHWESTRESIZE = 12,
  CT_WESTRESIZE = 13,
  CT_NORTHSOUTHRESIZE = 14,
  CT_EASTWESTRESIZE = 15,
  CT_NORTHEASTSOUTHWESTRESIZE = 16,
  CT_NORTHWESTSOUTHEASTRESIZE = 17,
  CT_COLUMNRESIZE = 18,
  CT_ROWRESIZE = 19,
  CT_MIDDLEPANNING = 20,
  CT_EASTPANNING = 21,
  CT_NORTHPANNING = 22,
  CT_NORTHEASTPANNING = 23,
  CT_NORTHWESTPANNING = 24,
  CT_SOUTHPANNING = 25,
  CT_SOUTHEASTPANNING = 26,
  CT_SOUTHWESTPANNING = 27,
  CT_WESTPANNING = 28,
  CT_MOVE = 29,
  CT_VERTICALTEXT = 30,
  CT_CELL = 31,
  CT_CONTEXTMENU = 32,
  CT_ALIAS = 33,
  CT_PROGRESS = 34,
  CT_NODROP = 35,
  CT_COPY = 36,
  CT_NONE = 37,
  CT_NOTALLOWED = 38,
  CT_ZOOMIN = 39,
  CT_ZOOMOUT = 40,
  CT_GRAB = 41,
  CT_GRABBING = 42,
  CT_MIDDLE_PANNING_VERTICAL = 43,
  CT_MIDDLE_PANNING_HORIZONTAL = 44,
  CT_CUSTOM = 45,
  CT_DND_NONE = 46,
  CT_DND_MOVE = 47,
  CT_DND_COPY = 48,
  CT_DND_LINK = 49,
} cef_cursor_type_t;

// A custom cursor image: |buffer| holds |size| BGRA pixels.
typedef struct _cef_cursor_info_t {
  cef_point_t hotspot;
  float image_scale_factor;
  void* buffer;
  cef_size_t size;
} cef_cursor_info_t;

typedef enum {
  UU_NONE = 0,
  UU_NORMAL = 1 << 0,
  UU_SPACES = 1 << 1,
  UU_PATH_SEPARATORS = 1 << 2,
  UU_URL_SPECIAL_CHARS_EXCEPT_PATH_SEPARATORS = 1 << 3,
  UU_REPLACE_PLUS_WITH_SPACE = 1 << 4,
} cef_uri_unescape_rule_t;

typedef enum {
  JSON_PARSER_RFC = 0,
  JSON_PARSER_ALLOW_TRAILING_COMMAS = 1 << 0,
} cef_json_parser_options_t;

typedef enum {
  JSON_WRITER_DEFAULT = 0,
  JSON_WRITER_OMIT_BINARY_VALUES = 1 << 0,
  JSON_WRITER_OMIT_DOUBLE_TYPE_PRESERVATION = 1 << 1,
  JSON_WRITER_PRETTY_PRINT = 1 << 2,
} cef_json_writer_options_t;

typedef enum {
  PDF_PRINT_MARGIN_DEFAULT = 0,
  PDF_PRINT_MARGIN_NONE = 1,
  PDF_PRINT_MARGIN_CUSTOM = 2,
} cef_pdf_print_margin_type_t;

// Options of CefBrowserHost::PrintToPDF(). Sizes are in inches; zero means
// the default.
typedef struct _cef_pdf_print_settings_t {
  int landscape;
  int print_background;
  double scale;
  double paper_width;
  double paper_height;
  int prefer_css_page_size;
  cef_pdf_print_margin_type_t margin_type;
  double margin_top;
  double margin_right;
  double margin_bottom;
  double margin_left;
  // Page ranges such as "1-5, 8"; empty prints every page.
  cef_string_t page_ranges;
  int display_header_footer;
  cef_string_t header_template;
  cef_string_t footer_template;
  int generate_tagged_pdf;
  int generate_document_outline;
} cef_pdf_print_settings_t;

typedef enum {
  SCALE_FACTOR_NONE = 0,
  SCALE_FACTOR_100P = 1,
  SCALE_FACTOR_125P = 2,
  SCALE_FACTOR_133P = 3,
  SCALE_FACTOR_140P = 4,
  SCALE_FACTOR_150P = 5,
  SCALE_FACTOR_180P = 6,
  SCALE_FACTOR_200P = 7,
  SCALE_FACTOR_250P = 8,
  SCALE_FACTOR_300P = 9,
} cef_scale_factor_t;

typedef enum {
  REFERRER_POLICY_CLEAR_REFERRER_ON_TRANSITION_FROM_SECURE_TO_INSECURE = 0,
  REFERRER_POLICY_DEFAULT = REFERRER_POLICY_CLEAR_REFERRER_ON_TRANSITION_FROM_SECURE_TO_INSECURE,
  REFERRER_POLICY_REDUCE_REFERRER_GRANULARITY_ON_TRANSITION_CROSS_ORIGIN = 1,
  REFERRER_POLICY_ORIGIN_ONLY_ON_TRANSITION_CROSS_ORIGIN = 2,
  REFERRER_POLICY_NEVER_CLEAR_REFERRER = 3,
  REFERRER_POLICY_ORIGIN = 4,
  REFERRER_POLICY_CLEAR_REFERRER_ON_TRANSITION_CROSS_ORIGIN = 5,
  REFERRER_POLICY_ORIGIN_CLEAR_ON_TRANSITION_FROM_SECURE_TO_INSECURE = 6,
  REFERRER_POLICY_NO_REFERRER = 7,
  REFERRER_POLICY_LAST_VALUE = REFERRER_POLICY_NO_REFERRER,
} cef_referrer_policy_t;

typedef enum {
  RESPONSE_FILTER_NEED_MORE_DATA = 0,
  RESPONSE_FILTER_DONE = 1,
  RESPONSE_FILTER_ERROR = 2,
} cef_response_filter_status_t;

typedef enum {
  CEF_ALPHA_TYPE_OPAQUE = 0,
  CEF_ALPHA_TYPE_PREMULTIPLIED = 1,
  CEF_ALPHA_TYPE_POSTMULTIPLIED = 2,
} cef_alpha_type_t;

typedef enum {
  CEF_TEXT_STYLE_BOLD = 0,
  CEF_TEXT_STYLE_ITALIC = 1,
  CEF_TEXT_STYLE_STRIKE = 2,
  CEF_TEXT_STYLE_DIAGONAL_STRIKE = 3,
  CEF_TEXT_STYLE_UNDERLINE = 4,
} cef_text_style_t;

typedef enum {
  CEF_HORIZONTAL_ALIGNMENT_LEFT = 0,
  CEF_HORIZONTAL_ALIGNMENT_CENTER = 1,
  CEF_HORIZONTAL_ALIGNMENT_RIGHT = 2,
} cef_horizontal_alignment_t;

typedef enum {
  SSL_CONNECTION_VERSION_UNKNOWN = 0,
  SSL_CONNECTION_VERSION_SSL2 = 1,
  SSL_CONNECTION_VERSION_SSL3 = 2,
  SSL_CONNECTION_VERSION_TLS1 = 3,
  SSL_CONNECTION_VERSION_TLS1_1 = 4,
  SSL_CONNECTION_VERSION_TLS1_2 = 5,
  SSL_CONNECTION_VERSION_TLS1_3 = 6,
  SSL_CONNECTION_VERSION_QUIC = 7,
} cef_ssl_version_t;

typedef enum {
  SSL_CONTENT_NORMAL_CONTENT = 0,
  SSL_CONTENT_DISPLAYED_INSECURE_CONTENT = 1 << 0,
  SSL_CONTENT_RAN_INSECURE_CONTENT = 1 << 1,
} cef_ssl_content_status_t;

// Properties of a custom scheme, as flags.
typedef enum {
  CEF_SCHEME_OPTION_NONE = 0,
  CEF_SCHEME_OPTION_STANDARD = 1 << 0,
  CEF_SCHEME_OPTION_LOCAL = 1 << 1,
  CEF_SCHEME_OPTION_DISPLAY_ISOLATED = 1 << 2,
  CEF_SCHEME_OPTION_SECURE = 1 << 3,
  CEF_SCHEME_OPTION_CORS_ENABLED = 1 << 4,
  CEF_SCHEME_OPTION_CSP_BYPASSING = 1 << 5,
  CEF_SCHEME_OPTION_FETCH_ENABLED = 1 << 6,
} cef_scheme_options_t;

// A range of characters [from, to).
typedef struct _cef_range_t {
  uint32_t from;
  uint32_t to;
} cef_range_t;

typedef enum {
  CEF_CUS_SOLID = 0,
  CEF_CUS_DOT = 1,
  CEF_CUS_DASH = 2,
  CEF_CUS_NONE = 3,
} cef_composition_underline_style_t;

// How part of an IME composition is underlined.
typedef struct _cef_composition_underline_t {
  cef_range_t range;
  cef_color_t color;
  cef_color_t background_color;
  int thick;
  cef_composition_underline_style_t style;
} cef_composition_underline_t;

// Speaker layouts of an audio stream; the values match Chromium's
// media::ChannelLayout.
typedef enum {
  CEF_CHANNEL_LAYOUT_NONE = 0,
  CEF_CHANNEL_LAYOUT_UNSUPPORTED = 1,
  CEF_CHANNEL_LAYOUT_MONO = 2,
  CEF_CHANNEL_LAYOUT_STEREO = 3,
  CEF_CHANNEL_LAYOUT_2_1 = 4,
  CEF_CHANNEL_LAYOUT_SURROUND = 5,
  CEF_CHANNEL_LAYOUT_4_0 = 6,
  CEF_CHANNEL_LAYOUT_2_2 = 7,
  CEF_CHANNEL_LAYOUT_QUAD = 8,
  CEF_CHANNEL_LAYOUT_5_0 = 9,
  CEF_CHANNEL_LAYOUT_5_1 = 10,
  CEF_CHANNEL_LAYOUT_5_0_BACK = 11,
  CEF_CHANNEL_LAYOUT_5_1_BACK = 12,
  CEF_CHANNEL_LAYOUT_7_0 = 13,
  CEF_CHANNEL_LAYOUT_7_1 = 14,
  CEF_CHANNEL_LAYOUT_7_1_WIDE = 15,
  CEF_CHANNEL_LAYOUT_STEREO_DOWNMIX = 16,
  CEF_CHANNEL_LAYOUT_2POINT1 = 17,
  CEF_CHANNEL_LAYOUT_3_1 = 18,
  CEF_CHANNEL_LAYOUT_4_1 = 19,
  CEF_CHANNEL_LAYOUT_6_0 = 20,
  CEF_CHANNEL_LAYOUT_6_0_FRONT = 21,
  CEF_CHANNEL_LAYOUT_HEXAGONAL = 22,
  CEF_CHANNEL_LAYOUT_6_1 = 23,
  CEF_CHANNEL_LAYOUT_6_1_BACK = 24,
  CEF_CHANNEL_LAYOUT_6_1_FRONT = 25,
  CEF_CHANNEL_LAYOUT_7_0_FRONT = 26,
  CEF_CHANNEL_LAYOUT_7_1_WIDE_BACK = 27,
  CEF_CHANNEL_LAYOUT_OCTAGONAL = 28,
  CEF_CHANNEL_LAYOUT_DISCRETE = 29,
  CEF_CHANNEL_LAYOUT_STEREO_AND_KEYBOARD_MIC = 30,
  CEF_CHANNEL_LAYOUT_4_1_QUAD_SIDE = 31,
  CEF_CHANNEL_LAYOUT_BITSTREAM = 32,
  CEF_CHANNEL_LAYOUT_5_1_4_DOWNMIX = 33,
  CEF_CHANNEL_LAYOUT_1_1 = 34,
  CEF_CHANNEL_LAYOUT_3_1_BACK = 35,
  CEF_CHANNEL_LAYOUT_MAX = CEF_CHANNEL_LAYOUT_3_1_BACK
} cef_channel_layout_t;

// Format of the audio a CefAudioHandler receives.
typedef struct _cef_audio_parameters_t {
  cef_channel_layout_t channel_layout;
  int sample_rate;
  int frames_per_buffer;
} cef_audio_parameters_t;

typedef enum {
  CEF_SHOW_STATE_NORMAL = 1,
  CEF_SHOW_STATE_MINIMIZED = 2,
  CEF_SHOW_STATE_MAXIMIZED = 3,
  CEF_SHOW_STATE_FULLSCREEN = 4,
  CEF_SHOW_STATE_HIDDEN = 5,
} cef_show_state_t;

typedef enum {
  CEF_THS_FLAG_NONE = 0,
  CEF_THS_FLAG_ENABLED = 1 << 0,
  CEF_THS_FLAG_ORIENTATION = 1 << 1,
  CEF_THS_FLAG_ORIGIN = 1 << 2,
  CEF_THS_FLAG_ALPHA = 1 << 3,
} cef_touch_handle_state_flags_t;

typedef struct _cef_touch_handle_state_t {
  int touch_handle_id;
  // cef_touch_handle_state_flags_t bits telling which fields are set.
  uint32_t flags;
  int enabled;
  cef_horizontal_alignment_t orientation;
  int mirror_vertical;
  int mirror_horizontal;
  cef_point_t origin;
  float alpha;
} cef_touch_handle_state_t;

typedef enum {
  CEF_MEDIA_PERMISSION_NONE = 0,
  CEF_MEDIA_PERMISSION_DEVICE_AUDIO_CAPTURE = 1 << 0,
  CEF_MEDIA_PERMISSION_DEVICE_VIDEO_CAPTURE = 1 << 1,
  CEF_MEDIA_PERMISSION_DESKTOP_AUDIO_CAPTURE = 1 << 2,
  CEF_MEDIA_PERMISSION_DESKTOP_VIDEO_CAPTURE = 1 << 3,
} cef_media_access_permission_types_t;

typedef enum {
  CEF_PERMISSION_TYPE_NONE = 0,
  CEF_PERMISSION_TYPE_ACCESSIBILITY_EVENTS = 1 << 0,
  CEF_PERMISSION_TYPE_AR_SESSION = 1 << 1,
  CEF_PERMISSION_TYPE_CAMERA_PAN_TILT_ZOOM = 1 << 2,
  CEF_PERMISSION_TYPE_CAMERA_STREAM = 1 << 3,
  CEF_PERMISSION_TYPE_CAPTURED_SURFACE_CONTROL = 1 << 4,
  CEF_PERMISSION_TYPE_CLIPBOARD = 1 << 5,
  CEF_PERMISSION_TYPE_TOP_LEVEL_STORAGE_ACCESS = 1 << 6,
  CEF_PERMISSION_TYPE_DISK_QUOTA = 1 << 7,
  CEF_PERMISSION_TYPE_LOCAL_FONTS = 1 << 8,
  CEF_PERMISSION_TYPE_GEOLOCATION = 1 << 9,
  CEF_PERMISSION_TYPE_IDENTITY_PROVIDER = 1 << 10,
  CEF_PERMISSION_TYPE_IDLE_DETECTION = 1 << 11,
  CEF_PERMISSION_TYPE_MIC_STREAM = 1 << 12,
  CEF_PERMISSION_TYPE_MIDI_SYSEX = 1 << 13,
  CEF_PERMISSION_TYPE_MULTIPLE_DOWNLOADS = 1 << 14,
  CEF_PERMISSION_TYPE_NOTIFICATIONS = 1 << 15,
  CEF_PERMISSION_TYPE_KEYBOARD_LOCK = 1 << 16,
  CEF_PERMISSION_TYPE_POINTER_LOCK = 1 << 17,
  CEF_PERMISSION_TYPE_PROTECTED_MEDIA_IDENTIFIER = 1 << 18,
  CEF_PERMISSION_TYPE_REGISTER_PROTOCOL_HANDLER = 1 << 19,
  CEF_PERMISSION_TYPE_STORAGE_ACCESS = 1 << 20,
  CEF_PERMISSION_TYPE_VR_SESSION = 1 << 21,
  CEF_PERMISSION_TYPE_WINDOW_MANAGEMENT = 1 << 22,
  CEF_PERMISSION_TYPE_FILE_SYSTEM_ACCESS = 1 << 23,
} cef_permission_request_types_t;

typedef enum {
  CEF_PERMISSION_RESULT_ACCEPT = 0,
  CEF_PERMISSION_RESULT_DENY = 1,
  CEF_PERMISSION_RESULT_DISMISS = 2,
  CEF_PERMISSION_RESULT_IGNORE = 3,
} cef_permission_request_result_t;

typedef enum {
  CEF_PREFERENCES_TYPE_GLOBAL = 0,
  CEF_PREFERENCES_TYPE_REQUEST_CONTEXT = 1,
} cef_preferences_type_t;

typedef enum {
  CEF_DOWNLOAD_INTERRUPT_REASON_NONE = 0,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_FAILED = 1,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_ACCESS_DENIED = 2,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_NO_SPACE = 3,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_NAME_TOO_LONG = 5,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_TOO_LARGE = 6,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_VIRUS_INFECTED = 7,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_TRANSIENT_ERROR = 10,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_BLOCKED = 11,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_SECURITY_CHECK_FAILED = 12,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_TOO_SHORT = 13,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_HASH_MISMATCH = 14,
  CEF_DOWNLOAD_INTERRUPT_REASON_FILE_SAME_AS_SOURCE = 15,
  CEF_DOWNLOAD_INTERRUPT_REASON_NETWORK_FAILED = 20,
  CEF_DOWNLOAD_INTERRUPT_REASON_NETWORK_TIMEOUT = 21,
  CEF_DOWNLOAD_INTERRUPT_REASON_NETWORK_DISCONNECTED = 22,
  CEF_DOWNLOAD_INTERRUPT_REASON_NETWORK_SERVER_DOWN = 23,
  CEF_DOWNLOAD_INTERRUPT_REASON_NETWORK_INVALID_REQUEST = 24,
  CEF_DOWNLOAD_INTERRUPT_REASON_SERVER_FAILED = 30,
  CEF_DOWNLOAD_INTERRUPT_REASON_SERVER_NO_RANGE = 31,
  CEF_DOWNLOAD_INTERRUPT_REASON_SERVER_BAD_CONTENT = 33,
  CEF_DOWNLOAD_INTERRUPT_REASON_SERVER_UNAUTHORIZED = 34,
  CEF_DOWNLOAD_INTERRUPT_REASON_SERVER_CERT_PROBLEM = 35,
  CEF_DOWNLOAD_INTERRUPT_REASON_SERVER_FORBIDDEN = 36,
  CEF_DOWNLOAD_INTERRUPT_REASON_SERVER_UNREACHABLE = 37,
  CEF_DOWNLOAD_INTERRUPT_REASON_SERVER_CONTENT_LENGTH_MISMATCH = 38,
  CEF_DOWNLOAD_INTERRUPT_REASON_SERVER_CROSS_ORIGIN_REDIRECT = 39,
  CEF_DOWNLOAD_INTERRUPT_REASON_USER_CANCELED = 40,
  CEF_DOWNLOAD_INTERRUPT_REASON_USER_SHUTDOWN = 41,
  CEF_DOWNLOAD_INTERRUPT_REASON_CRASH = 50,
} cef_download_interrupt_reason_t;

typedef enum {
  CEF_GESTURE_COMMAND_BACK = 0,
  CEF_GESTURE_COMMAND_FORWARD = 1,
} cef_gesture_command_t;

typedef enum {
  CEF_ZOOM_COMMAND_OUT = 0,
  CEF_ZOOM_COMMAND_RESET = 1,
  CEF_ZOOM_COMMAND_IN = 2,
} cef_zoom_command_t;

typedef enum {
  CEF_COLOR_VARIANT_SYSTEM = 0,
  CEF_COLOR_VARIANT_LIGHT = 1,
  CEF_COLOR_VARIANT_DARK = 2,
  CEF_COLOR_VARIANT_TONAL_SPOT = 3,
  CEF_COLOR_VARIANT_NEUTRAL = 4,
  CEF_COLOR_VARIANT_VIBRANT = 5,
  CEF_COLOR_VARIANT_EXPRESSIVE = 6,
} cef_color_variant_t;

// Page action icons of Chrome-style browsers (Chromium's PageActionIconType).
typedef enum {
  CEF_CPAIT_BOOKMARK_STAR = 0,
  CEF_CPAIT_CLICK_TO_CALL,
  CEF_CPAIT_COOKIE_CONTROLS,
  CEF_CPAIT_FILE_SYSTEM_ACCESS,
  CEF_CPAIT_FIND,
  CEF_CPAIT_MEMORY_SAVER,
  CEF_CPAIT_INTENT_PICKER,
  CEF_CPAIT_LOCAL_CARD_MIGRATION,
  CEF_CPAIT_MANAGE_PASSWORDS,
  CEF_CPAIT_PAYMENTS_OFFER_NOTIFICATION,
  CEF_CPAIT_PRICE_TRACKING,
  CEF_CPAIT_PWA_INSTALL,
  CEF_CPAIT_QR_CODE_GENERATOR_DEPRECATED,
  CEF_CPAIT_READER_MODE_DEPRECATED,
  CEF_CPAIT_SAVE_AUTOFILL_ADDRESS,
  CEF_CPAIT_SAVE_CARD,
  CEF_CPAIT_SEND_TAB_TO_SELF_DEPRECATED,
  CEF_CPAIT_SHARING_HUB,
  CEF_CPAIT_SIDE_SEARCH,
  CEF_CPAIT_SMS_REMOTE_FETCHER,
  CEF_CPAIT_TRANSLATE,
  CEF_CPAIT_VIRTUAL_CARD_ENROLL,
  CEF_CPAIT_VIRTUAL_CARD_MANUAL_FALLBACK,
  CEF_CPAIT_ZOOM,
  CEF_CPAIT_SAVE_IBAN,
  CEF_CPAIT_MANDATORY_REAUTH,
  CEF_CPAIT_PRICE_INSIGHTS,
  CEF_CPAIT_PRICE_READ_ANYTHING,
  CEF_CPAIT_PRODUCT_SPECIFICATIONS,
  CEF_CPAIT_LENS_OVERLAY,
  CEF_CPAIT_DISCOUNTS,
  CEF_CPAIT_MAX_VALUE = CEF_CPAIT_DISCOUNTS,
} cef_chrome_page_action_icon_type_t;

// Toolbar buttons of Chrome-style browsers.
typedef enum {
  CEF_CTBT_CAST = 0,
  CEF_CTBT_DOWNLOAD,
  CEF_CTBT_SEND_TAB_TO_SELF,
  CEF_CTBT_SIDE_PANEL,
  CEF_CTBT_MAX_VALUE = CEF_CTBT_SIDE_PANEL,
} cef_chrome_toolbar_button_type_t;

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_H_
