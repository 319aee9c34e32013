// C time types. cef_basetime_t counts microseconds since 1601-01-01 UTC (the
// Windows epoch, as Chromium's base::Time does); cef_time_t is a broken-down
// UTC time.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TIME_H_
#define CEF_INCLUDE_INTERNAL_CEF_TIME_H_
#pragma once

#include <stdint.h>
#include <time.h>

#include "include/internal/cef_export.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _cef_basetime_t {
  int64_t val;
} cef_basetime_t;

typedef struct _cef_time_t {
  int year;          // four digits
  int month;         // 1 (January) to 12
  int day_of_week;   // 0 (Sunday) to 6
  int day_of_month;  // 1 to 31
  int hour;          // 0 to 23
  int minute;        // 0 to 59
  int second;        // 0 to 59 (60 for a leap second)
  int millisecond;   // 0 to 999
} cef_time_t;

// Each returns 1 on success and 0 on a value out of range.
CEF_EXPORT int cef_time_to_timet(const cef_time_t* cef_time, time_t* time);
CEF_EXPORT int cef_time_from_timet(time_t time, cef_time_t* cef_time);
// Seconds since the Unix epoch, with a fraction.
CEF_EXPORT int cef_time_to_doublet(const cef_time_t* cef_time, double* time);
CEF_EXPORT int cef_time_from_doublet(double time, cef_time_t* cef_time);
CEF_EXPORT int cef_time_now(cef_time_t* cef_time);
CEF_EXPORT cef_basetime_t cef_basetime_now(void);
// |delta| receives time2 - time1 in milliseconds.
CEF_EXPORT int cef_time_delta(const cef_time_t* cef_time1,
                              const cef_time_t* cef_time2,
                              long long* delta);
CEF_EXPORT int cef_time_to_basetime(const cef_time_t* from, cef_basetime_t* to);
CEF_EXPORT int cef_time_from_basetime(const cef_basetime_t from,
                                      cef_time_t* to);

#ifdef __cplusplus
}
#endif

#endif  // CEF_INCLUDE_INTERNAL_CEF_TIME_H_
