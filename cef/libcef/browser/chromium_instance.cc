#include "libcef/browser/chromium_instance.h"

#include <pthread.h>

#include <chrono>
#include <set>
#include <thread>
#include <utility>

#include <QCoreApplication>
#include <QDir>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/browser_registry.h"
#include "libcef/browser/downloads.h"
#include "libcef/browser/ui_task.h"
#include "libcef/browser/window_launcher.h"
#include "libcef/osr/x_server.h"

namespace cefengine {

namespace {

constexpr std::chrono::seconds kStartTimeout{20};
constexpr std::chrono::milliseconds kStopTimeout{3000};
// How long a page Chromium attached may wait for its browser to claim it.
constexpr int64_t kUnclaimedTimeoutMs = 5000;

cef_termination_status_t TerminationStatus(int signal) {
  return signal == 9 || signal == 15 ? TS_PROCESS_WAS_KILLED
                                     : TS_PROCESS_CRASHED;
}

}  // namespace

ChromiumInstance::ChromiumInstance(std::string cache_path)
    : chromium_launcher_(std::move(cache_path)) {}

ChromiumInstance::~ChromiumInstance() {
  // Shutdown joined it, unless the engine never shut down.
  if (starter_.joinable()) {
    starter_.detach();
  }
}

std::shared_ptr<DevToolsSession> ChromiumInstance::session() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return session_;
}

QString ChromiumInstance::user_agent() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return user_agent_;
}

bool ChromiumInstance::RunningLocked() const {
  return session_ && session_->isConnected();
}

void ChromiumInstance::StartInBackground(float device_scale_factor) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (shut_down_ || starting_ || RunningLocked()) {
    return;
  }
  BeginStartLocked(device_scale_factor, nullptr);
}

void ChromiumInstance::WhenStarted(float device_scale_factor,
                                   std::function<void(bool)> done) {
  const float scale = device_scale_factor > 0 ? device_scale_factor : 1;
  std::unique_lock<std::mutex> lock(mutex_);
  if (shut_down_) {
    lock.unlock();
    done(false);
    return;
  }
  if (!starting_ && RunningLocked()) {
    if (claimed_ || scale == scale_factor_.load()) {
      claimed_ = true;
      lock.unlock();
      done(true);
      return;
    }
    // Started ahead of any browser at another factor: nobody uses it yet,
    // so the first browser gets the factor it paints at.
    std::shared_ptr<DevToolsSession> unused;
    unused.swap(session_);
    BeginStartLocked(scale, std::move(unused));
  } else if (!starting_) {
    BeginStartLocked(scale, nullptr);
  }
  // Asked again once the start ended, which then settles the factor.
  std::weak_ptr<ChromiumInstance> weak = shared_from_this();
  start_waiters_.push_back(
      [weak, scale, done = std::move(done)](bool started) {
        std::shared_ptr<ChromiumInstance> self = weak.lock();
        if (self && started) {
          self->WhenStarted(scale, done);
        } else {
          done(false);
        }
      });
}

bool ChromiumInstance::EnsureStarted(float device_scale_factor) {
  const float scale = device_scale_factor > 0 ? device_scale_factor : 1;
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    if (shut_down_) {
      return false;
    }
    if (!starting_) {
      if (RunningLocked() && (claimed_ || scale == scale_factor_.load())) {
        claimed_ = true;
        return true;
      }
      std::shared_ptr<DevToolsSession> unused;
      unused.swap(session_);
      BeginStartLocked(scale, std::move(unused));
    }
    const float asked = start_scale_;
    start_ended_.wait(lock, [this] { return !starting_; });
    if (!RunningLocked() && asked == scale) {
      return false;
    }
  }
}

void ChromiumInstance::BeginStartLocked(
    float device_scale_factor,
    std::shared_ptr<DevToolsSession> previous) {
  starting_ = true;
  start_scale_ = device_scale_factor > 0 ? device_scale_factor : 1;
  std::weak_ptr<ChromiumInstance> weak = shared_from_this();
  std::thread earlier = std::move(starter_);
  // Read here: the application's command line may be gone by the time a
  // start runs at the process's exit.
  std::vector<std::string> switches = ChromiumLauncher::Switches();
  starter_ = std::thread([weak, earlier = std::move(earlier),
                          previous = std::move(previous),
                          switches = std::move(switches),
                          scale = start_scale_]() mutable {
    pthread_setname_np(pthread_self(), "CefChromiumStart");
    if (earlier.joinable()) {
      earlier.join();
    }
    if (previous) {
      previous->stop(kStopTimeout);
      previous.reset();
    }
    std::shared_ptr<ChromiumInstance> self = weak.lock();
    if (!self) {
      return;
    }
    self->FinishStart(self->Launch(scale, std::move(switches)), scale);
  });
}

