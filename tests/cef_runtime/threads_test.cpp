// The engine's threads with its own UI thread: posting, order, delays, shutdown.

#include <pthread.h>

#include <atomic>
#include <map>
#include <thread>
#include <utility>

#include "engine_test_support.h"
#include "include/base/cef_callback.h"
#include "include/wrapper/cef_closure_task.h"
#include "libcef/context.h"

namespace cef_runtime_test {
namespace {

std::string ThreadName() {
  char name[16] = {};
  pthread_getname_np(pthread_self(), name, sizeof(name));
  return name;
}

// Notes the thread that destroys it.
class TrackedTask : public CefTask {
 public:
  TrackedTask(std::atomic<bool>* ran, std::thread::id* destroyed_on)
      : ran_(ran), destroyed_on_(destroyed_on) {}
  ~TrackedTask() override { *destroyed_on_ = std::this_thread::get_id(); }
  void Execute() override { *ran_ = true; }

 private:
  std::atomic<bool>* ran_;
  std::thread::id* destroyed_on_;
  IMPLEMENT_REFCOUNTING(TrackedTask);
};

// Notes which task ran where; each must run on its own thread and no other.
struct Recorder {
  void Record(CefThreadId id, int producer, int seq) {
    if (!CefCurrentlyOn(id) ||
        CefCurrentlyOn(TID_UI) + CefCurrentlyOn(TID_IO) + CefCurrentlyOn(TID_FILE_BACKGROUND) != 1) {
      ++wrong_thread;
    }
    std::lock_guard<std::mutex> lock(mutex);
    seen[id].emplace_back(producer, seq);
  }
  std::mutex mutex;
  std::map<CefThreadId, std::vector<std::pair<int, int>>> seen;
  std::atomic<int> wrong_thread{0};
};

// Waits until every task posted to |id| so far has run.
bool Flush(CefThreadId id) {
  Signal done;
  if (!CefPostTask(id, base::BindOnce(&Signal::Notify, base::Unretained(&done)))) {
    return false;
  }
  return done.Wait();
}

void StartEngine(CefRefPtr<RecordingApp> app) {
  ASSERT_TRUE(CefInitialize(CefMainArgs(0, nullptr), MakeSettings(true, false), app, nullptr));
  ASSERT_TRUE(app->context_initialized.Wait());
}

TEST(EngineThreads, TasksFromManyThreadsRunInPostingOrderOnTheirThread) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    CefRefPtr<RecordingApp> app = new RecordingApp;
    StartEngine(app);
    EXPECT_TRUE(app->context_initialized_on_ui);
    EXPECT_FALSE(CefCurrentlyOn(TID_UI));

    constexpr int kProducers = 4;
    constexpr int kTasksEach = 300;
    Recorder recorder;
    std::vector<std::thread> producers;
    for (int p = 0; p < kProducers; ++p) {
      producers.emplace_back([&recorder, p] {
        for (int i = 0; i < kTasksEach; ++i) {
          for (CefThreadId id : {TID_UI, TID_IO, TID_FILE_USER_BLOCKING}) {
            EXPECT_TRUE(CefPostTask(
                id, base::BindOnce(&Recorder::Record, base::Unretained(&recorder), id, p, i)));
          }
        }
      });
    }
    for (std::thread& t : producers) t.join();
    for (CefThreadId id : {TID_UI, TID_IO, TID_FILE_USER_BLOCKING}) ASSERT_TRUE(Flush(id));

    EXPECT_EQ(recorder.wrong_thread, 0);
    ASSERT_EQ(recorder.seen.size(), 3u);
    for (auto& [id, entries] : recorder.seen) {
      ASSERT_EQ(entries.size(), size_t{kProducers * kTasksEach}) << id;
      std::vector<int> next(kProducers, 0);
      for (auto [producer, seq] : entries) EXPECT_EQ(seq, next[producer]++) << id;
    }

