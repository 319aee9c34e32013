// Running plain callables on the engine's IO and background threads.

#ifndef CEF_LIBCEF_NETWORK_ENGINE_TASK_H_
#define CEF_LIBCEF_NETWORK_ENGINE_TASK_H_

#include <cstdint>
#include <functional>

#include "include/internal/cef_types.h"

namespace cefengine {

// Queues |task| on the thread serving |thread|, after |delay_ms|. False (and
// |task| is dropped unrun) when the engine is not running. Any thread.
bool PostEngineTask(cef_thread_id_t thread, std::function<void()> task,
                    int64_t delay_ms = 0);

// Runs |task| now when called on the engine IO thread, else queues it there.
void RunOnIoThread(std::function<void()> task);

bool OnIoThread();

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_ENGINE_TASK_H_
