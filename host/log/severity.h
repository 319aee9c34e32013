#pragma once

#include <string>

namespace foundation::log
{
// Severity bits of the diagnostic loggers; a logger's mask is an OR of them.
namespace severity
{
constexpr unsigned int debug = 0x4;
constexpr unsigned int info = 0x8;
constexpr unsigned int warning = 0x100;
constexpr unsigned int error = 0x200;
constexpr unsigned int fatal = 0x400;
} // namespace severity

// Warnings and worse: the mask of a logger when BROVIA_LOG_LEVEL says nothing usable.
constexpr unsigned int default_mask = severity::warning | severity::error | severity::fatal;

// "debug", "info", "warning", "error" or "fatal" (any case) enable that severity and all worse
// ones; "off" or "none" enable nothing; a number ("0x20c", "520") is taken as the mask itself.
// Anything else gives `fallback`.
unsigned int parse_mask(const std::string& text, unsigned int fallback);

// The mask that BROVIA_LOG_LEVEL asks for, default_mask if unset or unusable.
unsigned int mask_from_environment();

// "debug", "info", "warning", "error", "fatal"; "unknown" for anything but a single known bit.
const char* severity_name(unsigned int severity);
} // namespace foundation::log