    // Thread identity, names and runners.
    std::string ui_name, io_name;
    bool same_runner = false;
    CefPostTask(TID_UI, base::BindOnce([](std::string* n) { *n = ThreadName(); }, &ui_name));
    CefPostTask(TID_IO, base::BindOnce(
                            [](std::string* n, bool* same) {
                              *n = ThreadName();
                              *same = CefTaskRunner::GetForCurrentThread()->IsSame(
                                  CefTaskRunner::GetForThread(TID_IO));
                            },
                            &io_name, &same_runner));
    ASSERT_TRUE(Flush(TID_UI));
    ASSERT_TRUE(Flush(TID_IO));
    EXPECT_EQ(ui_name, "CefUI");
    EXPECT_EQ(io_name, "CefIO");
    EXPECT_TRUE(same_runner);
    EXPECT_FALSE(CefTaskRunner::GetForThread(TID_UI)->BelongsToCurrentThread());
    EXPECT_TRUE(CefTaskRunner::GetForThread(TID_FILE_BACKGROUND)->BelongsToThread(TID_PROCESS_LAUNCHER));
    EXPECT_EQ(CefTaskRunner::GetForCurrentThread(), nullptr);
    EXPECT_FALSE(CefPostTask(TID_RENDERER, base::BindOnce([] {})));
    EXPECT_FALSE(CefCurrentlyOn(TID_RENDERER));

    CefShutdown();
  });
}

TEST(EngineThreads, DelayedTasksRunByDueTimeAndNotBefore) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    CefRefPtr<RecordingApp> app = new RecordingApp;
    StartEngine(app);
    using Clock = std::chrono::steady_clock;
    struct Run {
      int tag;
      Clock::duration late_by;
    };
    std::vector<Run> runs;
    Signal done;
    auto post = [&](int tag, int64_t delay_ms) {
      const Clock::time_point due = Clock::now() + std::chrono::milliseconds(delay_ms);
      EXPECT_TRUE(CefPostDelayedTask(
          TID_IO,
          base::BindOnce(
              [](std::vector<Run>* runs, Signal* done, int tag, Clock::time_point due) {
                runs->push_back({tag, Clock::now() - due});
                if (tag == 4) done->Notify();
              },
              &runs, &done, tag, due),
          delay_ms));
    };
    post(4, 120);
    post(2, 40);
    post(3, 40);
    post(0, -5);  // a negative delay means none
    post(1, 0);
    ASSERT_TRUE(done.Wait());
    ASSERT_EQ(runs.size(), 5u);
    for (size_t i = 0; i < runs.size(); ++i) {
      EXPECT_EQ(runs[i].tag, static_cast<int>(i));
      EXPECT_GE(runs[i].late_by.count(), 0) << "task " << runs[i].tag << " ran early";
    }
    CefShutdown();
  });
}

TEST(EngineThreads, NothingRunsAfterShutdown) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    CefRefPtr<RecordingApp> app = new RecordingApp;
    StartEngine(app);

    std::thread::id ui_thread;
    CefPostTask(TID_UI, base::BindOnce([](std::thread::id* id) { *id = std::this_thread::get_id(); },
                                       &ui_thread));
    ASSERT_TRUE(Flush(TID_UI));

    // Pending at shutdown: destroyed unrun on its own thread.
    std::atomic<bool> pending_ran{false};
    std::thread::id pending_destroyed_on;
    EXPECT_TRUE(CefPostDelayedTask(TID_UI, new TrackedTask(&pending_ran, &pending_destroyed_on),
                                   60000));
    CefRefPtr<CefTaskRunner> io_runner = CefTaskRunner::GetForThread(TID_IO);

    CefShutdown();
    EXPECT_FALSE(pending_ran);
    EXPECT_EQ(pending_destroyed_on, ui_thread);
    EXPECT_FALSE(cefengine::Context::Get()->IsInitialized());
    EXPECT_EQ(cefengine::Context::Get()->app(), nullptr);
    EXPECT_TRUE(app->HasOneRef());

    // Refused after shutdown, released by the poster, never run.
    std::atomic<bool> late_ran{false};
    std::thread::id late_destroyed_on;
    EXPECT_FALSE(CefPostTask(TID_IO, new TrackedTask(&late_ran, &late_destroyed_on)));
    EXPECT_EQ(late_destroyed_on, std::this_thread::get_id());
    EXPECT_FALSE(io_runner->PostTask(CefCreateClosureTask(base::BindOnce([] {}))));
    EXPECT_FALSE(CefPostTask(TID_UI, base::BindOnce([](std::atomic<bool>* r) { *r = true; }, &late_ran)));
    EXPECT_FALSE(CefCurrentlyOn(TID_UI));
    EXPECT_EQ(CefTaskRunner::GetForThread(TID_UI), nullptr);
    EXPECT_FALSE(late_ran);

    EXPECT_FALSE(CefInitialize(CefMainArgs(0, nullptr), MakeSettings(true, false), app, nullptr));
  });
}

}  // namespace
}  // namespace cef_runtime_test
