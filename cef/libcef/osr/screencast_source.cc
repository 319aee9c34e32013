#include "libcef/osr/screencast_source.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "libcef/osr/dirty_rects.h"

namespace cefengine {

ScreencastSource::ScreencastSource(DevToolsSession* session,
                                   QString sessionId,
                                   Post post,
                                   Sink sink)
    : session_(session),
      session_id_(std::move(sessionId)),
      post_(std::move(post)),
      sink_(std::move(sink)),
      self_(std::make_shared<ScreencastSource*>(this)) {
  std::weak_ptr<ScreencastSource*> weak = self_;
  decoder_ = std::make_unique<FrameDecoder>([weak, post = post_](
                                                FrameDecoder::Frame frame) {
    // Decoder thread: hand the frame over to the owner's thread.
    post(
        [weak, frame = std::move(frame)]() mutable {
          if (auto self = weak.lock())
            (*self)->Deliver(std::move(frame));
        },
        0);
  });
  subscription_ = session_->subscribe(
      session_id_, [weak](const QString& method, const QJsonObject& params,
                          const QString&) {
        if (auto self = weak.lock())
          (*self)->OnEvent(method, params);
      });
}

ScreencastSource::~ScreencastSource() = default;

void ScreencastSource::Detach() {
  session_->unsubscribe(subscription_);
  running_ = false;
}

void ScreencastSource::Start() {
  if (running_)
    return;
  running_ = true;
  decoder_->Reset();
  SendStart();
  ExpectFrame();
}

void ScreencastSource::Stop() {
  if (!running_)
    return;
  running_ = false;
  awaiting_frame_ = false;
  session_->sendCommand("Page.stopScreencast", {}, session_id_, {});
}

void ScreencastSource::SendStart() {
  session_->sendCommand("Page.startScreencast",
                        {{"format", "png"},
                         {"everyNthFrame", 1},
                         {"maxWidth", kMaxFrameSide},
                         {"maxHeight", kMaxFrameSide}},
                        session_id_, {});
}

void ScreencastSource::Invalidate() {
  if (!running_) {
    return;
  }
  // A fresh picture of the page as it is now: restarting the screencast makes
  // Chromium capture one, which then goes out whole.
  decoder_->RequestFullFrame();
  session_->sendCommand("Page.stopScreencast", {}, session_id_, {});
  SendStart();
  ExpectFrame();
}

void ScreencastSource::ExpectFrame() {
  if (!running_)
    return;
  awaiting_frame_ = true;
  if (!watchdog_armed_) {
    stall_ms_ = kFirstStallMs;
    ArmWatchdog();
  }
}

void ScreencastSource::ArmWatchdog() {
  watchdog_armed_ = true;
  std::weak_ptr<ScreencastSource*> weak = self_;
  post_(
      [weak] {
        if (auto self = weak.lock())
          (*self)->CheckStall();
      },
      stall_ms_);
}

void ScreencastSource::CheckStall() {
  watchdog_armed_ = false;
  if (!running_ || !awaiting_frame_)
    return;
  session_->sendCommand("Page.stopScreencast", {}, session_id_, {});
  SendStart();
  stall_ms_ = std::min(stall_ms_ * 2, kMaxStallMs);
  ArmWatchdog();
}

void ScreencastSource::SetFrameRate(int framesPerSecond) {
  const int rate = std::clamp(framesPerSecond, 1, 60);
  decoder_->SetMinInterval(rate >= 60 ? std::chrono::microseconds(0)
                                      : std::chrono::microseconds(
                                            1000000 / rate));
}

void ScreencastSource::OnEvent(const QString& method,
                               const QJsonObject& params) {
  if (method == QLatin1String("Page.screencastFrame")) {
    // Acknowledged before anything else: Chromium sends the next frame only
    // after this.
    session_->sendCommand("Page.screencastFrameAck",
                          {{"sessionId", params.value("sessionId")}},
                          session_id_, {});
    if (!running_)
      return;
    awaiting_frame_ = false;
    decoder_->Submit(params.value("data").toString());
  } else if (method == QLatin1String("Page.frameNavigated") &&
             !params.value("frame").toObject().contains("parentId")) {
    // A new document paints at least once.
    ExpectFrame();
  }
}

void ScreencastSource::Deliver(FrameDecoder::Frame frame) {
  // Frames decoded while stopped are dropped; Start() makes the next whole.
  if (!running_)
    return;
  sink_(frame.image, frame.dirtyRects);
}

}  // namespace cefengine
