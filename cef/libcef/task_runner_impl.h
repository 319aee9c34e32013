// CefTaskRunner over one of the engine's task queues.

#ifndef CEF_LIBCEF_TASK_RUNNER_IMPL_H_
#define CEF_LIBCEF_TASK_RUNNER_IMPL_H_

#include "include/cef_task.h"
#include "libcef/task_queue.h"

namespace cefengine {

class TaskRunnerImpl : public CefTaskRunner {
 public:
  // |queue| lives as long as the process.
  explicit TaskRunnerImpl(TaskQueue* queue);

  bool IsSame(CefRefPtr<CefTaskRunner> that) override;
  bool BelongsToCurrentThread() override;
  bool BelongsToThread(CefThreadId threadId) override;
  bool PostTask(CefRefPtr<CefTask> task) override;
  bool PostDelayedTask(CefRefPtr<CefTask> task, int64_t delay_ms) override;

 private:
  TaskQueue* const queue_;

  IMPLEMENT_REFCOUNTING(TaskRunnerImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_TASK_RUNNER_IMPL_H_
