#pragma once

#include "host/export/brovia_export.h"

#include <string>
#include <vector>

// The navigation allow list of the process. A pattern is a regular expression (Perl syntax,
// case-insensitive) matched against the start of the whole URL, for example
// "https://([\w-]*\.)?example\.com(:\d{1,5})?/"; it need not match to the end. The list starts
// with about:blank, data: and file: URLs and http(s) to the loopback host (localhost,
// 127.0.0.0/8, [::1]); anything else is refused until a pattern allows it.
// Any thread: the list has a lock of its own.
namespace cef_common
{
// Whether `url` (UTF-8) passes the list. A URL that does not parse, or has no scheme, is refused.
// With `logRefusal`, a refusal is logged at warning severity under "brovia::host".
BROVIA_EXPORT bool isURLAllowed(const std::string& url, bool logRefusal);

// Adds patterns to the list. A pattern that is not a valid regular expression is logged at
// warning severity and skipped; an empty one (it would allow everything) and one already on
// the list are skipped quietly.
BROVIA_EXPORT void addHostsToAllowList(std::vector<std::string> hosts);
} // namespace cef_common
