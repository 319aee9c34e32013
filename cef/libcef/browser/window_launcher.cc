#include "libcef/browser/window_launcher.h"

#include <algorithm>
#include <thread>
#include <utility>

#include <QJsonArray>
#include <QJsonObject>

#include "libcef/devtools/devtools_session.h"

namespace cefengine {

const char WindowLauncher::kUrl[] = "data:text/html,<title>brovia</title>";

bool WindowLauncher::Find(DevToolsSession* session,
                          std::chrono::seconds timeout,
                          QString* target_id,
                          QString* session_id) {
  // The start-up window may come a moment after Chromium first answers.
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  QString launcher;
  while (launcher.isEmpty() && std::chrono::steady_clock::now() < deadline) {
    const DevToolsReply targets = session->sendCommandSync(
        QStringLiteral("Target.getTargets"), {}, QString(), timeout);
    if (!targets.ok()) {
      return false;
    }
    for (const QJsonValue& value :
         targets.result.value(QLatin1String("targetInfos")).toArray()) {
      const QJsonObject target = value.toObject();
      if (target.value(QLatin1String("type")).toString() == "page" &&
          target.value(QLatin1String("url")).toString() ==
              QLatin1String(kUrl)) {
        launcher = target.value(QLatin1String("targetId")).toString();
      }
    }
    if (launcher.isEmpty()) {
      // Short: the first page of the application waits for this window.
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }
  if (launcher.isEmpty()) {
    return false;
  }
  const DevToolsReply attached = session->sendCommandSync(
      QStringLiteral("Target.attachToTarget"),
      QJsonObject{{"targetId", launcher}, {"flatten", true}}, QString(),
      timeout);
  if (!attached.ok()) {
    return false;
  }
  *target_id = launcher;
  *session_id = attached.result.value(QLatin1String("sessionId")).toString();
  return true;
}

void WindowLauncher::Reset(const QString& target_id,
                           const QString& session_id) {
  std::lock_guard<std::mutex> lock(mutex_);
  target_id_ = target_id;
  session_id_ = session_id;
}

void WindowLauncher::Ids(QString* target_id, QString* session_id) const {
  std::lock_guard<std::mutex> lock(mutex_);
  *target_id = target_id_;
  *session_id = session_id_;
}

void WindowLauncher::Fail(const QString& why) {
  std::deque<OpenedCallback> launches;
  launches.swap(launches_);
  Reset(QString(), QString());
  for (OpenedCallback& opened : launches) {
    opened(QString(), why);
  }
}

bool WindowLauncher::IsLauncher(const QString& target_id) const {
  QString launcher, session;
  Ids(&launcher, &session);
  return !launcher.isEmpty() && target_id == launcher;
}

void WindowLauncher::NextPlace(int* left, int* top) {
  // Far from the launcher's window at (10, 10); 32 by 8 places, 6 DIP
  // apart, so that a window is known by where it is.
  const int slot = slot_++ % 256;
  *left = 100 + 6 * (slot % 32);
  *top = 100 + 6 * (slot / 32);
}

QString WindowLauncher::Script(int left, int top, int width,
                               int height) const {
  return QStringLiteral(
             "String(window.open('about:blank', '', "
             "'popup,noopener,left=%1,top=%2,width=%3,height=%4'))")
      .arg(left)
      .arg(top)
      .arg(std::max(1, width))
      .arg(std::max(1, height));
}

void WindowLauncher::Open(std::shared_ptr<DevToolsSession> running,
                          int left,
                          int top,
                          int width,
                          int height,
                          OpenedCallback opened) {
  QString launcher, session;
  Ids(&launcher, &session);
  if (!running || session.isEmpty()) {
    opened(QString(), QStringLiteral("no Chromium runs"));
    return;
  }
  launches_.push_back(std::move(opened));
  std::weak_ptr<WindowLauncher> weak = shared_from_this();
  // A user gesture each time: the popup blocker lets the window through.
  running->sendCommand(
      QStringLiteral("Runtime.evaluate"),
      QJsonObject{{"expression", Script(left, top, width, height)},
                  {"userGesture", true}},
      session,
      [weak](const QJsonObject&, const QJsonObject& error) {
        std::shared_ptr<WindowLauncher> self = weak.lock();
        if (!self || error.isEmpty() || self->launches_.empty()) {
          return;
        }
        // No window comes for this call: the last one waiting is its.
        OpenedCallback failed = std::move(self->launches_.back());
        self->launches_.pop_back();
        failed(QString(), error.value(QLatin1String("message")).toString());
      });
}

QString WindowLauncher::OpenSync(
    std::shared_ptr<DevToolsSession> running,
    int left,
    int top,
    int width,
    int height,
    const std::function<bool(const QString&)>& known,
    std::chrono::seconds timeout) {
  QString launcher, session;
  Ids(&launcher, &session);
  if (!running || session.isEmpty()) {
    return QString();
  }
  const DevToolsReply opened = running->sendCommandSync(
      QStringLiteral("Runtime.evaluate"),
      QJsonObject{{"expression", Script(left, top, width, height)},
                  {"userGesture", true}},
      session, timeout);
  if (!opened.ok()) {
    return QString();
  }
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (std::chrono::steady_clock::now() < deadline) {
    const DevToolsReply targets = running->sendCommandSync(
        QStringLiteral("Target.getTargets"), {}, QString(), timeout);
    if (!targets.ok()) {
      return QString();
    }
    for (const QJsonValue& value :
         targets.result.value(QLatin1String("targetInfos")).toArray()) {
      const QJsonObject target = value.toObject();
      const QString id = target.value(QLatin1String("targetId")).toString();
      if (target.value(QLatin1String("openerId")).toString() == launcher &&
          !opened_.count(id) && !known(id)) {
        opened_.insert(id);
        return id;
      }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return QString();
}

WindowLauncher::OpenedCallback WindowLauncher::TakeLaunch(
    const QString& target_id) {
  if (launches_.empty() || opened_.count(target_id)) {
    return OpenedCallback();
  }
  opened_.insert(target_id);
  OpenedCallback opened = std::move(launches_.front());
  launches_.pop_front();
  return opened;
}

}  // namespace cefengine
