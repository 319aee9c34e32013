// Running plain callables on the engine UI thread.

#ifndef CEF_LIBCEF_BROWSER_UI_TASK_H_
#define CEF_LIBCEF_BROWSER_UI_TASK_H_

#include <cstdint>
#include <functional>

namespace cefengine {

// Queues |task| on the engine UI thread. False (and |task| is dropped unrun)
// when the engine is not running. Any thread.
bool PostUiTask(std::function<void()> task, int64_t delay_ms = 0);

// Runs |task| now when called on the engine UI thread, else queues it.
void RunOnUiThread(std::function<void()> task);

bool OnUiThread();

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_UI_TASK_H_
