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
  // Runs a task on the owner's thread, in order, after |delayMs| (0: at
  // once).
  using Post = std::function<void(std::function<void()> task, int64_t delayMs)>;
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

  // The sink gets a fresh whole frame of the page as it is now. Nothing
  // while stopped.
  void Invalidate();

  // Something changed that Chromium must paint (the view's size or scale, a
  // new document): if no frame comes, the screencast is started again, after
  // growing pauses, until one does. Chromium's screencast can fall silent for
  // good when it is restarted while a frame is on its way.
  void ExpectFrame();

  // At most |framesPerSecond| frames reach the sink (1..60; 60 and above
  // mean as many as Chromium makes).
  void SetFrameRate(int framesPerSecond);

  // Screencast limits, far above any view.
  static constexpr int kMaxFrameSide = 16384;

 private:
  void OnEvent(const QString& method, const QJsonObject& params);
  void Deliver(FrameDecoder::Frame frame);
  void SendStart();
  void ArmWatchdog();
  void CheckStall();

  // Pauses of the watchdog: the first, and the most it grows to.
  static constexpr int64_t kFirstStallMs = 300;
  static constexpr int64_t kMaxStallMs = 2400;

  DevToolsSession* const session_;
  const QString session_id_;
  const Post post_;
  const Sink sink_;
  // Tasks posted by the decoder hold it weakly: gone with this object.
  std::shared_ptr<ScreencastSource*> self_;
  int subscription_ = 0;
  bool running_ = false;
  // A frame is expected and has not come yet.
  bool awaiting_frame_ = false;
  bool watchdog_armed_ = false;
  int64_t stall_ms_ = kFirstStallMs;
  // Declared last: destroyed (joined) first, while the rest is still there.
  std::unique_ptr<FrameDecoder> decoder_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_SCREENCAST_SOURCE_H_
