// The UI thread as the host's own thread: external pump and CefRunMessageLoop.

#include <thread>

#include "engine_test_support.h"
#include "include/base/cef_callback.h"
#include "include/wrapper/cef_closure_task.h"

namespace cef_runtime_test {
namespace {

struct UiLog {
  void Note(int tag) {
    tags.push_back(tag);
    all_on_caller = all_on_caller && std::this_thread::get_id() == caller && CefCurrentlyOn(TID_UI);
  }
  std::thread::id caller = std::this_thread::get_id();
  std::vector<int> tags;
  bool all_on_caller = true;
};

TEST(MessageLoop, ExternalPumpRunsUiTasksOnlyInDoMessageLoopWork) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    CefRefPtr<RecordingApp> app = new RecordingApp;
    ASSERT_TRUE(CefInitialize(CefMainArgs(0, nullptr), MakeSettings(false, true), app, nullptr));
    EXPECT_TRUE(CefCurrentlyOn(TID_UI));
    // OnContextInitialized is posted, so the pump is asked to run at once.
    EXPECT_EQ(app->TakePumpRequests(), std::vector<int64_t>{0});

    UiLog log;
    std::thread poster([&log] {
      EXPECT_TRUE(CefPostTask(TID_UI, base::BindOnce(&UiLog::Note, base::Unretained(&log), 1)));
      EXPECT_TRUE(CefPostTask(TID_UI, base::BindOnce(&UiLog::Note, base::Unretained(&log), 2)));
    });
    poster.join();
    EXPECT_EQ(app->TakePumpRequests(), (std::vector<int64_t>{0, 0}));
    std::thread([] { CefDoMessageLoopWork(); }).join();  // not the UI thread: refused
    EXPECT_TRUE(log.tags.empty());

    CefDoMessageLoopWork();
    EXPECT_TRUE(app->context_initialized_on_ui);
    EXPECT_EQ(log.tags, (std::vector<int>{1, 2}));
    EXPECT_TRUE(log.all_on_caller);

    // A delayed task is announced with its delay and is due after it.
    EXPECT_TRUE(CefPostDelayedTask(TID_UI, base::BindOnce(&UiLog::Note, base::Unretained(&log), 3), 50));
    std::vector<int64_t> requests = app->TakePumpRequests();
    ASSERT_EQ(requests, std::vector<int64_t>{50});
    CefDoMessageLoopWork();
    EXPECT_EQ(log.tags.size(), 2u);
    requests = app->TakePumpRequests();  // the pass asks again for what is left
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_LE(requests[0], 50);
    std::this_thread::sleep_for(std::chrono::milliseconds(requests[0]));
    CefDoMessageLoopWork();
    EXPECT_EQ(log.tags, (std::vector<int>{1, 2, 3}));
    EXPECT_TRUE(app->TakePumpRequests().empty());

    // A task posted by a running task waits for the next pass.
    CefPostTask(TID_UI, base::BindOnce(
                            [](UiLog* log) {
                              log->Note(4);
                              CefPostTask(TID_UI, base::BindOnce(&UiLog::Note, base::Unretained(log), 5));
                            },
                            &log));
    CefDoMessageLoopWork();
    EXPECT_EQ(log.tags.back(), 4);
    CefDoMessageLoopWork();
    EXPECT_EQ(log.tags.back(), 5);

    CefShutdown();
    EXPECT_FALSE(CefCurrentlyOn(TID_UI));
    app->TakePumpRequests();
    EXPECT_FALSE(CefPostTask(TID_UI, base::BindOnce(&UiLog::Note, base::Unretained(&log), 6)));
    EXPECT_TRUE(app->TakePumpRequests().empty());
    EXPECT_TRUE(app->HasOneRef());
  });
}

TEST(MessageLoop, RunMessageLoopServesTheCallerUntilQuit) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    CefRefPtr<RecordingApp> app = new RecordingApp;
    ASSERT_TRUE(CefInitialize(CefMainArgs(0, nullptr), MakeSettings(false, false), app, nullptr));
    UiLog log;
    std::thread poster([&log] {
      for (int i = 0; i < 100; ++i) {
        CefPostTask(TID_UI, base::BindOnce(&UiLog::Note, base::Unretained(&log), i));
      }
      CefPostDelayedTask(TID_UI, base::BindOnce([] { CefQuitMessageLoop(); }), 20);
    });
    CefRunMessageLoop();
    poster.join();
    ASSERT_EQ(log.tags.size(), 100u);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(log.tags[i], i);
    EXPECT_TRUE(log.all_on_caller);
    EXPECT_TRUE(app->context_initialized_on_ui);
    EXPECT_TRUE(app->TakePumpRequests().empty());  // no pump was asked for
    CefShutdown();
  });
}

}  // namespace
}  // namespace cef_runtime_test
