// The engine's named threads and their task queues.

#ifndef CEF_LIBCEF_ENGINE_THREADS_H_
#define CEF_LIBCEF_ENGINE_THREADS_H_

#include "include/cef_task.h"
#include "libcef/engine_thread.h"
#include "libcef/task_queue.h"

namespace cefengine {

// TID_UI and TID_IO have a thread each; one background thread serves the
// file and process-launcher ids. TID_RENDERER has no thread in this process.
// Started once and stopped once per process.
class EngineThreads {
 public:
  EngineThreads() = default;
  EngineThreads(const EngineThreads&) = delete;
  EngineThreads& operator=(const EngineThreads&) = delete;

  // Starts the threads. Without |own_ui_thread| the calling thread serves the
  // UI queue, through CefDoMessageLoopWork or CefRunMessageLoop. |ui_observer|
  // hears of every task posted to the UI queue.
  void Start(bool own_ui_thread, TaskQueue::PostObserver ui_observer);

  // Closes every queue, so nothing runs any more, then ends the threads.
  // Queued tasks are destroyed unrun on their own threads. On the thread that
  // called Start(); blocks until the threads have ended.
  void Stop();

  // The queue serving |id|; null for TID_RENDERER and unknown ids.
  TaskQueue* QueueFor(cef_thread_id_t id);

  TaskQueue& ui_queue() { return ui_queue_; }
  bool own_ui_thread() const { return own_ui_thread_; }

 private:
  TaskQueue ui_queue_;
  TaskQueue io_queue_;
  TaskQueue background_queue_;
  EngineThread ui_thread_{"CefUI"};
  EngineThread io_thread_{"CefIO"};
  EngineThread background_thread_{"CefBackground"};
  bool own_ui_thread_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_ENGINE_THREADS_H_
