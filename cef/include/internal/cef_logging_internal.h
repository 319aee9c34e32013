// C entry points behind the logging macros of include/base/cef_logging.h.

#ifndef CEF_INCLUDE_INTERNAL_CEF_LOGGING_INTERNAL_H_
#define CEF_INCLUDE_INTERNAL_CEF_LOGGING_INTERNAL_H_
#pragma once

#include <stddef.h>

#include "include/internal/cef_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// Messages below this severity are dropped.
CEF_EXPORT int cef_get_min_log_level(void);

// The verbose level enabled for |file_start| (|N| is the size of that literal).
CEF_EXPORT int cef_get_vlog_level(const char* file_start, size_t N);

// Writes one message. A FATAL message ends the process.
CEF_EXPORT void cef_log(const char* file,
                        int line,
                        int severity,
                        const char* message);

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_LOGGING_INTERNAL_H_
