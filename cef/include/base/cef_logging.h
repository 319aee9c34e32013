// Stream-style logging and assertion macros:
//   LOG(INFO) << "text";  DLOG(WARNING) << ...;  VLOG(1) << ...;
//   CHECK(cond) << ...;  CHECK_EQ(a, b);  DCHECK(cond);  DCHECK_EQ(a, b);
//   NOTREACHED();  NOTIMPLEMENTED();
// Severities are INFO, WARNING, ERROR and FATAL; a FATAL message ends the
// process. DCHECKs are fatal in debug builds and compiled out (but still
// type-checked) when NDEBUG is defined without DCHECK_ALWAYS_ON.

#ifndef CEF_INCLUDE_BASE_CEF_LOGGING_H_
#define CEF_INCLUDE_BASE_CEF_LOGGING_H_
#pragma once

#include <cstring>
#include <sstream>
#include <string>

#include "include/base/cef_build.h"
#include "include/internal/cef_logging_internal.h"

namespace cef {
namespace logging {

typedef int LogSeverity;
const LogSeverity LOG_VERBOSE = -1;
const LogSeverity LOG_INFO = 0;
const LogSeverity LOG_WARNING = 1;
const LogSeverity LOG_ERROR = 2;
const LogSeverity LOG_FATAL = 3;
const LogSeverity LOG_NUM_SEVERITIES = 4;
#ifdef NDEBUG
const LogSeverity LOG_DFATAL = LOG_ERROR;
#else
const LogSeverity LOG_DFATAL = LOG_FATAL;
#endif

#if defined(NDEBUG) && !defined(DCHECK_ALWAYS_ON)
#define DCHECK_IS_ON() 0
const LogSeverity LOG_DCHECK = LOG_INFO;
#else
#define DCHECK_IS_ON() 1
const LogSeverity LOG_DCHECK = LOG_FATAL;
#endif

inline int GetMinLogLevel() {
  return cef_get_min_log_level();
}

template <size_t N>
int GetVlogLevel(const char (&file)[N]) {
  return cef_get_vlog_level(file, N);
}

// One message: collects the streamed text and hands it to cef_log() when
// destroyed.
class LogMessage {
 public:
  LogMessage(const char* file, int line, LogSeverity severity);
  // For failed CHECK_xx: takes ownership of |result|, logged as FATAL.
  LogMessage(const char* file, int line, std::string* result);
  // For failed DCHECK_xx: takes ownership of |result|.
  LogMessage(const char* file,
             int line,
             LogSeverity severity,
             std::string* result);
  LogMessage(const LogMessage&) = delete;
  LogMessage& operator=(const LogMessage&) = delete;
  ~LogMessage();

  std::ostream& stream() { return stream_; }

 private:
  void Init(std::string* result);

  LogSeverity severity_;
  std::ostringstream stream_;
  const char* file_;
  const int line_;
};

inline void LogAtLevel(int const log_level, std::string const& msg) {
  LogMessage(__FILE__, __LINE__, log_level).stream() << msg;
}

// Turns a stream expression into void so that it fits in a ?: with (void)0.
class LogMessageVoidify {
 public:
  LogMessageVoidify() {}
  // '&' binds looser than '<<' and tighter than '?:'.
  void operator&(std::ostream&) {}
};

typedef int SystemErrorCode;
SystemErrorCode GetLastSystemErrorCode();
std::string SystemErrorCodeToString(SystemErrorCode error_code);

// Appends the text of a system error code to the message.
class ErrnoLogMessage {
 public:
  ErrnoLogMessage(const char* file,
                  int line,
                  LogSeverity severity,
                  SystemErrorCode err);
  ErrnoLogMessage(const ErrnoLogMessage&) = delete;
  ErrnoLogMessage& operator=(const ErrnoLogMessage&) = delete;
  ~ErrnoLogMessage();

  std::ostream& stream() { return log_message_.stream(); }

