#include "libcef/browser/devtools_window.h"

#include <xcb/xcb.h>

#include <utility>

#include <QDir>
#include <QJsonDocument>

#include "include/base/cef_logging.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

namespace {

QByteArray Compact(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

}  // namespace

bool DevToolsWindow::DisplayReachable(std::string* why) {
  const QByteArray display = qgetenv("DISPLAY");
  if (display.isEmpty()) {
    *why = "DISPLAY is not set";
    return false;
  }
  xcb_connection_t* connection = xcb_connect(display.constData(), nullptr);
  const int failure = xcb_connection_has_error(connection);
  xcb_disconnect(connection);
  if (failure) {
    *why = "display " + display.toStdString() + " cannot be reached";
    return false;
  }
  return true;
}

std::shared_ptr<DevToolsWindow> DevToolsWindow::Open(
    std::shared_ptr<DevToolsSession> page_chromium,
    const QString& target_id,
    GoneCallback gone) {
  if (!page_chromium || target_id.isEmpty()) {
    LOG(WARNING) << "Inspector: the page is not running; nothing is opened";
    return nullptr;
  }
  std::shared_ptr<DevToolsWindow> window(
      new DevToolsWindow(std::move(page_chromium), target_id, std::move(gone)));
  std::weak_ptr<DevToolsWindow> weak = window;
  window->page_chromium_->sendCommand(
      QStringLiteral("Target.attachToTarget"),
      QJsonObject{{"targetId", target_id}, {"flatten", true}}, QString(),
      [weak](const QJsonObject& result, const QJsonObject& error) {
        if (std::shared_ptr<DevToolsWindow> self = weak.lock()) {
          self->OnAttached(result, error);
        }
      });
  return window;
}

DevToolsWindow::DevToolsWindow(std::shared_ptr<DevToolsSession> page_chromium,
                               QString target_id,
                               GoneCallback gone)
    : page_chromium_(std::move(page_chromium)),
      target_id_(std::move(target_id)),
      gone_(std::move(gone)) {}

DevToolsWindow::~DevToolsWindow() {
  Close();
}

std::string DevToolsWindow::url() const {
  return "devtools://devtools/bundled/devtools_app.html?ws=127.0.0.1:" +
         std::to_string(relay_.port()) + relay_.path();
}

void DevToolsWindow::OnAttached(const QJsonObject& result,
                                const QJsonObject& error) {
  const QString session_id = result.value(QLatin1String("sessionId")).toString();
  if (closed_) {
    if (!session_id.isEmpty()) {
      page_chromium_->sendCommand(QStringLiteral("Target.detachFromTarget"),
                                  QJsonObject{{"sessionId", session_id}},
                                  QString(), {});
    }
    return;
  }
  if (session_id.isEmpty()) {
    Fail("cannot attach to the page: " +
         error.value(QLatin1String("message")).toString().toStdString());
    return;
  }
  session_id_ = session_id;
  std::weak_ptr<DevToolsWindow> weak = shared_from_this();
  page_subscription_ = page_chromium_->subscribeAll(
      [weak](const QString& method, const QJsonObject& params,
             const QString& session) {
        if (std::shared_ptr<DevToolsWindow> self = weak.lock()) {
          self->OnPageEvent(method, params, session);
        }
      });
  std::string why;
  // Close joins the relay thread before anything of this object goes.
  if (!relay_.Start(
          [this](const std::string& message) { OnFrontEndMessage(message); },
          &why) ||
      !LaunchWindow(&why)) {
    Fail(why);
  }
}

bool DevToolsWindow::LaunchWindow(std::string* error) {
  profile_ = std::make_unique<QTemporaryDir>(
      QDir::tempPath() + QStringLiteral("/brovia-inspector-XXXXXX"));
  if (!profile_->isValid()) {
    *error = "no temporary profile: " + profile_->errorString().toStdString();
    return false;
  }
  ChromiumProcess::Options options;
  options.program = kFrontEndChromium;
  options.headless = false;
  options.userDataDir = profile_->path().toStdString();
  // Chromium opens no devtools: address given on its command line; the
  // window comes from Target.createTarget below.
  options.extraSwitches = {"ozone-platform=x11",       "test-type",
                           "no-default-browser-check", "password-store=basic",
                           "no-startup-window",        "window-size=1024,720"};
  window_chromium_ = std::make_unique<DevToolsSession>(
      [](std::function<void()> task) { PostUiTask(std::move(task)); });
  std::weak_ptr<DevToolsWindow> weak = shared_from_this();
  window_chromium_->subscribeAll(
      [weak](const QString& method, const QJsonObject& params, const QString&) {
        if (std::shared_ptr<DevToolsWindow> self = weak.lock()) {
          self->OnWindowEvent(method, params);
        }
      });
  if (!window_chromium_->start(options, error)) {
    *error = "cannot start " + std::string(kFrontEndChromium) +
             " (Debian's chromium package): " + *error;
    return false;
  }
  window_chromium_->sendCommand(QStringLiteral("Target.setDiscoverTargets"),
                                QJsonObject{{"discover", true}}, QString(), {});
  window_chromium_->sendCommand(
      QStringLiteral("Target.createTarget"),
      QJsonObject{{"url", QString::fromStdString(url())}, {"newWindow", true}},
      QString(), [weak](const QJsonObject& result, const QJsonObject& error) {
        std::shared_ptr<DevToolsWindow> self = weak.lock();
        if (!self || self->closed_) {
          return;
        }
        self->window_page_ = result.value(QLatin1String("targetId")).toString();
        if (self->window_page_.isEmpty()) {
          self->Fail("the front end did not open: " +
                     error.value(QLatin1String("message")).toString().toStdString());
        }
      });
  return true;
}

void DevToolsWindow::OnPageEvent(const QString& method,
                                 const QJsonObject& params,
                                 const QString& session_id) {
  if (closed_) {
    return;
  }
  if (method == QLatin1String(DevToolsSession::kDisconnectedEvent)) {
    WentAway();
    return;
  }
  if (session_id.isEmpty()) {
    // The page went, or someone detached our session.
    if (method == QLatin1String("Target.detachedFromTarget") &&
        params.value(QLatin1String("sessionId")).toString() == session_id_) {
      WentAway();
    }
    return;
  }
  QJsonObject message{{"method", method}, {"params", params}};
  if (session_id == session_id_) {
    // Workers and frames the front end attaches keep their own sessions.
    if (method == QLatin1String("Target.attachedToTarget")) {
      child_sessions_.insert(params.value(QLatin1String("sessionId")).toString());
    } else if (method == QLatin1String("Target.detachedFromTarget")) {
      child_sessions_.erase(params.value(QLatin1String("sessionId")).toString());
    }
  } else if (child_sessions_.count(session_id)) {
    message.insert(QLatin1String("sessionId"), session_id);
  } else {
    return;
  }
  relay_.Send(Compact(message).toStdString());
}

void DevToolsWindow::OnFrontEndMessage(const std::string& text) {
  const QJsonObject command =
      QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
  const QJsonValue id = command.value(QLatin1String("id"));
  const QString method = command.value(QLatin1String("method")).toString();
  if (!id.isDouble() || method.isEmpty()) {
    return;
  }
  const QString child = command.value(QLatin1String("sessionId")).toString();
  std::weak_ptr<DevToolsWindow> weak = weak_from_this();
  page_chromium_->sendCommand(
      method, command.value(QLatin1String("params")).toObject(),
      child.isEmpty() ? session_id_ : child,
      [weak, id, child](const QJsonObject& result, const QJsonObject& error) {
        std::shared_ptr<DevToolsWindow> self = weak.lock();
        if (!self || self->closed_) {
          return;
        }
        QJsonObject reply{{"id", id}};
        if (error.isEmpty()) {
          reply.insert(QLatin1String("result"), result);
        } else {
          reply.insert(QLatin1String("error"), error);
        }
        if (!child.isEmpty()) {
          reply.insert(QLatin1String("sessionId"), child);
        }
        self->relay_.Send(Compact(reply).toStdString());
      });
}

void DevToolsWindow::OnWindowEvent(const QString& method,
                                   const QJsonObject& params) {
  if (closed_) {
    return;
  }
  if (method == QLatin1String(DevToolsSession::kDisconnectedEvent)) {
    WentAway();
    return;
  }
  if (method == QLatin1String("Target.targetDestroyed") &&
      !window_page_.isEmpty() &&
      params.value(QLatin1String("targetId")).toString() == window_page_) {
    // The window was closed; its Chromium would linger for the pipe.
    WentAway();
  }
}

void DevToolsWindow::Fail(const std::string& why) {
  LOG(WARNING) << "Inspector: " << why << "; nothing is opened";
  WentAway();
}

void DevToolsWindow::WentAway() {
  std::shared_ptr<DevToolsWindow> keep = shared_from_this();
  Close();
  GoneCallback gone = std::move(gone_);
  gone_ = nullptr;
  if (gone) {
    gone();
  }
}

void DevToolsWindow::Close() {
  if (closed_) {
    return;
  }
  closed_ = true;
  relay_.Stop();
  if (page_subscription_) {
    page_chromium_->unsubscribe(page_subscription_);
    page_subscription_ = 0;
  }
  if (!session_id_.isEmpty()) {
    page_chromium_->sendCommand(QStringLiteral("Target.detachFromTarget"),
                                QJsonObject{{"sessionId", session_id_}},
                                QString(), {});
  }
  // Its own profile goes only after this Chromium ended.
  window_chromium_.reset();
  profile_.reset();
}

}  // namespace cefengine