ChromiumLauncher::Launched ChromiumInstance::Launch(
    float device_scale_factor,
    std::vector<std::string> switches) {
  BrowserRegistry::Get().SettleEarlyStart(this);
  auto session = std::make_shared<DevToolsSession>(
      [](std::function<void()> task) { PostUiTask(std::move(task)); });
  std::weak_ptr<ChromiumInstance> weak = shared_from_this();
  const DevToolsSession* from = session.get();
  session->subscribeAll([weak, from](const QString& method,
                                     const QJsonObject& params,
                                     const QString& session_id) {
    if (std::shared_ptr<ChromiumInstance> self = weak.lock()) {
      self->OnEvent(from, method, params, session_id);
    }
  });
  return chromium_launcher_.Launch(device_scale_factor, std::move(switches),
                                std::move(session), shut_down_);
}

void ChromiumInstance::FinishStart(ChromiumLauncher::Launched launched,
                                   float device_scale_factor) {
  std::vector<std::function<void(bool)>> waiters;
  bool started;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    started = launched.session && !shut_down_;
    if (started) {
      session_ = std::move(launched.session);
      user_agent_ = launched.user_agent;
      scale_factor_ = device_scale_factor;
      x_server_ = launched.x_server;
      x11_ = x_server_ != nullptr;
      claimed_ = false;
      // Ahead of the waiters, so that no page exists before downloads are
      // set up.
      std::weak_ptr<ChromiumInstance> weak = shared_from_this();
      launcher_->Reset(launched.launcher_target, launched.launcher_session);
      PostUiTask([weak, session = session_] {
        if (std::shared_ptr<ChromiumInstance> self = weak.lock()) {
          self->StartDownloads(session.get());
        }
      });
    }
    starting_ = false;
    waiters.swap(start_waiters_);
  }
  start_ended_.notify_all();
  if (launched.session) {
    // Shut down meanwhile.
    launched.session->stop(kStopTimeout);
  }
  if (!waiters.empty()) {
    PostUiTask([waiters = std::move(waiters), started] {
      for (const std::function<void(bool)>& waiter : waiters) {
        waiter(started);
      }
    });
  }
}

void ChromiumInstance::StopIfUnused() {
  std::shared_ptr<DevToolsSession> unused;
  {
    std::unique_lock<std::mutex> lock(mutex_);
    start_ended_.wait(lock, [this] { return !starting_; });
    if (claimed_ || !session_) {
      return;
    }
    unused.swap(session_);
  }
  unused->stop(kStopTimeout);
  chromium_launcher_.ReleaseDebuggingPort();
}

void ChromiumInstance::StartDownloads(DevToolsSession* session) {
  if (!download_dir_) {
    // Named after the process, so that one host's folders can be told from
    // another's.
    download_dir_ = std::make_unique<QTemporaryDir>(
        QDir::tempPath() + QStringLiteral("/brovia-downloads-%1-XXXXXX")
                               .arg(QCoreApplication::applicationPid()));
  }
  if (!download_dir_->isValid()) {
    LOG(WARNING) << "No folder for downloads: Chromium downloads nothing";
    return;
  }
  std::weak_ptr<ChromiumInstance> weak = shared_from_this();
  downloads_ = std::make_shared<Downloads>(
      download_dir_->path(),
      [weak](const QString& frame_id) -> CefRefPtr<BrowserImpl> {
        std::shared_ptr<ChromiumInstance> self = weak.lock();
        return self ? self->BrowserForFrame(frame_id) : nullptr;
      },
      [weak]() -> std::shared_ptr<DevToolsSession> {
        std::shared_ptr<ChromiumInstance> self = weak.lock();
        return self ? self->session() : nullptr;
      });
  session->sendCommand(QStringLiteral("Browser.setDownloadBehavior"),
                       Downloads::Behavior(download_dir_->path()), QString(),
                       {});
}

BrowserImpl* ChromiumInstance::BrowserForFrame(const QString& frame_id) const {
  if (BrowserImpl* browser = BrowserForTarget(frame_id)) {
    return browser;
  }
  for (const auto& [session_id, browser] : sessions_) {
    if (browser->GetFrameByIdentifier(frame_id.toStdString())) {
      return browser;
    }
  }
  return nullptr;
}

void ChromiumInstance::AddTarget(const QString& target_id,
                                 BrowserImpl* browser) {
  targets_[target_id] = browser;
}

void ChromiumInstance::AddSession(const QString& session_id,
                                  BrowserImpl* browser) {
  sessions_[session_id] = browser;
}

