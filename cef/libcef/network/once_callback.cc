#include "libcef/network/once_callback.h"

#include <utility>

namespace cefengine {

OnceCallback::OnceCallback(std::function<void(bool proceed)> done)
    : done_(std::move(done)) {}

OnceCallback::~OnceCallback() {
  Run(false);
}

void OnceCallback::Disarm() {
  std::function<void(bool)> done;
  std::lock_guard<std::mutex> lock(mutex_);
  done.swap(done_);
}

void OnceCallback::Continue() {
  Run(true);
}

void OnceCallback::Cancel() {
  Run(false);
}

void OnceCallback::Run(bool proceed) {
  std::function<void(bool)> done;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    done.swap(done_);
  }
  if (done) {
    done(proceed);
  }
}

}  // namespace cefengine
