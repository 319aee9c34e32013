// Turns screencast frames (base64 PNG) into BGRA images with their dirty
// rectangles, on a thread of its own so that the engine UI thread never
// decodes. A few frames may wait, which absorbs bursts; beyond that the oldest
// waiting frame is dropped, so the latest always wins.

#ifndef CEF_LIBCEF_OSR_FRAME_DECODER_H_
#define CEF_LIBCEF_OSR_FRAME_DECODER_H_

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include <QImage>
#include <QString>

#include "include/internal/cef_types_wrappers.h"
#include "libcef/osr/png_decoder.h"

namespace cefengine {

class FrameDecoder {
 public:
  struct Frame {
    // Format_ARGB32_Premultiplied: BGRA bytes, width * 4 bytes a line.
    QImage image;
    // Never empty: an unchanged frame is not output at all.
    std::vector<CefRect> dirtyRects;
  };

  // What became of the frames submitted.
  struct Stats {
    // Dropped for newer frames before decoding began.
    uint64_t superseded = 0;
    // Not a PNG the decoder could read; dropped.
    uint64_t broken = 0;
    uint64_t unchanged = 0;
    uint64_t output = 0;
  };

  // Runs on the decoder thread, once per frame that changed, in order.
  using Output = std::function<void(Frame frame)>;

  explicit FrameDecoder(Output output);
  FrameDecoder(const FrameDecoder&) = delete;
  FrameDecoder& operator=(const FrameDecoder&) = delete;
  // Blocks until the frame being decoded (if any) is done and the thread has
  // ended; no output afterwards. Not on the decoder thread.
  ~FrameDecoder();

  // Frames waiting at most; a burst of more drops the oldest.
  static constexpr size_t kMaxWaiting = 3;

  // One screencast frame's data, to decode after those waiting. Any thread.
  void Submit(QString base64Png);

  // Makes the next frame out whole, even if unchanged. Any thread.
  void RequestFullFrame();

  // Forgets the previous frame: the next one goes out whole. Any thread.
  void Reset();

  // At least |interval| between two outputs (zero: no limit); meanwhile only
  // the latest frame waits. Any thread.
  void SetMinInterval(std::chrono::microseconds interval);

  Stats stats() const;

 private:
  using Clock = std::chrono::steady_clock;

  void Main();

  const Output output_;

  mutable std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<QString> waiting_;
  bool decoding_ = false;
  bool fullRequested_ = false;
  bool resetRequested_ = false;
  bool stopping_ = false;
  std::chrono::microseconds minInterval_{0};
  Clock::time_point nextOutput_{};
  Stats stats_;

  // Decoder thread only.
  PngDecoder png_;
  // The last frame output, what the next is compared with.
  QImage previous_;

  std::thread thread_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_FRAME_DECODER_H_
