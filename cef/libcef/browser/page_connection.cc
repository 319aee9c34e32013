#include "libcef/browser/page_connection.h"

#include <utility>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/hang_monitor.h"
#include "libcef/browser/ui_task.h"
#include "libcef/devtools/devtools_session.h"

namespace cefengine {

namespace {

// Page commands under way at most: past it a page that does not answer
// gets no more, instead of a queue without end.
constexpr int kMaxCommandsInFlight = 4096;

QJsonObject NotAttachedError() {
  return QJsonObject{{"code", DevToolsSession::kDisconnectedCode},
                     {"message", "The browser is closed"}};
}

QJsonObject NoPageError() {
  return QJsonObject{{"code", DevToolsSession::kDisconnectedCode},
                     {"message", "The page's Chromium is gone"}};
}

QJsonObject OverloadedError() {
  return QJsonObject{{"code", DevToolsSession::kTimeoutCode},
                     {"message", "The page does not take more commands"}};
}

}  // namespace

PageConnection::PageConnection(BrowserImpl* browser) : browser_(browser) {}

PageConnection::~PageConnection() = default;

void PageConnection::Send(const QString& session_id,
                          const QString& method,
                          const QJsonObject& params,
                          CommandCallback callback) {
  CefRefPtr<BrowserImpl> self(browser_);
  auto fail = [self, callback](const QJsonObject& error) {
    PostUiTask([self, callback, error] {
      if (callback) {
        callback({}, error);
      }
    });
  };
  std::unique_lock<std::mutex> lock(mutex_);
  if (closed_ || gone_) {
    const QJsonObject error = closed_ ? NotAttachedError() : NoPageError();
    lock.unlock();
    fail(error);
    return;
  }
  if (commands_in_flight_ >= kMaxCommandsInFlight) {
    const bool warn = !warned_command_limit_;
    warned_command_limit_ = true;
    lock.unlock();
    if (warn) {
      LOG(WARNING) << "The page has " << kMaxCommandsInFlight
                   << " commands unanswered: further ones are dropped";
    }
    fail(OverloadedError());
    return;
  }
  ++commands_in_flight_;
  // |self| keeps the browser, and with it this, until the answer came.
  CommandCallback counted = [self, this, callback = std::move(callback)](
                                const QJsonObject& result,
                                const QJsonObject& error) {
    OnCommandDone(error);
    if (callback) {
      callback(result, error);
    }
  };
  if (!attached_) {
    queued_.push_back({session_id, method, params, std::move(counted)});
    return;
  }
  QString target = session_id.isEmpty() ? session_id_ : session_id;
  // Answers to a frame session's pause go back to it.
  if (method.startsWith(QLatin1String("Fetch."))) {
    auto paused =
        fetch_sessions_.find(params.value(QLatin1String("requestId")).toString());
    if (paused != fetch_sessions_.end()) {
      target = paused->second;
      if (method != QLatin1String("Fetch.getResponseBody")) {
        fetch_sessions_.erase(paused);
      }
    }
  }
  devtools_->sendCommand(method, params, target, std::move(counted),
                         HangMonitor::CommandDeadline());
}

void PageConnection::OnCommandDone(const QJsonObject& error) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    --commands_in_flight_;
    if (commands_in_flight_ == 0) {
      warned_command_limit_ = false;
    }
  }
  if (error.value(QLatin1String("code")).toInt() ==
          DevToolsSession::kTimeoutCode &&
      IsOpen()) {
    browser_->hang_monitor()->OnCommandExpired();
  }
}

bool PageConnection::IsOpen() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return !closed_;
}

bool PageConnection::IsGone() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return gone_ && !closed_;
}

bool PageConnection::IsAttached() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return attached_;
}

DevToolsSession* PageConnection::devtools() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return closed_ ? nullptr : devtools_.get();
}

QString PageConnection::session_id() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return closed_ ? QString() : session_id_;
}

void PageConnection::SetSession(std::shared_ptr<DevToolsSession> devtools,
                                const QString& session_id) {
  std::lock_guard<std::mutex> lock(mutex_);
  devtools_ = std::move(devtools);
  session_id_ = session_id;
}

bool PageConnection::Open() {
  std::lock_guard<std::mutex> lock(mutex_);
  if (closed_) {
    return false;
  }
  attached_ = true;
  // Under the lock, so that commands sent meanwhile queue behind these.
  for (QueuedCommand& command : queued_) {
    devtools_->sendCommand(command.method, command.params,
                           command.session_id.isEmpty() ? session_id_
                                                        : command.session_id,
                           std::move(command.callback),
                           HangMonitor::CommandDeadline());
  }
  queued_.clear();
  return true;
}

void PageConnection::NoteFetchPause(const QString& request_id,
                                    const QString& session_id) {
  std::lock_guard<std::mutex> lock(mutex_);
  fetch_sessions_[request_id] = session_id;
}

bool PageConnection::Drop() {
  std::vector<QueuedCommand> queued;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (closed_) {
      return false;
    }
    gone_ = true;
    attached_ = false;
    devtools_.reset();
    session_id_.clear();
    fetch_sessions_.clear();
    queued.swap(queued_);
  }
  Fail(std::move(queued), NoPageError());
  return true;
}

bool PageConnection::Revive() {
  std::lock_guard<std::mutex> lock(mutex_);
  if (closed_ || !gone_) {
    return false;
  }
  gone_ = false;
  return true;
}

bool PageConnection::Close() {
  std::vector<QueuedCommand> queued;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (closed_) {
      return false;
    }
    closed_ = true;
    queued.swap(queued_);
  }
  Fail(std::move(queued), NotAttachedError());
  return true;
}

void PageConnection::Release() {
  std::vector<QueuedCommand> queued;
  std::shared_ptr<DevToolsSession> devtools;
  std::lock_guard<std::mutex> lock(mutex_);
  closed_ = true;
  queued.swap(queued_);
  devtools.swap(devtools_);
}

void PageConnection::Fail(std::vector<QueuedCommand> queued,
                          const QJsonObject& error) {
  for (QueuedCommand& command : queued) {
    PostUiTask([callback = std::move(command.callback), error] {
      callback({}, error);
    });
  }
}

}  // namespace cefengine
