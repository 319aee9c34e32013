#pragma once

#include <string>

// Environment and text services over UTF-16. Environment names and values are taken as UTF-8
// in the process environment; bytes that are not UTF-8 read back as U+FFFD.
namespace fl::i18n
{
// The value of `name`, empty if unset. Any thread, but not concurrently with setenv/unsetenv.
std::u16string getenv(const std::string& name);

// Removes `name`; false for an invalid name (empty or containing '='). Not thread-safe.
bool unsetenv(const std::string& name);

// Sets `name` to `value`; an existing value is kept unless `overwrite` is non-zero. The last
// argument asks for a system-wide change, which only the Windows build can make; here it is
// ignored. False for an invalid name. Not thread-safe.
bool setenv(const std::u16string& name, const std::u16string& value, int overwrite, bool systemWide);

// UTF-16 to UTF-8; an unpaired surrogate becomes U+FFFD.
std::string to_string(const std::u16string& text);
} // namespace fl::i18n
