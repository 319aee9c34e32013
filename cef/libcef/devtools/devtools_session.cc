#include "libcef/devtools/devtools_session.h"

#include <condition_variable>
#include <cstdio>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include <QJsonDocument>
#include <QJsonParseError>

namespace cefengine {

namespace {

QJsonObject makeError(int code, const char* message) {
  return QJsonObject{{"code", code}, {"message", QString::fromUtf8(message)}};
}

QJsonObject disconnectedError() {
  return makeError(DevToolsSession::kDisconnectedCode, "Chromium disconnected");
}

void logMalformed(const QString& why, const QByteArray& message) {
  QByteArray excerpt = message.left(120);
  excerpt.replace('\n', ' ');
  std::fprintf(stderr,
               "brovia: skipped a malformed DevTools message (%s): %s\n",
               why.toLocal8Bit().constData(), excerpt.constData());
}

}  // namespace

// Shared with the tasks given to the dispatcher, which may outlive the session.
struct DevToolsSessionCore {
  using CommandCallback = DevToolsSession::CommandCallback;
  using Dispatcher = DevToolsSession::Dispatcher;
  using EventHandler = DevToolsSession::EventHandler;

  // A thread blocked in sendCommandSync.
  struct SyncWait {
    std::mutex mutex;
    std::condition_variable answered;
    bool done = false;
    DevToolsReply reply;
  };
  using Clock = std::chrono::steady_clock;
  struct Pending {
    CommandCallback callback;
    std::shared_ptr<SyncWait> wait;
    Clock::time_point deadline = Clock::time_point::max();
  };
  struct Subscription {
    bool anySession;
    QString sessionId;
    std::shared_ptr<EventHandler> handler;
  };

  explicit DevToolsSessionCore(Dispatcher d) : dispatcher(std::move(d)) {}

