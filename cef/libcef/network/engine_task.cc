#include "libcef/network/engine_task.h"

#include <utility>

#include "include/cef_task.h"
#include "libcef/context.h"

namespace cefengine {

namespace {

class FunctionTask : public CefTask {
 public:
  explicit FunctionTask(std::function<void()> task) : task_(std::move(task)) {}
  void Execute() override { task_(); }

 private:
  std::function<void()> task_;
  IMPLEMENT_REFCOUNTING(FunctionTask);
};

}  // namespace

bool PostEngineTask(cef_thread_id_t thread, std::function<void()> task,
                    int64_t delay_ms) {
  TaskQueue* queue = Context::Get()->threads().QueueFor(thread);
  return queue && queue->Post(new FunctionTask(std::move(task)), delay_ms);
}

void RunOnIoThread(std::function<void()> task) {
  if (OnIoThread()) {
    task();
  } else {
    PostEngineTask(TID_IO, std::move(task));
  }
}

bool OnIoThread() {
  TaskQueue* queue = Context::Get()->threads().QueueFor(TID_IO);
  return queue && queue->BelongsToCurrentThread();
}

}  // namespace cefengine
