// The frames of one page target: Chromium's PNG screencast, acknowledged at
// once, decoded off the owner's thread and handed back as BGRA images with
// their dirty rectangles.

#ifndef CEF_LIBCEF_OSR_SCREENCAST_SOURCE_H_
#define CEF_LIBCEF_OSR_SCREENCAST_SOURCE_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include <QImage>
#include <QJsonObject>
#include <QString>

#include "include/internal/cef_types_wrappers.h"
#include "libcef/devtools/devtools_session.h"
#include "libcef/osr/frame_decoder.h"

namespace cefengine {

// Everything but the destructor's join runs on the owner's thread: the
// thread of |session|'s dispatcher (the engine UI thread), which must also be
// the thread that |post| runs tasks on.
class ScreencastSource {
 public:
  // Runs a task on the owner's thread, in order.
  using Post = std::function<void(std::function<void()>)>;
  // Called on the owner's thread with each frame to paint; |image| is shared,
  // |dirtyRects| is never empty.
  using Sink = std::function<void(const QImage& image,
                                  const std::vector<CefRect>& dirtyRects)>;

  struct Stats {
    // Page.screencastFrame events received.
    uint64_t produced = 0;
    uint64_t delivered = 0;
    FrameDecoder::Stats decoder;
  };

  ScreencastSource(DevToolsSession* session,
                   QString sessionId,
                   Post post,
                   Sink sink);
  ScreencastSource(const ScreencastSource&) = delete;
  ScreencastSource& operator=(const ScreencastSource&) = delete;
  // Stops the screencast and waits for the decoder thread to end (at most one
  // frame's decoding). No sink call afterwards.
  ~ScreencastSource();

  // Starts or stops Chromium's screencast; while stopped nothing reaches the
  // sink, and the first frame after a start goes out whole.
  void Start();
  void Stop();
  bool running() const { return running_; }

  // The sink gets a whole frame again: the one on its way if there is one,
  // else the last frame once more. Nothing before the first frame.
  void Invalidate();

  // At most |framesPerSecond| frames reach the sink (1..60; 60 and above
  // mean as many as Chromium makes).
  void SetFrameRate(int framesPerSecond);

  // The last frame given to the sink; null before the first.
  const QImage& last_frame() const { return last_frame_; }

  Stats stats() const;

  // Screencast limits, far above any view.
  static constexpr int kMaxFrameSide = 16384;

 private:
  void OnEvent(const QString& method, const QJsonObject& params);
  void Deliver(FrameDecoder::Frame frame);
  void SendStart();

  DevToolsSession* const session_;
  const QString session_id_;
  const Post post_;
  const Sink sink_;
  // Tasks posted by the decoder hold it weakly: gone with this object.
  std::shared_ptr<ScreencastSource*> self_;
  int subscription_ = 0;
  bool running_ = false;
  // A frame has come since the last start.
  bool frame_since_start_ = false;
  uint64_t produced_ = 0;
  uint64_t delivered_ = 0;
  QImage last_frame_;
  // Declared last: destroyed (joined) first, while the rest is still there.
  std::unique_ptr<FrameDecoder> decoder_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_SCREENCAST_SOURCE_H_
