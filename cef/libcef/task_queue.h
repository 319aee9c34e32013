// The tasks of one engine thread.

#ifndef CEF_LIBCEF_TASK_QUEUE_H_
#define CEF_LIBCEF_TASK_QUEUE_H_

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "include/cef_task.h"

namespace cefengine {

// Tasks ordered by due time, first in first out among equal times. Posting is
// thread-safe; tasks run on the thread the queue is bound to. A queue opens
// once and, once closed, refuses tasks for good.
class TaskQueue {
 public:
  using Clock = std::chrono::steady_clock;
  // Told, on the posting thread, about each accepted task and its delay.
  using PostObserver = std::function<void(int64_t delay_ms)>;

  TaskQueue() = default;
  TaskQueue(const TaskQueue&) = delete;
  TaskQueue& operator=(const TaskQueue&) = delete;

  // Starts accepting tasks, to be run by |owner|. No effect unless new.
  void Open(std::thread::id owner, PostObserver observer = {});

  // Refuses further tasks and ends Run(); queued tasks stay until
  // DiscardPending(). A task that is running finishes.
  void Close();

  // False (and |task| is released by the caller's reference) unless open.
  // A negative delay counts as none.
  bool Post(CefRefPtr<CefTask> task, int64_t delay_ms);

  bool BelongsToCurrentThread() const;

  // Runs tasks as they fall due until Quit() or Close(). On the owner thread
  // (or one about to become it); blocks it.
  void Run();

  // Makes a running Run() return after its current task. Ignored while no
  // Run() is active.
  void Quit();

  // Runs the tasks that are due and were posted before the call; tasks they
  // post wait for the next pass. On the owner thread.
  void RunDueTasks();

  // Milliseconds until the earliest task is due (0 if one is due now), or
  // nothing if the queue is empty.
  std::optional<int64_t> DelayToNextTask() const;

  // Destroys the queued tasks unrun, on the calling thread. After Close().
  void DiscardPending();

  // Forgets the owner thread, which is about to end.
  void Unbind();

  // True while a task of any queue runs on the calling thread.
  static bool IsRunningTask();

 private:
  enum class State { kNew, kOpen, kClosed };

  struct Entry {
    uint64_t sequence;
    CefRefPtr<CefTask> task;
  };
  using Tasks = std::multimap<Clock::time_point, Entry>;

  // Executes and releases |task| on this thread.
  static void RunTask(CefRefPtr<CefTask> task);

  mutable std::mutex mutex_;
  std::condition_variable wake_;
  State state_ = State::kNew;
  std::thread::id owner_;
  PostObserver observer_;
  Tasks tasks_;
  uint64_t next_sequence_ = 0;
  int run_depth_ = 0;
  bool quit_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_TASK_QUEUE_H_
