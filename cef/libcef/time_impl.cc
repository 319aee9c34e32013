// The C time functions of include/internal/cef_time.h.

#include <sys/time.h>

#include <cmath>
#include <cstdint>
#include <ctime>

#include "include/internal/cef_time.h"

namespace {

// Seconds from 1601-01-01 (the base time epoch) to 1970-01-01.
constexpr int64_t kUnixEpochOffsetSeconds = INT64_C(11644473600);
constexpr int64_t kMicrosPerSecond = 1000000;

bool IsValid(const cef_time_t* t) {
  return t && t->month >= 1 && t->month <= 12 && t->day_of_month >= 1 &&
         t->day_of_month <= 31 && t->hour >= 0 && t->hour <= 23 &&
         t->minute >= 0 && t->minute <= 59 && t->second >= 0 &&
         t->second <= 60 && t->millisecond >= 0 && t->millisecond <= 999;
}

// Milliseconds since the Unix epoch.
bool ToUnixMillis(const cef_time_t* t, int64_t* millis) {
  if (!IsValid(t)) {
    return false;
  }
  struct tm parts = {};
  parts.tm_year = t->year - 1900;
  parts.tm_mon = t->month - 1;
  parts.tm_mday = t->day_of_month;
  parts.tm_hour = t->hour;
  parts.tm_min = t->minute;
  parts.tm_sec = t->second;
  time_t seconds = timegm(&parts);
  *millis = static_cast<int64_t>(seconds) * 1000 + t->millisecond;
  return true;
}

bool FromUnixMillis(int64_t millis, cef_time_t* t) {
  if (!t) {
    return false;
  }
  int64_t seconds = millis / 1000;
  int64_t rest = millis % 1000;
  if (rest < 0) {
    rest += 1000;
    --seconds;
  }
  time_t as_time_t = static_cast<time_t>(seconds);
  struct tm parts = {};
  if (!gmtime_r(&as_time_t, &parts)) {
    return false;
  }
  t->year = parts.tm_year + 1900;
  t->month = parts.tm_mon + 1;
  t->day_of_week = parts.tm_wday;
  t->day_of_month = parts.tm_mday;
  t->hour = parts.tm_hour;
  t->minute = parts.tm_min;
  t->second = parts.tm_sec;
  t->millisecond = static_cast<int>(rest);
  return true;
}

int64_t NowUnixMicros() {
  struct timespec ts;
  clock_gettime(CLOCK_REALTIME, &ts);
  return static_cast<int64_t>(ts.tv_sec) * kMicrosPerSecond + ts.tv_nsec / 1000;
}

}  // namespace

extern "C" {

int cef_time_to_timet(const cef_time_t* cef_time, time_t* time) {
  int64_t millis = 0;
  if (!time || !ToUnixMillis(cef_time, &millis)) {
    return 0;
  }
  *time = static_cast<time_t>(millis / 1000);
  return 1;
}

int cef_time_from_timet(time_t time, cef_time_t* cef_time) {
  return FromUnixMillis(static_cast<int64_t>(time) * 1000, cef_time) ? 1 : 0;
}

int cef_time_to_doublet(const cef_time_t* cef_time, double* time) {
  int64_t millis = 0;
  if (!time || !ToUnixMillis(cef_time, &millis)) {
    return 0;
  }
  *time = static_cast<double>(millis) / 1000.0;
  return 1;
}

int cef_time_from_doublet(double time, cef_time_t* cef_time) {
  if (!std::isfinite(time)) {
    return 0;
  }
  return FromUnixMillis(static_cast<int64_t>(std::floor(time * 1000.0)),
                        cef_time)
             ? 1
             : 0;
}

int cef_time_now(cef_time_t* cef_time) {
  return FromUnixMillis(NowUnixMicros() / 1000, cef_time) ? 1 : 0;
}

cef_basetime_t cef_basetime_now(void) {
  cef_basetime_t now;
  now.val = NowUnixMicros() + kUnixEpochOffsetSeconds * kMicrosPerSecond;
  return now;
}

int cef_time_delta(const cef_time_t* cef_time1,
                   const cef_time_t* cef_time2,
                   long long* delta) {
  int64_t millis1 = 0;
  int64_t millis2 = 0;
  if (!delta || !ToUnixMillis(cef_time1, &millis1) ||
      !ToUnixMillis(cef_time2, &millis2)) {
    return 0;
  }
  *delta = millis2 - millis1;
  return 1;
}

int cef_time_to_basetime(const cef_time_t* from, cef_basetime_t* to) {
  int64_t millis = 0;
  if (!to || !ToUnixMillis(from, &millis)) {
    return 0;
  }
  to->val = (millis + kUnixEpochOffsetSeconds * 1000) * 1000;
  return 1;
}

int cef_time_from_basetime(const cef_basetime_t from, cef_time_t* to) {
  int64_t unix_micros = from.val - kUnixEpochOffsetSeconds * kMicrosPerSecond;
  int64_t millis = unix_micros / 1000;
  if (unix_micros % 1000 < 0) {
    --millis;
  }
  return FromUnixMillis(millis, to) ? 1 : 0;
}

}  // extern "C"
