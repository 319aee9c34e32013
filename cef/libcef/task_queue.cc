#include "libcef/task_queue.h"

#include <algorithm>
#include <utility>

namespace cefengine {

namespace {

// Far enough for any caller, small enough not to overflow the clock.
constexpr int64_t kMaxDelayMs = int64_t{100} * 365 * 24 * 3600 * 1000;

thread_local int tls_task_depth = 0;

}  // namespace

void TaskQueue::Open(std::thread::id owner, PostObserver observer) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (state_ != State::kNew) {
    return;
  }
  state_ = State::kOpen;
  owner_ = owner;
  observer_ = std::move(observer);
}

void TaskQueue::Close() {
  PostObserver observer;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    state_ = State::kClosed;
    observer = std::move(observer_);
    observer_ = nullptr;
  }
  wake_.notify_all();
  // |observer| may hold the last reference to an application object: it is
  // released here, outside the lock.
}

bool TaskQueue::Post(CefRefPtr<CefTask> task, int64_t delay_ms) {
  if (!task) {
    return false;
  }
  delay_ms = std::clamp<int64_t>(delay_ms, 0, kMaxDelayMs);
  PostObserver observer;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (state_ != State::kOpen) {
      return false;
    }
    const Clock::time_point due =
        Clock::now() + std::chrono::milliseconds(delay_ms);
    tasks_.emplace(due, Entry{next_sequence_++, std::move(task)});
    observer = observer_;
  }
  wake_.notify_one();
  if (observer) {
    observer(delay_ms);
  }
  return true;
}

bool TaskQueue::BelongsToCurrentThread() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return owner_ != std::thread::id() && owner_ == std::this_thread::get_id();
}

void TaskQueue::Run() {
  std::unique_lock<std::mutex> lock(mutex_);
  ++run_depth_;
  // A queue still new is about to be opened by the thread that started this
  // one: wait for it like for a task.
  while (state_ != State::kClosed && !quit_) {
    if (state_ == State::kNew || tasks_.empty()) {
      wake_.wait(lock);
      continue;
    }
    const auto first = tasks_.begin();
    if (first->first > Clock::now()) {
      wake_.wait_until(lock, first->first);
      continue;
    }
    CefRefPtr<CefTask> task = std::move(first->second.task);
    tasks_.erase(first);
    lock.unlock();
    RunTask(std::move(task));
    lock.lock();
  }
  if (--run_depth_ == 0) {
    quit_ = false;
  }
}

void TaskQueue::Quit() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (run_depth_ == 0) {
      return;
    }
    quit_ = true;
  }
  wake_.notify_all();
}

void TaskQueue::RunDueTasks() {
  std::unique_lock<std::mutex> lock(mutex_);
  const uint64_t end_sequence = next_sequence_;
  const Clock::time_point now = Clock::now();
  while (state_ == State::kOpen && !tasks_.empty()) {
    const auto first = tasks_.begin();
    if (first->first > now || first->second.sequence >= end_sequence) {
      break;
    }
    CefRefPtr<CefTask> task = std::move(first->second.task);
    tasks_.erase(first);
    lock.unlock();
    RunTask(std::move(task));
    lock.lock();
  }
}

std::optional<int64_t> TaskQueue::DelayToNextTask() const {
  std::lock_guard<std::mutex> lock(mutex_);
  if (tasks_.empty()) {
    return std::nullopt;
  }
  const auto remaining = tasks_.begin()->first - Clock::now();
  if (remaining <= Clock::duration::zero()) {
    return 0;
  }
  // Rounded up, so that the task is due when the caller comes back.
  return std::chrono::ceil<std::chrono::milliseconds>(remaining).count();
}

void TaskQueue::DiscardPending() {
  Tasks discarded;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    discarded.swap(tasks_);
  }
  // Destructors may try to post; the closed queue refuses, so one sweep is
  // enough.
}

void TaskQueue::Unbind() {
  std::lock_guard<std::mutex> lock(mutex_);
  owner_ = std::thread::id();
}

bool TaskQueue::IsRunningTask() {
  return tls_task_depth > 0;
}

void TaskQueue::RunTask(CefRefPtr<CefTask> task) {
  ++tls_task_depth;
  task->Execute();
  task = nullptr;
  --tls_task_depth;
}

}  // namespace cefengine
