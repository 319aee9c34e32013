// Compiler attribute shorthands used by the engine's public headers.

#ifndef CEF_INCLUDE_BASE_CEF_COMPILER_SPECIFIC_H_
#define CEF_INCLUDE_BASE_CEF_COMPILER_SPECIFIC_H_
#pragma once

#include "include/base/cef_build.h"

#if defined(__has_cpp_attribute)
#define HAS_CPP_ATTRIBUTE(x) __has_cpp_attribute(x)
#else
#define HAS_CPP_ATTRIBUTE(x) 0
#endif

#if defined(__has_builtin)
#define HAS_BUILTIN(x) __has_builtin(x)
#else
#define HAS_BUILTIN(x) 0
#endif

#if defined(COMPILER_GCC)
#define NOINLINE __attribute__((noinline))
#else
#define NOINLINE
#endif

#if defined(COMPILER_GCC) && defined(NDEBUG)
#define ALWAYS_INLINE inline __attribute__((__always_inline__))
#else
#define ALWAYS_INLINE inline
#endif

#if defined(COMPILER_GCC)
#define ALIGNAS(byte_alignment) __attribute__((aligned(byte_alignment)))
#define PRINTF_FORMAT(format_param, dots_param) \
  __attribute__((format(printf, format_param, dots_param)))
#else
#define ALIGNAS(byte_alignment) alignas(byte_alignment)
#define PRINTF_FORMAT(format_param, dots_param)
#endif
#define WPRINTF_FORMAT(format_param, dots_param)

#if defined(__has_attribute)
#if __has_attribute(no_sanitize)
#define NO_SANITIZE(what) __attribute__((no_sanitize(what)))
#endif
#endif
#if !defined(NO_SANITIZE)
#define NO_SANITIZE(what)
#endif

#if defined(__clang__) && defined(__has_attribute)
#if __has_attribute(trivial_abi)
#define TRIVIAL_ABI [[clang::trivial_abi]]
#endif
#endif
#if !defined(TRIVIAL_ABI)
#define TRIVIAL_ABI
#endif

#define ANALYZER_SKIP_THIS_PATH() static_cast<void>(0)

#if defined(COMPILER_GCC)
#define LIKELY(x) __builtin_expect(!!(x), 1)
#define UNLIKELY(x) __builtin_expect(!!(x), 0)
#else
#define LIKELY(x) (x)
#define UNLIKELY(x) (x)
#endif

#endif  // CEF_INCLUDE_BASE_CEF_COMPILER_SPECIFIC_H_
