#include "libcef/browser/frame_sessions.h"

#include <QJsonArray>

#include "libcef/browser/browser_impl.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/navigation_policy.h"
#include "libcef/browser/printing.h"
#include "libcef/browser/render_side.h"
#include "libcef/devtools/devtools_session.h"

namespace cefengine {

QJsonObject FrameSessions::AutoAttachParams() {
  // Frames only: workers would wait for a debugger nobody is.
  return QJsonObject{{"autoAttach", true},
                     {"waitForDebuggerOnStart", true},
                     {"flatten", true},
                     {"filter", QJsonArray{QJsonObject{{"type", "iframe"}}}}};
}

FrameSessions::FrameSessions(BrowserImpl* browser) : browser_(browser) {}

void FrameSessions::OnAttached(const QJsonObject& params) {
  const QString session_id =
      params.value(QLatin1String("sessionId")).toString();
  const QString frame_id = params.value(QLatin1String("targetInfo"))
                               .toObject()
                               .value(QLatin1String("targetId"))
                               .toString();
  DevToolsSession* session = browser_->devtools();
  if (!session || session_id.isEmpty()) {
    return;
  }
  root_frames_[session_id] = frame_id;
  sessions_[frame_id] = session_id;
  browser_->chromium()->AddSession(session_id, browser_);
  auto send = [&](const char* method, const QJsonObject& command) {
    session->sendCommand(QLatin1String(method), command, session_id, {});
  };
  // As the page's own session, less what only a page has (its view, title
  // and focus).
  send("Page.enable", {});
  send("Page.setInterceptFileChooserDialog", {{"enabled", true}});
  send("Runtime.enable", {});
  send("Network.enable", {});
  send("Log.enable", {});
  send("Emulation.setUserAgentOverride", browser_->UserAgentOverride());
  send("Runtime.addBinding", {{"name", Printing::kPrintBinding}});
  send("Page.addScriptToEvaluateOnNewDocument",
       {{"source", Printing::PrintWrapperScript()}});
  send("Target.setAutoAttach", AutoAttachParams());
  if (NavigationPolicy* policy = browser_->navigation_policy()) {
    policy->OnFrameSessionAttached(browser_, session_id);
  }
  if (RenderSide* render_side = browser_->render_side()) {
    render_side->OnFrameSessionAttached(browser_, session_id);
  }
  send("Runtime.runIfWaitingForDebugger", {});
}

bool FrameSessions::OnDetached(const QString& session_id) {
  auto root = root_frames_.find(session_id);
  if (root == root_frames_.end()) {
    return false;
  }
  root_frames_.erase(root);
  for (auto it = sessions_.begin(); it != sessions_.end();) {
    it = it->second == session_id ? sessions_.erase(it) : std::next(it);
  }
  browser_->chromium()->RemoveSession(session_id);
  return true;
}

bool FrameSessions::Owns(const QString& session_id) const {
  return root_frames_.count(session_id) > 0;
}

void FrameSessions::NoteEvent(const QString& session_id,
                              const QString& method,
                              const QJsonObject& params) {
  if (method == QLatin1String("Page.frameAttached")) {
    sessions_[params.value(QLatin1String("frameId")).toString()] = session_id;
  } else if (method == QLatin1String("Page.frameNavigated")) {
    sessions_[params.value(QLatin1String("frame"))
                  .toObject()
                  .value(QLatin1String("id"))
                  .toString()] = session_id;
  }
}

QString FrameSessions::SessionFor(const QString& frame_id) const {
  auto it = sessions_.find(frame_id);
  return it == sessions_.end() ? QString() : it->second;
}

void FrameSessions::Clear() {
  for (const auto& [session_id, frame_id] : root_frames_) {
    browser_->chromium()->RemoveSession(session_id);
  }
  root_frames_.clear();
  sessions_.clear();
}

}  // namespace cefengine
