// Helpers for tests that start the engine. The engine starts once per process,
// so each such test runs its body in a fresh process of its own.

#ifndef TESTS_CEF_RUNTIME_ENGINE_TEST_SUPPORT_H_
#define TESTS_CEF_RUNTIME_ENGINE_TEST_SUPPORT_H_

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "include/cef_app.h"
#include "include/cef_task.h"
#include "libcef/chromium_locator.h"

namespace cef_runtime_test {

// Runs |body| in a re-executed copy of the test binary; the test fails if the
// body records a failure or crashes. The child's failures are printed to
// stderr, which is what the parent shows.
inline void RunInFreshProcess(const std::function<void()>& body) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ::testing::TestPartResultArray results;
        {
          ::testing::ScopedFakeTestPartResultReporter reporter(
              ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &results);
          body();
        }
        int failures = 0;
        for (int i = 0; i < results.size(); ++i) {
          const ::testing::TestPartResult& result = results.GetTestPartResult(i);
          if (result.failed()) {
            ++failures;
            std::fprintf(stderr, "%s:%d: %s\n", result.file_name() ? result.file_name() : "?",
                         result.line_number(), result.message());
          }
        }
        std::exit(failures ? 1 : 0);
      },
      ::testing::ExitedWithCode(0), "");
}

inline bool ChromiumAvailable() {
  return !cefengine::ChromiumLocator::ForThisSystem().Locate("").empty();
}

inline CefSettings MakeSettings(bool multi_threaded, bool external_pump) {
  CefSettings settings;
  settings.multi_threaded_message_loop = multi_threaded;
  settings.external_message_pump = external_pump;
  settings.no_sandbox = true;
  return settings;
}

// A one-shot signal between threads. Wait() gives up after a generous time
// so that a broken engine fails the test instead of hanging it.
class Signal {
 public:
  void Notify() {
    std::lock_guard<std::mutex> lock(mutex_);
    notified_ = true;
    cv_.notify_all();
  }
  bool Wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    return cv_.wait_for(lock, std::chrono::seconds(20), [this] { return notified_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable cv_;
  bool notified_ = false;
};

// Records what the engine asks of the application.
class RecordingApp : public CefApp, public CefBrowserProcessHandler {
 public:
  void OnBeforeCommandLineProcessing(const CefString& process_type,
                                     CefRefPtr<CefCommandLine> command_line) override {
    std::lock_guard<std::mutex> lock(mutex_);
    command_line_calls.push_back(process_type.ToString());
    command_line_valid = command_line && command_line->IsValid();
  }
  void OnRegisterCustomSchemes(CefRawPtr<CefSchemeRegistrar> registrar) override {
    scheme_results.push_back(registrar->AddCustomScheme("error", 0x38));
    scheme_results.push_back(registrar->AddCustomScheme("ERROR", 0));
    scheme_results.push_back(registrar->AddCustomScheme("http", 0));
  }
  CefRefPtr<CefBrowserProcessHandler> GetBrowserProcessHandler() override { return this; }

  void OnContextInitialized() override {
    context_initialized_on_ui = CefCurrentlyOn(TID_UI);
    context_initialized.Notify();
  }
  void OnScheduleMessagePumpWork(int64_t delay_ms) override {
    std::lock_guard<std::mutex> lock(mutex_);
    pump_requests.push_back(delay_ms);
  }

  std::vector<int64_t> TakePumpRequests() {
    std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(pump_requests, {});
  }

  std::mutex mutex_;
  std::vector<std::string> command_line_calls;
  bool command_line_valid = false;
  std::vector<bool> scheme_results;
  Signal context_initialized;
  bool context_initialized_on_ui = false;
  std::vector<int64_t> pump_requests;

  IMPLEMENT_REFCOUNTING(RecordingApp);
};

}  // namespace cef_runtime_test

#endif  // TESTS_CEF_RUNTIME_ENGINE_TEST_SUPPORT_H_
