#include "libcef/engine_threads.h"

#include <thread>
#include <utility>

namespace cefengine {

void EngineThreads::Start(bool own_ui_thread,
                          TaskQueue::PostObserver ui_observer) {
  own_ui_thread_ = own_ui_thread;
  if (own_ui_thread_) {
    ui_thread_.Start(&ui_queue_, std::move(ui_observer));
  } else {
    ui_queue_.Open(std::this_thread::get_id(), std::move(ui_observer));
  }
  io_thread_.Start(&io_queue_);
  background_thread_.Start(&background_queue_);
}

void EngineThreads::Stop() {
  ui_queue_.Close();
  io_queue_.Close();
  background_queue_.Close();
  if (own_ui_thread_) {
    ui_thread_.Stop();
  } else {
    ui_queue_.DiscardPending();
    ui_queue_.Unbind();
  }
  io_thread_.Stop();
  background_thread_.Stop();
}

TaskQueue* EngineThreads::QueueFor(cef_thread_id_t id) {
  switch (id) {
    case TID_UI:
      return &ui_queue_;
    case TID_IO:
      return &io_queue_;
    case TID_FILE_BACKGROUND:
    case TID_FILE_USER_VISIBLE:
    case TID_FILE_USER_BLOCKING:
    case TID_PROCESS_LAUNCHER:
      return &background_queue_;
    default:
      return nullptr;
  }
}

}  // namespace cefengine
