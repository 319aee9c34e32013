#include "libcef/osr/frame_decoder.h"

#include <utility>

#include <pthread.h>

#include "libcef/osr/dirty_rects.h"

namespace cefengine {

FrameDecoder::FrameDecoder(Output output) : output_(std::move(output)) {
  thread_ = std::thread([this] { Main(); });
}

FrameDecoder::~FrameDecoder() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void FrameDecoder::Submit(QString base64Png) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    const size_t limit = minInterval_.count() > 0 ? 1 : kMaxWaiting;
    while (waiting_.size() >= limit) {
      waiting_.pop_front();
      ++stats_.superseded;
    }
    waiting_.push_back(std::move(base64Png));
  }
  wake_.notify_all();
}

void FrameDecoder::RequestFullFrame() {
  std::lock_guard<std::mutex> lock(mutex_);
  fullRequested_ = true;
}

void FrameDecoder::Reset() {
  std::lock_guard<std::mutex> lock(mutex_);
  resetRequested_ = true;
}

void FrameDecoder::SetMinInterval(std::chrono::microseconds interval) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    minInterval_ = interval;
    nextOutput_ = Clock::time_point{};
  }
  wake_.notify_all();
}

FrameDecoder::Stats FrameDecoder::stats() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return stats_;
}

void FrameDecoder::Main() {
  pthread_setname_np(pthread_self(), "CefOsrDecode");
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    wake_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
    if (stopping_)
      return;
    if (minInterval_.count() > 0 && Clock::now() < nextOutput_) {
      // Too early for the frame rate: a later frame may still replace it.
      wake_.wait_until(lock, nextOutput_, [this] {
        return stopping_ || Clock::now() >= nextOutput_;
      });
      continue;
    }
    QString data = std::move(waiting_.front());
    waiting_.pop_front();
    decoding_ = true;
    lock.unlock();

    QImage image = png_.Decode(QByteArray::fromBase64(data.toLatin1()));

    lock.lock();
    decoding_ = false;
    if (image.isNull()) {
      // A request for a whole frame stays for the next one.
      ++stats_.broken;
      continue;
    }
    const bool full = fullRequested_ || resetRequested_;
    fullRequested_ = false;
    resetRequested_ = false;
    lock.unlock();

    Frame frame;
    frame.dirtyRects = full ? std::vector<CefRect>{DirtyRects::Whole(image)}
                            : DirtyRects::Compute(previous_, image);
    const bool changed = !frame.dirtyRects.empty();
    if (changed) {
      previous_ = image;
      frame.image = std::move(image);
      output_(std::move(frame));
    }

    lock.lock();
    if (changed) {
      ++stats_.output;
      nextOutput_ = Clock::now() + minInterval_;
    } else {
      ++stats_.unchanged;
    }
  }
}

}  // namespace cefengine
