#include "libcef/engine_thread.h"

#include <pthread.h>

#include <utility>

namespace cefengine {

EngineThread::EngineThread(std::string name) : name_(std::move(name)) {}

EngineThread::~EngineThread() {
  Stop();
}

void EngineThread::Start(TaskQueue* queue, TaskQueue::PostObserver observer) {
  if (thread_.joinable()) {
    return;
  }
  queue_ = queue;
  thread_ = std::thread(&EngineThread::Main, this);
  queue_->Open(thread_.get_id(), std::move(observer));
}

void EngineThread::Stop() {
  if (!thread_.joinable()) {
    return;
  }
  queue_->Close();
  thread_.join();
}

void EngineThread::Main() {
  pthread_setname_np(pthread_self(), name_.c_str());
  queue_->Run();
  queue_->DiscardPending();
  queue_->Unbind();
}

}  // namespace cefengine
