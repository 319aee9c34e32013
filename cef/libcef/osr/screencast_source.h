// The frames of one page target: Chromium's PNG screencast, acknowledged at
// once, decoded off the owner's thread and handed back as BGRA images with
// their dirty rectangles.

#ifndef CEF_LIBCEF_OSR_SCREENCAST_SOURCE_H_
#define CEF_LIBCEF_OSR_SCREENCAST_SOURCE_H_

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

  ScreencastSource(DevToolsSession* session,
                   QString sessionId,
                   Post post,
                   Sink sink);
  ScreencastSource(const ScreencastSource&) = delete;
  ScreencastSource& operator=(const ScreencastSource&) = delete;
  // Waits for the decoder thread to end (at most one frame's decoding). Does
  // not touch the session, which may be gone by then (engine shutdown); see
  // Detach. No sink call afterwards.
  ~ScreencastSource();

  // Stops listening to the session, while it still lives: the page is going.
  // The screencast itself ends with the page.
  void Detach();

  // Starts or stops Chromium's screencast; while stopped nothing reaches the
  // sink, and the first frame after a start goes out whole.
  void Start();
  void Stop();

  // The sink gets a whole frame again: the one on its way if there is one,
  // else the last frame once more. Nothing before the first frame.
  void Invalidate();

  // At most |framesPerSecond| frames reach the sink (1..60; 60 and above
  // mean as many as Chromium makes).
  void SetFrameRate(int framesPerSecond);

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
  // The last frame given to the sink, for Invalidate.
  QImage last_frame_;
  // Declared last: destroyed (joined) first, while the rest is still there.
  std::unique_ptr<FrameDecoder> decoder_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_SCREENCAST_SOURCE_H_
