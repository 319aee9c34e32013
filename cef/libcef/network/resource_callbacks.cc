#include "libcef/network/resource_callbacks.h"

#include <utility>

namespace cefengine {

namespace {

template <typename T>
void RunOnce(std::mutex& mutex, std::function<void(T)>& slot, T value) {
  std::function<void(T)> done;
  {
    std::lock_guard<std::mutex> lock(mutex);
    done.swap(slot);
  }
  if (done) {
    done(value);
  }
}

template <typename T>
void Forget(std::mutex& mutex, std::function<void(T)>& slot) {
  std::function<void(T)> done;
  std::lock_guard<std::mutex> lock(mutex);
  done.swap(slot);
}

}  // namespace

ReadCallback::ReadCallback(std::function<void(int bytes_read)> done)
    : done_(std::move(done)) {}

ReadCallback::~ReadCallback() {
  RunOnce<int>(mutex_, done_, ERR_ABORTED);
}

void ReadCallback::Disarm() {
  Forget<int>(mutex_, done_);
}

void ReadCallback::Continue(int bytes_read) {
  RunOnce<int>(mutex_, done_, bytes_read);
}

SkipCallback::SkipCallback(std::function<void(int64_t bytes_skipped)> done)
    : done_(std::move(done)) {}

SkipCallback::~SkipCallback() {
  RunOnce<int64_t>(mutex_, done_, ERR_ABORTED);
}

void SkipCallback::Disarm() {
  Forget<int64_t>(mutex_, done_);
}

void SkipCallback::Continue(int64_t bytes_skipped) {
  RunOnce<int64_t>(mutex_, done_, bytes_skipped);
}

}  // namespace cefengine
