#include "libcef/task_runner_impl.h"

#include "libcef/context.h"

namespace cefengine {

namespace {

TaskQueue* QueueFor(CefThreadId id) {
  return Context::Get()->threads().QueueFor(id);
}

}  // namespace

TaskRunnerImpl::TaskRunnerImpl(TaskQueue* queue) : queue_(queue) {}

bool TaskRunnerImpl::IsSame(CefRefPtr<CefTaskRunner> that) {
  auto* other = dynamic_cast<TaskRunnerImpl*>(that.get());
  return other && other->queue_ == queue_;
}

bool TaskRunnerImpl::BelongsToCurrentThread() {
  return queue_->BelongsToCurrentThread();
}

bool TaskRunnerImpl::BelongsToThread(CefThreadId threadId) {
  return QueueFor(threadId) == queue_;
}

bool TaskRunnerImpl::PostTask(CefRefPtr<CefTask> task) {
  return queue_->Post(task, 0);
}

bool TaskRunnerImpl::PostDelayedTask(CefRefPtr<CefTask> task,
                                     int64_t delay_ms) {
  return queue_->Post(task, delay_ms);
}

}  // namespace cefengine

CefRefPtr<CefTaskRunner> CefTaskRunner::GetForCurrentThread() {
  for (CefThreadId id : {TID_UI, TID_IO, TID_FILE_BACKGROUND}) {
    if (CefCurrentlyOn(id)) {
      return new cefengine::TaskRunnerImpl(cefengine::QueueFor(id));
    }
  }
  return nullptr;
}

CefRefPtr<CefTaskRunner> CefTaskRunner::GetForThread(CefThreadId threadId) {
  cefengine::TaskQueue* queue = cefengine::QueueFor(threadId);
  if (!queue || !cefengine::Context::Get()->IsInitialized()) {
    return nullptr;
  }
  return new cefengine::TaskRunnerImpl(queue);
}

bool CefCurrentlyOn(CefThreadId threadId) {
  cefengine::TaskQueue* queue = cefengine::QueueFor(threadId);
  return queue && queue->BelongsToCurrentThread();
}

bool CefPostTask(CefThreadId threadId, CefRefPtr<CefTask> task) {
  return CefPostDelayedTask(threadId, task, 0);
}

bool CefPostDelayedTask(CefThreadId threadId,
                        CefRefPtr<CefTask> task,
                        int64_t delay_ms) {
  cefengine::TaskQueue* queue = cefengine::QueueFor(threadId);
  return queue && queue->Post(task, delay_ms);
}