  const Dispatcher dispatcher;
  std::mutex mutex;
  bool connected = false;
  bool closed = false;  // the session is gone
  int nextId = 1;
  std::map<int, Pending> pending;
  // Unanswered commands by deadline, for the expirer.
  std::multimap<Clock::time_point, int> deadlines;
  std::condition_variable deadlinesChanged;
  // When the expirer wakes by itself: a command due earlier has to wake it,
  // any other leaves it asleep (no wake-up per command).
  Clock::time_point expirerWake = Clock::time_point::min();
  bool expirerDone = false;
  int nextSubscription = 1;
  std::map<int, Subscription> subscriptions;
};

namespace {

using Core = DevToolsSessionCore;

// Hands |reply| to whoever waits for command |pending|.
void complete(const std::shared_ptr<Core>& core,
              Core::Pending pending,
              DevToolsReply reply) {
  if (pending.wait) {
    {
      std::lock_guard<std::mutex> lock(pending.wait->mutex);
      pending.wait->done = true;
      pending.wait->reply = std::move(reply);
    }
    pending.wait->answered.notify_all();
    return;
  }
  if (!pending.callback)
    return;
  core->dispatcher(
      [core, callback = std::move(pending.callback), reply = std::move(reply)] {
        {
          std::lock_guard<std::mutex> lock(core->mutex);
          if (core->closed)
            return;
        }
        callback(reply.result, reply.error);
      });
}

// Completes command |id| with |reply| unless something else already did.
void completeIfPending(const std::shared_ptr<Core>& core,
                       int id,
                       DevToolsReply reply) {
  Core::Pending pending;
  {
    std::lock_guard<std::mutex> lock(core->mutex);
    auto it = core->pending.find(id);
    if (it == core->pending.end())
      return;
    pending = std::move(it->second);
    core->pending.erase(it);
    auto [first, last] = core->deadlines.equal_range(pending.deadline);
    for (; first != last; ++first) {
      if (first->second == id) {
        core->deadlines.erase(first);
        break;
      }
    }
  }
  complete(core, std::move(pending), std::move(reply));
}

// Queues one event for the subscribers, looked up when it runs so that
// (un)subscribing on the dispatcher's thread takes effect at once.
void dispatchEvent(const std::shared_ptr<Core>& core,
                   QString method,
                   QJsonObject params,
                   QString sessionId) {
  core->dispatcher([core, method = std::move(method),
                    params = std::move(params),
                    sessionId = std::move(sessionId)] {
    const bool toAll =
        method == QLatin1String(DevToolsSession::kDisconnectedEvent);
    std::vector<std::pair<int, std::shared_ptr<DevToolsSession::EventHandler>>>
        targets;
    {
      std::lock_guard<std::mutex> lock(core->mutex);
      if (core->closed)
        return;
      for (const auto& [id, subscription] : core->subscriptions) {
        if (toAll || subscription.anySession ||
            subscription.sessionId == sessionId)
          targets.emplace_back(id, subscription.handler);
      }
    }
    for (const auto& [id, handler] : targets) {
      {
        // An earlier handler of this event may have unsubscribed this one.
        std::lock_guard<std::mutex> lock(core->mutex);
        if (core->closed || !core->subscriptions.count(id))
          continue;
      }
      (*handler)(method, params, sessionId);
    }
  });
}

}  // namespace

DevToolsSession::DevToolsSession(Dispatcher dispatcher)
    : core_(std::make_shared<Core>(std::move(dispatcher))) {}

DevToolsSession::~DevToolsSession() {
  {
    std::lock_guard<std::mutex> lock(core_->mutex);
    core_->closed = true;
    core_->subscriptions.clear();
  }
  stop();
  {
    std::lock_guard<std::mutex> lock(core_->mutex);
    core_->expirerDone = true;
  }
  core_->deadlinesChanged.notify_all();
  if (expirer_.joinable()) {
    if (expirer_.get_id() == std::this_thread::get_id())
      expirer_.detach();
    else
      expirer_.join();
  }
}

void DevToolsSession::expireMain(std::shared_ptr<Core> core) {
  std::unique_lock<std::mutex> lock(core->mutex);
  while (!core->expirerDone) {
    if (core->deadlines.empty()) {
      core->expirerWake = Core::Clock::time_point::max();
      core->deadlinesChanged.wait(lock);
      continue;
    }
    const auto first = core->deadlines.begin();
    // A copy: the entry may go while this waits.
    const Core::Clock::time_point due = first->first;
    if (due > Core::Clock::now()) {
      core->expirerWake = due;
      core->deadlinesChanged.wait_until(lock, due);
      continue;
    }
    const int id = first->second;
    core->deadlines.erase(first);
    auto it = core->pending.find(id);
    if (it == core->pending.end())
      continue;
    Core::Pending expired = std::move(it->second);
    core->pending.erase(it);
    lock.unlock();
    complete(core, std::move(expired),
             DevToolsReply{{},
                           makeError(kTimeoutCode,
                                     "Timed out waiting for Chromium")});
    lock.lock();
  }
}

bool DevToolsSession::start(const ChromiumProcess::Options& options,
                            std::string* error) {
  if (started_) {
    *error = "this DevToolsSession was already started";
    return false;
  }
  started_ = true;
  expirer_ = std::thread(&DevToolsSession::expireMain, core_);
  // Connected before the process starts: it may disconnect before start
  // returns.
  {
    std::lock_guard<std::mutex> lock(core_->mutex);
    core_->connected = true;
  }
  std::shared_ptr<Core> core = core_;
  auto onDisconnect = [core](const ChromiumProcess::ExitStatus& status) {
    std::map<int, Core::Pending> failed;
    {
      std::lock_guard<std::mutex> lock(core->mutex);
      core->connected = false;
      failed.swap(core->pending);
      core->deadlines.clear();
    }
    for (auto& [id, pending] : failed)
      complete(core, std::move(pending),
               DevToolsReply{{}, disconnectedError()});
    dispatchEvent(
        core, QString::fromLatin1(kDisconnectedEvent),
        QJsonObject{{"exitCode", status.exitCode},
                    {"signal", status.signal},
                    {"status", QString::fromStdString(status.describe())}},
        QString());
  };
  if (process_.start(
          options, [this](const QByteArray& message) { onMessage(message); },
          std::move(onDisconnect), error)) {
    return true;
  }
  std::lock_guard<std::mutex> lock(core_->mutex);
  core_->connected = false;
  return false;
}

void DevToolsSession::stop(std::chrono::milliseconds timeout) {
  if (isConnected())
    sendCommand(QStringLiteral("Browser.close"), {}, QString(), {});
  process_.stop(timeout);
}

bool DevToolsSession::isConnected() const {
  std::lock_guard<std::mutex> lock(core_->mutex);
  return core_->connected;
}

// Reader thread.
void DevToolsSession::onMessage(const QByteArray& message) {
  QJsonParseError parseError;
  const QJsonDocument document = QJsonDocument::fromJson(message, &parseError);
  if (parseError.error != QJsonParseError::NoError) {
    logMalformed(parseError.errorString(), message);
    return;
  }
  if (!document.isObject()) {
    logMalformed(QStringLiteral("not an object"), message);
    return;
  }
  const QJsonObject object = document.object();
  const QJsonValue id = object.value(QLatin1String("id"));
  if (!id.isUndefined()) {
    if (!id.isDouble()) {
      logMalformed(QStringLiteral("bad id"), message);
      return;
    }
    // A reply nobody waits for any more (a timed-out sync command) is dropped.
    completeIfPending(
        core_, id.toInt(),
        DevToolsReply{object.value(QLatin1String("result")).toObject(),
                      object.value(QLatin1String("error")).toObject()});
    return;
  }
  QString method = object.value(QLatin1String("method")).toString();
  if (method.isEmpty()) {
    logMalformed(QStringLiteral("neither id nor method"), message);
    return;
  }
  dispatchEvent(core_, std::move(method),
                object.value(QLatin1String("params")).toObject(),
                object.value(QLatin1String("sessionId")).toString());
}

namespace {

QByteArray serialize(int id,
                     const QString& method,
                     const QJsonObject& params,
                     const QString& sessionId) {
  QJsonObject command{{"id", id}, {"method", method}};
  if (!params.isEmpty())
    command.insert(QLatin1String("params"), params);
  if (!sessionId.isEmpty())
    command.insert(QLatin1String("sessionId"), sessionId);
  return QJsonDocument(command).toJson(QJsonDocument::Compact);
}

}  // namespace

int DevToolsSession::sendCommand(const QString& method,
                                 const QJsonObject& params,
                                 const QString& sessionId,
                                 CommandCallback callback,
                                 std::chrono::milliseconds deadline) {
  int id;
  bool connected;
  Core::Pending pending{std::move(callback), nullptr,
                        Core::Clock::now() + deadline};
  bool earliest = false;
  {
    std::lock_guard<std::mutex> lock(core_->mutex);
    id = core_->nextId++;
    connected = core_->connected;
    if (connected) {
      earliest = pending.deadline < core_->expirerWake;
      if (earliest)
        core_->expirerWake = pending.deadline;
      core_->deadlines.emplace(pending.deadline, id);
      core_->pending.emplace(id, std::move(pending));
    }
  }
  if (earliest)
    core_->deadlinesChanged.notify_all();
  if (!connected) {
    complete(core_, std::move(pending), DevToolsReply{{}, disconnectedError()});
    return id;
  }
  if (!process_.send(serialize(id, method, params, sessionId)))
    completeIfPending(core_, id, DevToolsReply{{}, disconnectedError()});
  return id;
}

DevToolsReply DevToolsSession::sendCommandSync(
    const QString& method,
    const QJsonObject& params,
    const QString& sessionId,
    std::chrono::milliseconds timeout) {
  if (process_.isReaderThread()) {
    return DevToolsReply{
        {},
        makeError(kWrongThreadCode,
                  "sendCommandSync called on the DevTools reader thread")};
  }
  auto wait = std::make_shared<Core::SyncWait>();
  int id;
  {
    std::lock_guard<std::mutex> lock(core_->mutex);
    if (!core_->connected)
      return DevToolsReply{{}, disconnectedError()};
    id = core_->nextId++;
    core_->pending.emplace(id, Core::Pending{nullptr, wait});
  }
  if (!process_.send(serialize(id, method, params, sessionId)))
    completeIfPending(core_, id, DevToolsReply{{}, disconnectedError()});

  std::unique_lock<std::mutex> waitLock(wait->mutex);
  if (!wait->answered.wait_for(waitLock, timeout, [&] { return wait->done; })) {
    waitLock.unlock();
    bool abandoned;
    {
      std::lock_guard<std::mutex> lock(core_->mutex);
      abandoned = core_->pending.erase(id) > 0;
    }
    if (abandoned)
      return DevToolsReply{
          {}, makeError(kTimeoutCode, "Timed out waiting for Chromium")};
    // The reply was taken an instant ago and is on its way here.
    waitLock.lock();
    wait->answered.wait(waitLock, [&] { return wait->done; });
  }
  return wait->reply;
}

int DevToolsSession::subscribe(const QString& sessionId, EventHandler handler) {
  std::lock_guard<std::mutex> lock(core_->mutex);
  const int id = core_->nextSubscription++;
  core_->subscriptions.emplace(
      id,
      Core::Subscription{false, sessionId,
                         std::make_shared<EventHandler>(std::move(handler))});
  return id;
}

int DevToolsSession::subscribeAll(EventHandler handler) {
  std::lock_guard<std::mutex> lock(core_->mutex);
  const int id = core_->nextSubscription++;
  core_->subscriptions.emplace(
      id,
      Core::Subscription{true, QString(),
                         std::make_shared<EventHandler>(std::move(handler))});
  return id;
}

void DevToolsSession::unsubscribe(int subscription) {
  std::lock_guard<std::mutex> lock(core_->mutex);
  core_->subscriptions.erase(subscription);
}

}  // namespace cefengine