void ChromiumInstance::RemoveSession(const QString& session_id) {
  sessions_.erase(session_id);
}

void ChromiumInstance::RemoveBrowser(BrowserImpl* browser) {
  for (auto* routes : {&targets_, &sessions_}) {
    for (auto it = routes->begin(); it != routes->end();) {
      it = it->second == browser ? routes->erase(it) : std::next(it);
    }
  }
}

void ChromiumInstance::WhenAttached(const QString& target_id,
                                    AttachCallback attached) {
  auto it = unclaimed_.find(target_id);
  if (it == unclaimed_.end()) {
    waiters_[target_id] = std::move(attached);
    return;
  }
  Attachment attachment = std::move(it->second);
  unclaimed_.erase(it);
  attached(attachment.session_id, attachment.info);
}

BrowserImpl* ChromiumInstance::BrowserForTarget(const QString& target_id) const {
  auto it = targets_.find(target_id);
  return it == targets_.end() ? nullptr : it->second;
}

void ChromiumInstance::OnEvent(const DevToolsSession* from,
                               const QString& method,
                               const QJsonObject& params,
                               const QString& session_id) {
  if (shut_down_) {
    return;
  }
  if (method == QLatin1String(DevToolsSession::kDisconnectedEvent)) {
    OnDisconnected(from, params);
    return;
  }
  {
    // What a Chromium says while it starts (its start-up window among it) is
    // not for the pages; nor is what a replaced one still says.
    std::lock_guard<std::mutex> lock(mutex_);
    if (session_.get() != from) {
      return;
    }
  }
  if (!session_id.isEmpty()) {
    auto it = sessions_.find(session_id);
    if (it != sessions_.end()) {
      CefRefPtr<BrowserImpl> browser = it->second;
      browser->OnProtocolEvent(method, params, session_id);
    }
    return;
  }
  if (method == QLatin1String("Target.attachedToTarget")) {
    OnAttachedToTarget(params);
    return;
  }
  if (method == QLatin1String("Target.detachedFromTarget") &&
      !sessions_.count(params.value(QLatin1String("sessionId")).toString())) {
    return;  // an inspector's session, not the page's own
  }
  if (method.startsWith(QLatin1String("Browser.download"))) {
    if (downloads_) {
      downloads_->OnEvent(method, params);
    }
    return;
  }
  const QString target_id =
      params.value(QLatin1String("targetId")).toString().isEmpty()
          ? params.value(QLatin1String("targetInfo"))
                .toObject()
                .value(QLatin1String("targetId"))
                .toString()
          : params.value(QLatin1String("targetId")).toString();
  if (CefRefPtr<BrowserImpl> browser = BrowserForTarget(target_id)) {
    browser->OnProtocolEvent(method, params);
  }
}

void ChromiumInstance::OnAttachedToTarget(const QJsonObject& params) {
  const QString session_id = params.value(QLatin1String("sessionId")).toString();
  const QJsonObject info = params.value(QLatin1String("targetInfo")).toObject();
  const QString target_id = info.value(QLatin1String("targetId")).toString();
  const QString opener_id = info.value(QLatin1String("openerId")).toString();
  if (launcher_->IsLauncher(target_id)) {
    return;
  }
  if (launcher_->IsLauncher(opener_id) && !waiters_.count(target_id) &&
      !targets_.count(target_id)) {
    // A window OpenWindow asked for, in the order asked.
    OpenedCallback opened = launcher_->TakeLaunch(target_id);
    if (!opened) {
      DiscardTarget(target_id, session_id);
      return;
    }
    unclaimed_[target_id] = Attachment{session_id, info};
    opened(target_id, QString());
    return;
  }
  if (!opener_id.isEmpty() && !launcher_->IsLauncher(opener_id)) {
    if (CefRefPtr<BrowserImpl> opener = BrowserForTarget(opener_id)) {
      opener->OnProtocolEvent(QStringLiteral("Target.attachedToTarget"),
                              params);
    } else {
      // Opened by a page that is gone: nobody would ever show it.
      DiscardTarget(target_id, session_id);
    }
    return;
  }
  auto waiter = waiters_.find(target_id);
  if (waiter == waiters_.end()) {
    // A second session on a page that has its own: an inspector's.
    BrowserImpl* shown = BrowserForTarget(target_id);
    for (const auto& [session, browser] : sessions_) {
      if (shown && browser == shown) {
        return;
      }
    }
  }
  if (waiter == waiters_.end()) {
    // Ours, with Target.createTarget's answer still on its way; or a page
    // someone else opened (remote debugging), let go after a while.
    unclaimed_[target_id] = Attachment{session_id, info};
    std::weak_ptr<ChromiumInstance> weak = shared_from_this();
    PostUiTask(
        [weak, target_id] {
          if (std::shared_ptr<ChromiumInstance> self = weak.lock()) {
            self->ReleaseUnclaimed(target_id);
          }
        },
        kUnclaimedTimeoutMs);
    return;
  }
  AttachCallback attached = std::move(waiter->second);
  waiters_.erase(waiter);
  attached(session_id, info);
}