 private:
  SystemErrorCode err_;
  LogMessage log_message_;
};

template <class t1, class t2>
std::string* MakeCheckOpString(const t1& v1, const t2& v2, const char* names) {
  std::ostringstream ss;
  ss << names << " (" << v1 << " vs. " << v2 << ")";
  return new std::string(ss.str());
}

// Mixed-sign comparisons are the caller's business, as with the built-in
// operators; do not turn them into errors inside this header.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wsign-compare"
#define CEF_DEFINE_CHECK_OP_IMPL(name, op)                                   \
  template <class t1, class t2>                                              \
  inline std::string* Check##name##Impl(const t1& v1, const t2& v2,          \
                                        const char* names) {                 \
    if (v1 op v2)                                                            \
      return nullptr;                                                        \
    return MakeCheckOpString(v1, v2, names);                                 \
  }                                                                          \
  inline std::string* Check##name##Impl(int v1, int v2, const char* names) { \
    if (v1 op v2)                                                            \
      return nullptr;                                                        \
    return MakeCheckOpString(v1, v2, names);                                 \
  }
CEF_DEFINE_CHECK_OP_IMPL(EQ, ==)
CEF_DEFINE_CHECK_OP_IMPL(NE, !=)
CEF_DEFINE_CHECK_OP_IMPL(LE, <=)
CEF_DEFINE_CHECK_OP_IMPL(LT, <)
CEF_DEFINE_CHECK_OP_IMPL(GE, >=)
CEF_DEFINE_CHECK_OP_IMPL(GT, >)
#undef CEF_DEFINE_CHECK_OP_IMPL
#pragma GCC diagnostic pop

}  // namespace logging
}  // namespace cef

// Lets wide strings be streamed into a log message (converted to UTF-8).
std::ostream& operator<<(std::ostream& out, const wchar_t* wstr);
inline std::ostream& operator<<(std::ostream& out, const std::wstring& wstr) {
  return out << wstr.c_str();
}
std::ostream& operator<<(std::ostream& out, const char16_t* str16);

