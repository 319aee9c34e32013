// An OS thread that serves one task queue.

#ifndef CEF_LIBCEF_ENGINE_THREAD_H_
#define CEF_LIBCEF_ENGINE_THREAD_H_

#include <string>
#include <thread>

#include "libcef/task_queue.h"

namespace cefengine {

class EngineThread {
 public:
  // |name| is the OS thread name, at most 15 characters.
  explicit EngineThread(std::string name);
  EngineThread(const EngineThread&) = delete;
  EngineThread& operator=(const EngineThread&) = delete;
  ~EngineThread();

  // Starts the thread and opens |queue| for it; tasks may be posted as soon as
  // this returns. |queue| must outlive the thread.
  void Start(TaskQueue* queue, TaskQueue::PostObserver observer = {});

  // Closes the queue and waits for the thread to end; tasks still queued are
  // destroyed unrun on the thread. Blocks the caller, which must not be this
  // thread. No effect if not started.
  void Stop();

 private:
  void Main();

  const std::string name_;
  TaskQueue* queue_ = nullptr;
  std::thread thread_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_ENGINE_THREAD_H_
