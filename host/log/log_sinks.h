#pragma once

namespace foundation::log
{
// Installs the process's sink for diagnostic records, once; later calls do nothing. Records go
// to the file that BROVIA_LOG_FILE names (appended to), or to stderr if it is unset or cannot be
// opened, one line each: "[time] <severity> channel: message". Only records with a "Channel"
// attribute are written. Any thread.
void ensure_sinks();
} // namespace foundation::log
