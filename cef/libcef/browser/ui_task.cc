#include "libcef/browser/ui_task.h"

#include <utility>

#include "libcef/context.h"
#include "libcef/network/engine_task.h"

namespace cefengine {

bool PostUiTask(std::function<void()> task, int64_t delay_ms) {
  return PostEngineTask(TID_UI, std::move(task), delay_ms);
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
