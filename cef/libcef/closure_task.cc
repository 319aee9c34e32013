// Callbacks as tasks.

#include "include/wrapper/cef_closure_task.h"

#include <utility>

#include "include/base/cef_callback.h"

namespace {

class OnceClosureTask : public CefTask {
 public:
  explicit OnceClosureTask(base::OnceClosure closure)
      : closure_(std::move(closure)) {}

  void Execute() override { std::move(closure_).Run(); }

 private:
  base::OnceClosure closure_;

  IMPLEMENT_REFCOUNTING(OnceClosureTask);
};

class RepeatingClosureTask : public CefTask {
 public:
  explicit RepeatingClosureTask(const base::RepeatingClosure& closure)
      : closure_(closure) {}

  void Execute() override { closure_.Run(); }

 private:
  base::RepeatingClosure closure_;

  IMPLEMENT_REFCOUNTING(RepeatingClosureTask);
};

}  // namespace

// A null closure gives no task, so posting it fails instead of crashing later.
CefRefPtr<CefTask> CefCreateClosureTask(base::OnceClosure closure) {
  if (!closure) {
    return nullptr;
  }
  return new OnceClosureTask(std::move(closure));
}

CefRefPtr<CefTask> CefCreateClosureTask(const base::RepeatingClosure& closure) {
  if (!closure) {
    return nullptr;
  }
  return new RepeatingClosureTask(closure);
}

bool CefPostTask(CefThreadId threadId, base::OnceClosure closure) {
  return CefPostTask(threadId, CefCreateClosureTask(std::move(closure)));
}

bool CefPostTask(CefThreadId threadId, const base::RepeatingClosure& closure) {
  return CefPostTask(threadId, CefCreateClosureTask(closure));
}

bool CefPostDelayedTask(CefThreadId threadId,
                        base::OnceClosure closure,
                        int64_t delay_ms) {
  return CefPostDelayedTask(threadId, CefCreateClosureTask(std::move(closure)),
                            delay_ms);
}

bool CefPostDelayedTask(CefThreadId threadId,
                        const base::RepeatingClosure& closure,
                        int64_t delay_ms) {
  return CefPostDelayedTask(threadId, CefCreateClosureTask(closure), delay_ms);
}