void ChromiumInstance::ReleaseUnclaimed(const QString& target_id) {
  auto it = unclaimed_.find(target_id);
  std::shared_ptr<DevToolsSession> running = session();
  if (it == unclaimed_.end() || !running || shut_down_) {
    return;
  }
  const QString session_id = it->second.session_id;
  unclaimed_.erase(it);
  running->sendCommand(QStringLiteral("Runtime.runIfWaitingForDebugger"), {},
                       session_id, {});
  running->sendCommand(QStringLiteral("Target.detachFromTarget"),
                       QJsonObject{{"sessionId", session_id}}, QString(), {});
}

void ChromiumInstance::DiscardTarget(const QString& target_id,
                                     const QString& session_id) {
  std::shared_ptr<DevToolsSession> running = session();
  if (!running) {
    return;
  }
  // The opener's window.open() waits until the held page runs.
  running->sendCommand(QStringLiteral("Runtime.runIfWaitingForDebugger"), {},
                       session_id, {});
  running->sendCommand(QStringLiteral("Target.closeTarget"),
                       QJsonObject{{"targetId", target_id}}, QString(), {});
}

void ChromiumInstance::OnDisconnected(const DevToolsSession* from,
                                      const QJsonObject& params) {
  const int exit_code = params.value(QLatin1String("exitCode")).toInt();
  const int signal = params.value(QLatin1String("signal")).toInt();
  const std::string status =
      params.value(QLatin1String("status")).toString().toStdString();
  std::shared_ptr<DevToolsSession> dead;
  {
    // A Chromium replaced or given up on by a start ends unnoticed.
    std::lock_guard<std::mutex> lock(mutex_);
    if (session_.get() != from) {
      return;
    }
    dead.swap(session_);
  }
  if (!dead) {
    return;
  }
  LOG(ERROR) << "Chromium (pid " << dead->pid() << ") ended unexpectedly: "
             << status;
  std::vector<CefRefPtr<BrowserImpl>> browsers;
  std::set<BrowserImpl*> seen;
  for (const auto& [target, browser] : targets_) {
    if (seen.insert(browser).second) {
      browsers.push_back(browser);
    }
  }
  unclaimed_.clear();
  waiters_.clear();
  launcher_->Fail(QStringLiteral("Chromium ended"));
  for (const CefRefPtr<BrowserImpl>& browser : browsers) {
    browser->OnChromiumGone(TerminationStatus(signal),
                            signal ? signal : exit_code, status);
  }
}

void ChromiumInstance::Shutdown() {
  std::shared_ptr<DevToolsSession> running;
  std::thread starter;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    shut_down_ = true;
    running.swap(session_);
    starter = std::move(starter_);
  }
  // A start under way ends by itself (normally well under a second) and
  // stops the Chromium it made, seeing the engine go.
  if (starter.joinable()) {
    starter.join();
  }
  if (running) {
    running->stop(kStopTimeout);
  }
  running.reset();
  targets_.clear();
  sessions_.clear();
  unclaimed_.clear();
  waiters_.clear();
  downloads_.reset();
  launcher_->Reset(QString(), QString());
  {
    std::lock_guard<std::mutex> lock(mutex_);
    x_server_.reset();
  }
  chromium_launcher_.RemoveTemporaryProfile();
  download_dir_.reset();
}

std::shared_ptr<XServer> ChromiumInstance::x_server() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return x_server_;
}

pid_t ChromiumInstance::chromium_pid() const {
  std::shared_ptr<DevToolsSession> running = session();
  return running ? running->pid() : 0;
}

void ChromiumInstance::NextWindowPlace(int* left, int* top) {
  launcher_->NextPlace(left, top);
}

void ChromiumInstance::OpenWindow(int left, int top, int width, int height,
                                  OpenedCallback opened) {
  launcher_->Open(session(), left, top, width, height, std::move(opened));
}

QString ChromiumInstance::OpenWindowSync(int left, int top, int width,
                                         int height) {
  return launcher_->OpenSync(
      session(), left, top, width, height,
      [this](const QString& id) {
        return targets_.count(id) || unclaimed_.count(id);
      },
      kStartTimeout);
}

}  // namespace cefengine