#define LOG_IS_ON(severity) \
  ((::cef::logging::LOG_##severity) >= ::cef::logging::GetMinLogLevel())
#define VLOG_IS_ON(verboselevel) \
  ((verboselevel) <= ::cef::logging::GetVlogLevel(__FILE__))

#define LAZY_STREAM(stream, condition) \
  !(condition) ? (void)0 : ::cef::logging::LogMessageVoidify() & (stream)

#define LOG_STREAM(severity)                                \
  ::cef::logging::LogMessage(__FILE__, __LINE__,            \
                             ::cef::logging::LOG_##severity) \
      .stream()
#define PLOG_STREAM(severity)                                    \
  ::cef::logging::ErrnoLogMessage(                               \
      __FILE__, __LINE__, ::cef::logging::LOG_##severity,        \
      ::cef::logging::GetLastSystemErrorCode())                  \
      .stream()
#define VLOG_STREAM(verbose_level) \
  ::cef::logging::LogMessage(__FILE__, __LINE__, -(verbose_level)).stream()

#define LOG(severity) LAZY_STREAM(LOG_STREAM(severity), LOG_IS_ON(severity))
#define LOG_IF(severity, condition) \
  LAZY_STREAM(LOG_STREAM(severity), LOG_IS_ON(severity) && (condition))
#define PLOG(severity) LAZY_STREAM(PLOG_STREAM(severity), LOG_IS_ON(severity))
#define PLOG_IF(severity, condition) \
  LAZY_STREAM(PLOG_STREAM(severity), LOG_IS_ON(severity) && (condition))
#define VLOG(verbose_level) \
  LAZY_STREAM(VLOG_STREAM(verbose_level), VLOG_IS_ON(verbose_level))
#define VLOG_IF(verbose_level, condition) \
  LAZY_STREAM(VLOG_STREAM(verbose_level), \
              VLOG_IS_ON(verbose_level) && (condition))
#define SYSLOG(severity) LOG(severity)
#define SYSLOG_IF(severity, condition) LOG_IF(severity, condition)
#define LOG_ASSERT(condition) \
  LOG_IF(FATAL, !(condition)) << "Assert failed: " #condition ". "

// Swallows a stream expression without evaluating it.
#define EAT_STREAM_PARAMETERS \
  true ? (void)0 : ::cef::logging::LogMessageVoidify() & LOG_STREAM(FATAL)

#define CHECK(condition) \
  LAZY_STREAM(LOG_STREAM(FATAL), !(condition)) << "Check failed: " #condition ". "
#define PCHECK(condition)                       \
  LAZY_STREAM(PLOG_STREAM(FATAL), !(condition)) \
      << "Check failed: " #condition ". "

#define CHECK_OP(name, op, val1, val2)                                \
  if (std::string* _result = ::cef::logging::Check##name##Impl(       \
          (val1), (val2), #val1 " " #op " " #val2))                   \
  ::cef::logging::LogMessage(__FILE__, __LINE__, _result).stream()

#define CHECK_EQ(val1, val2) CHECK_OP(EQ, ==, val1, val2)
#define CHECK_NE(val1, val2) CHECK_OP(NE, !=, val1, val2)
#define CHECK_LE(val1, val2) CHECK_OP(LE, <=, val1, val2)
#define CHECK_LT(val1, val2) CHECK_OP(LT, <, val1, val2)
#define CHECK_GE(val1, val2) CHECK_OP(GE, >=, val1, val2)
#define CHECK_GT(val1, val2) CHECK_OP(GT, >, val1, val2)

#if defined(NDEBUG)
#define DLOG_IS_ON(severity) false
#define DLOG_IF(severity, condition) EAT_STREAM_PARAMETERS
#define DLOG_ASSERT(condition) EAT_STREAM_PARAMETERS
#define DPLOG_IF(severity, condition) EAT_STREAM_PARAMETERS
#define DVLOG_IF(verboselevel, condition) EAT_STREAM_PARAMETERS
#else
#define DLOG_IS_ON(severity) LOG_IS_ON(severity)
#define DLOG_IF(severity, condition) LOG_IF(severity, condition)
#define DLOG_ASSERT(condition) LOG_ASSERT(condition)
#define DPLOG_IF(severity, condition) PLOG_IF(severity, condition)
#define DVLOG_IF(verboselevel, condition) VLOG_IF(verboselevel, condition)
#endif

#define DLOG(severity) LAZY_STREAM(LOG_STREAM(severity), DLOG_IS_ON(severity))
#define DPLOG(severity) LAZY_STREAM(PLOG_STREAM(severity), DLOG_IS_ON(severity))
#define DVLOG(verboselevel) DVLOG_IF(verboselevel, VLOG_IS_ON(verboselevel))

#define DCHECK(condition)                                         \
  LAZY_STREAM(LOG_STREAM(DCHECK), DCHECK_IS_ON() && !(condition)) \
      << "Check failed: " #condition ". "
#define DPCHECK(condition)                                         \
  LAZY_STREAM(PLOG_STREAM(DCHECK), DCHECK_IS_ON() && !(condition)) \
      << "Check failed: " #condition ". "

#define DCHECK_OP(name, op, val1, val2)                                     \
  if (DCHECK_IS_ON())                                                       \
    if (std::string* _result = ::cef::logging::Check##name##Impl(           \
            (val1), (val2), #val1 " " #op " " #val2))                       \
  ::cef::logging::LogMessage(__FILE__, __LINE__, ::cef::logging::LOG_DCHECK, \
                             _result)                                        \
      .stream()

#define DCHECK_EQ(val1, val2) DCHECK_OP(EQ, ==, val1, val2)
#define DCHECK_NE(val1, val2) DCHECK_OP(NE, !=, val1, val2)
#define DCHECK_LE(val1, val2) DCHECK_OP(LE, <=, val1, val2)
#define DCHECK_LT(val1, val2) DCHECK_OP(LT, <, val1, val2)
#define DCHECK_GE(val1, val2) DCHECK_OP(GE, >=, val1, val2)
#define DCHECK_GT(val1, val2) DCHECK_OP(GT, >, val1, val2)

#define NOTREACHED() DCHECK(false)

#define NOTIMPLEMENTED() \
  LOG(ERROR) << "Not implemented reached in " << __PRETTY_FUNCTION__

#endif  // CEF_INCLUDE_BASE_CEF_LOGGING_H_
