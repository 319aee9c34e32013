// Engine-side settings of the log behind LOG() and cef_log().

#ifndef CEF_LIBCEF_LOGGING_IMPL_H_
#define CEF_LIBCEF_LOGGING_IMPL_H_

#include <string>

#include "include/internal/cef_types.h"

namespace cefengine {

// Messages below |severity| (cef::logging::LOG_INFO ... LOG_FATAL) are
// dropped. Defaults to LOG_INFO. Any thread.
void SetMinLogLevel(int severity);

// Applies cef_settings_t::log_severity: DEFAULT means INFO, DISABLE drops
// every message (failed CHECKs still end the process). Any thread.
void SetLogSeverity(cef_log_severity_t severity);

// Enables VLOG(n) for n <= |level|. Defaults to 0 (off). Any thread.
void SetVlogLevel(int level);

// Appends messages to |path| instead of stderr; an empty path means stderr.
// Returns false (and keeps the previous target) if the file can't be opened.
bool SetLogFile(const std::string& path);

}  // namespace cefengine

#endif  // CEF_LIBCEF_LOGGING_IMPL_H_
