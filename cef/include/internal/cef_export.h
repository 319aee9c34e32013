// Symbol visibility for the engine's exported C functions.

#ifndef CEF_INCLUDE_INTERNAL_CEF_EXPORT_H_
#define CEF_INCLUDE_INTERNAL_CEF_EXPORT_H_
#pragma once

#include "include/base/cef_build.h"

#if defined(COMPILER_GCC)
#define CEF_EXPORT __attribute__((visibility("default")))
#else
#define CEF_EXPORT
#endif

#define CEF_CALLBACK

#endif  // CEF_INCLUDE_INTERNAL_CEF_EXPORT_H_
