#include "libcef/logging_impl.h"

#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>
#include <system_error>
#include <cwchar>

#include "include/base/cef_logging.h"
#include "libcef/utf_conversion.h"

namespace cefengine {
namespace {

std::atomic<int> g_min_log_level{cef::logging::LOG_INFO};
std::atomic<int> g_vlog_level{0};

std::mutex& LogMutex() {
  static std::mutex mutex;
  return mutex;
}

// Guarded by LogMutex(); null means stderr.
FILE* g_log_file = nullptr;

const char* SeverityName(int severity) {
  switch (severity) {
    case cef::logging::LOG_INFO:
      return "INFO";
    case cef::logging::LOG_WARNING:
      return "WARNING";
    case cef::logging::LOG_ERROR:
      return "ERROR";
    case cef::logging::LOG_FATAL:
      return "FATAL";
    default:
      return "VERBOSE";
  }
}

const char* BaseName(const char* path) {
  const char* slash = strrchr(path, '/');
  return slash ? slash + 1 : path;
}

}  // namespace

void SetMinLogLevel(int severity) {
  g_min_log_level = severity;
}

void SetLogSeverity(cef_log_severity_t severity) {
  switch (severity) {
    case LOGSEVERITY_VERBOSE:
      SetMinLogLevel(cef::logging::LOG_VERBOSE);
      break;
    case LOGSEVERITY_WARNING:
      SetMinLogLevel(cef::logging::LOG_WARNING);
      break;
    case LOGSEVERITY_ERROR:
      SetMinLogLevel(cef::logging::LOG_ERROR);
      break;
    case LOGSEVERITY_FATAL:
      SetMinLogLevel(cef::logging::LOG_FATAL);
      break;
    case LOGSEVERITY_DISABLE:
      SetMinLogLevel(cef::logging::LOG_NUM_SEVERITIES);
      break;
    default:
      SetMinLogLevel(cef::logging::LOG_INFO);
      break;
  }
}

void SetVlogLevel(int level) {
  g_vlog_level = level;
}

bool SetLogFile(const std::string& path) {
  FILE* file = nullptr;
  if (!path.empty()) {
    file = fopen(path.c_str(), "a");
    if (!file) {
      return false;
    }
  }
  std::lock_guard<std::mutex> lock(LogMutex());
  if (g_log_file) {
    fclose(g_log_file);
  }
  g_log_file = file;
  return true;
}

}  // namespace cefengine

extern "C" {

int cef_get_min_log_level(void) {
  return cefengine::g_min_log_level.load(std::memory_order_relaxed);
}

int cef_get_vlog_level(const char* file_start, size_t N) {
  return cefengine::g_vlog_level.load(std::memory_order_relaxed);
}

void cef_log(const char* file, int line, int severity, const char* message) {
  struct timeval tv;
  gettimeofday(&tv, nullptr);
  struct tm local = {};
  localtime_r(&tv.tv_sec, &local);
  {
    std::lock_guard<std::mutex> lock(cefengine::LogMutex());
    FILE* out = cefengine::g_log_file ? cefengine::g_log_file : stderr;
    fprintf(out, "[%d:%02d%02d/%02d%02d%02d.%03d:%s:%s(%d)] %s\n",
            static_cast<int>(getpid()), local.tm_mon + 1, local.tm_mday,
            local.tm_hour, local.tm_min, local.tm_sec,
            static_cast<int>(tv.tv_usec / 1000),
            cefengine::SeverityName(severity),
            cefengine::BaseName(file ? file : ""), line,
            message ? message : "");
    fflush(out);
  }
  if (severity >= cef::logging::LOG_FATAL) {
    abort();
  }
}

}  // extern "C"

namespace cef {
namespace logging {

LogMessage::LogMessage(const char* file, int line, LogSeverity severity)
    : severity_(severity), file_(file), line_(line) {}

LogMessage::LogMessage(const char* file, int line, std::string* result)
    : severity_(LOG_FATAL), file_(file), line_(line) {
  Init(result);
}

LogMessage::LogMessage(const char* file,
                       int line,
                       LogSeverity severity,
                       std::string* result)
    : severity_(severity), file_(file), line_(line) {
  Init(result);
}

void LogMessage::Init(std::string* result) {
  stream_ << "Check failed: " << *result;
  delete result;
}

LogMessage::~LogMessage() {
  cef_log(file_, line_, severity_, stream_.str().c_str());
}

SystemErrorCode GetLastSystemErrorCode() {
  return errno;
}

std::string SystemErrorCodeToString(SystemErrorCode error_code) {
  return std::error_code(error_code, std::generic_category()).message() +
         " (" + std::to_string(error_code) + ")";
}

ErrnoLogMessage::ErrnoLogMessage(const char* file,
                                 int line,
                                 LogSeverity severity,
                                 SystemErrorCode err)
    : err_(err), log_message_(file, line, severity) {}

ErrnoLogMessage::~ErrnoLogMessage() {
  stream() << ": " << SystemErrorCodeToString(err_);
}

}  // namespace logging
}  // namespace cef

std::ostream& operator<<(std::ostream& out, const wchar_t* wstr) {
  std::string utf8;
  if (wstr) {
    cefengine::WideToUtf8(wstr, wcslen(wstr), &utf8);
  }
  return out << utf8;
}

std::ostream& operator<<(std::ostream& out, const char16_t* str16) {
  std::string utf8;
  if (str16) {
    cefengine::Utf16ToUtf8(str16, std::char_traits<char16_t>::length(str16),
                           &utf8);
  }
  return out << utf8;
}
