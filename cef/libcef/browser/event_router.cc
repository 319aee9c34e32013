#include "libcef/browser/event_router.h"

#include "libcef/browser/browser_impl.h"
#include "libcef/browser/frame_sessions.h"
#include "libcef/browser/hang_monitor.h"
#include "libcef/browser/page_connection.h"
#include "libcef/browser/page_events.h"
#include "libcef/browser/page_hooks.h"

namespace cefengine {

EventRouter::EventRouter(BrowserImpl* browser) : browser_(browser) {}

void EventRouter::OnProtocolEvent(const QString& method,
                                  const QJsonObject& params,
                                  const QString& session_id) {
  if (!browser_->IsValid()) {
    return;
  }
  FrameSessions* frame_sessions = browser_->frame_sessions();
  const bool from_frame = frame_sessions->Owns(session_id);
  if (method.startsWith(QLatin1String("Target.")) && !session_id.isEmpty()) {
    // The page's and its frames' sessions hear of the frames' targets.
    const QJsonObject info =
        params.value(QLatin1String("targetInfo")).toObject();
    if (method == QLatin1String("Target.attachedToTarget")) {
      if (info.value(QLatin1String("type")).toString() ==
          QLatin1String("iframe")) {
        frame_sessions->OnAttached(params);
      }
      return;
    }
    if (method == QLatin1String("Target.detachedFromTarget")) {
      frame_sessions->OnDetached(
          params.value(QLatin1String("sessionId")).toString());
      return;
    }
    const QString about = params.value(QLatin1String("targetId"))
                              .toString(info.value(QLatin1String("targetId"))
                                            .toString());
    if (about != browser_->target_id()) {
      return;
    }
  }
  if (from_frame) {
    frame_sessions->NoteEvent(session_id, method, params);
    // A frame's renderer is not the page's: CEF tells only of the latter.
    if (method == QLatin1String("Inspector.targetCrashed")) {
      return;
    }
  }
  if (method == QLatin1String("Fetch.requestPaused") && from_frame) {
    browser_->connection()->NoteFetchPause(
        params.value(QLatin1String("requestId")).toString(), session_id);
  }
  event_session_ = from_frame ? session_id : QString();
  Dispatch(method, params);
  event_session_.clear();
}

void EventRouter::Dispatch(const QString& method, const QJsonObject& params) {
  if (method == QLatin1String("Inspector.targetCrashed") ||
      method == QLatin1String("Target.targetCrashed")) {
    // The client's Terminate ended it: a kill, as CEF reports it.
    HangMonitor* hang_monitor = browser_->hang_monitor();
    const bool killed = hang_monitor->terminating();
    hang_monitor->Reset();
    if (killed) {
      QJsonObject reported = params;
      reported.insert(QStringLiteral("status"), QStringLiteral("killed"));
      browser_->page_events()->Push(method, reported);
      return;
    }
  }
  if (browser_->hooks()->TakeEvent(method, params)) {
    return;
  }
  browser_->page_events()->Push(method, params, event_session_);
}

}  // namespace cefengine
