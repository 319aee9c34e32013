#include "libcef/browser/ui_task.h"

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

bool PostUiTask(std::function<void()> task, int64_t delay_ms) {
  return Context::Get()->threads().ui_queue().Post(
      new FunctionTask(std::move(task)), delay_ms);
}

void RunOnUiThread(std::function<void()> task) {
  if (OnUiThread()) {
    task();
  } else {
    PostUiTask(std::move(task));
  }
}

bool OnUiThread() {
  return Context::Get()->threads().ui_queue().BelongsToCurrentThread();
}

}  // namespace cefengine
