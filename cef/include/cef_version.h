// Version of the CEF API that the engine provides: the last release of the
// CEF 128 line (branch 6613), with the Chromium version it was built on.

#ifndef CEF_INCLUDE_CEF_VERSION_H_
#define CEF_INCLUDE_CEF_VERSION_H_
#pragma once

#define CEF_VERSION "128.4.12+g1d7a1f9+chromium-128.0.6613.138"
#define CEF_VERSION_MAJOR 128
#define CEF_VERSION_MINOR 4
#define CEF_VERSION_PATCH 12
#define CEF_COMMIT_NUMBER 3056
#define CEF_COMMIT_HASH "1d7a1f96bf2ab9923d785d8595d164701a886f17"
#define COPYRIGHT_YEAR 2024

#define CHROME_VERSION_MAJOR 128
#define CHROME_VERSION_MINOR 0
#define CHROME_VERSION_BUILD 6613
#define CHROME_VERSION_PATCH 138

#define DO_MAKE_STRING(p) #p
#define MAKE_STRING(p) DO_MAKE_STRING(p)

#ifndef APSTUDIO_HIDDEN_SYMBOLS

#include "include/internal/cef_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// One component of the version above: 0 CEF_VERSION_MAJOR, 1 CEF_VERSION_MINOR,
// 2 CEF_VERSION_PATCH, 3 CEF_COMMIT_NUMBER, 4 CHROME_VERSION_MAJOR,
// 5 CHROME_VERSION_MINOR, 6 CHROME_VERSION_BUILD, 7 CHROME_VERSION_PATCH;
// 0 for any other |entry|.
CEF_EXPORT int cef_version_info(int entry);

#ifdef __cplusplus
}
#endif

#endif  // APSTUDIO_HIDDEN_SYMBOLS

#endif  // CEF_INCLUDE_CEF_VERSION_H_
