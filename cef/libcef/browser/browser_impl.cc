#include "libcef/browser/browser_impl.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <utility>

#include <QJsonDocument>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_registry.h"
#include "libcef/browser/caret_reporter.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/context_menus.h"
#include "libcef/browser/context_storage.h"
#include "libcef/browser/drag_source.h"
#include "libcef/browser/engine_world.h"
#include "libcef/browser/file_dialogs.h"
#include "libcef/browser/find_in_page.h"
#include "libcef/browser/frame_impl.h"
#include "libcef/browser/frame_sessions.h"
#include "libcef/browser/hang_monitor.h"
#include "libcef/browser/input_translator.h"
#include "libcef/browser/navigation_entry_impl.h"
#include "libcef/browser/page_events.h"
#include "libcef/browser/pointer_feedback.h"
#include "libcef/browser/printing.h"
#include "libcef/browser/request_context_impl.h"
#include "libcef/browser/script_dialogs.h"
#include "libcef/browser/ui_task.h"
#include "libcef/browser/devtools_browser.h"
#include "libcef/browser/devtools_window.h"
#include "libcef/devtools/devtools_session.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

constexpr std::chrono::seconds kCreateTimeout{20};
constexpr int kDefaultWidth = 800;
constexpr int kDefaultHeight = 600;
constexpr char kEngineWorld[] = "__brovia";
// How long a page asked to close may take to either ask the client or go,
// and how often it is asked meanwhile.
constexpr int kUnloadTimeoutMs = 3000;
constexpr int kUnloadRetryMs = 300;
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

// Chrome's zoom steps, as factors.
constexpr double kZoomFactors[] = {0.25, 1 / 3.0, 0.5, 2 / 3.0, 0.75, 0.8,
                                   0.9,  1.0,     1.1, 1.25,    1.5,  1.75,
                                   2.0,  2.5,     3.0, 4.0,     5.0};

double ZoomFactor(double level) {
  return std::pow(1.2, level);
}

double ZoomLevel(double factor) {
  return std::log(factor) / std::log(1.2);
}

// The factor a level lays the page out at, within Chrome's limits as Blink
// clamps it.
double AppliedZoomFactor(double level) {
  return std::clamp(ZoomFactor(level), kZoomFactors[0],
                    kZoomFactors[std::size(kZoomFactors) - 1]);
}

}  // namespace

// --- Creation -------------------------------------------------------------

BrowserImpl::BrowserImpl(int id, CreateParams params)
    : id_(id),
      is_popup_(params.is_popup),
      settings_(params.settings),
      extra_info_(params.extra_info),
      initial_url_(params.url),
      popup_size_(params.popup_size),
      request_context_(params.request_context),
      chromium_(params.request_context->storage()->chromium),
      page_events_(std::make_unique<PageEvents>(this)),
      script_dialogs_(std::make_unique<ScriptDialogs>(this)),
      file_dialogs_(std::make_unique<FileDialogs>(this)),
      printing_(std::make_unique<Printing>(this)),
      find_in_page_(std::make_unique<FindInPage>(this)),
      context_menus_(std::make_unique<ContextMenus>(this)),
      pointer_feedback_(std::make_unique<PointerFeedback>(this)),
      caret_reporter_(std::make_unique<CaretReporter>(this)),
      drag_source_(std::make_unique<DragSource>(this)),
      hang_monitor_(std::make_unique<HangMonitor>(this)),
      frame_sessions_(std::make_unique<FrameSessions>(this)),
      client_(params.client) {
  if (params.settings.windowless_frame_rate > 0) {
    frame_rate_ = std::clamp(params.settings.windowless_frame_rate, 1, 60);
  }
}

BrowserImpl::~BrowserImpl() = default;

CefRefPtr<BrowserImpl> BrowserImpl::Create(CreateParams params, bool sync) {
  CefRefPtr<BrowserImpl> browser =
      new BrowserImpl(BrowserRegistry::Get().NextBrowserId(), std::move(params));
  BrowserRegistry::Get().AddBrowser(browser);
  const std::string url = browser->initial_url_;
  if (!browser->Start(sync, url)) {
    BrowserRegistry::Get().RemoveBrowser(browser->id_);
    return nullptr;
  }
  return browser;
}

bool BrowserImpl::Start(bool sync, const std::string& url) {
  UpdateViewFromClient();
  if (sync) {
    // The caller asked to wait: the page exists when this returns.
    if (!chromium_->EnsureStarted(device_scale_factor())) {
      LOG(ERROR) << "CefBrowserHost::CreateBrowserSync: no Chromium to show "
                 << (initial_url_.empty() ? "the page" : initial_url_);
      return false;
    }
    return CreateTarget(true, url);
  }
  // Chromium may still be starting (it starts with the engine): the page is
  // made once it runs, and the engine UI thread goes on meanwhile.
  CefRefPtr<BrowserImpl> self(this);
  chromium_->WhenStarted(device_scale_factor(), [self, url](bool started) {
    if (!started) {
      LOG(ERROR) << "CefBrowserHost::CreateBrowser: no Chromium to show "
                 << (self->initial_url_.empty() ? "the page"
                                                : self->initial_url_);
      // A browser the client already has waits for the next try.
      if (self->after_created_) {
        self->Detach();
      } else {
        self->Destroy(false);
      }
      return;
    }
    // Closed while Chromium started.
    if (self->IsValid()) {
      self->CreateTarget(false, url);
    }
  });
  return true;
}

bool BrowserImpl::CreateTarget(bool sync, const std::string& url) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    chromium_scale_factor_ = chromium_->scale_factor();
  }
  if (!url.empty()) {
    Navigate(QString(), url);
  }
  std::shared_ptr<DevToolsSession> session = chromium_->session();
  if (!session) {
    // Died in the instant since it answered.
    LOG(ERROR) << "CefBrowserHost::CreateBrowser: Chromium went away";
    if (!sync) {
      Destroy(false);
    }
    return false;
  }
  const CefSize size = view_size();
  if (chromium_->uses_x11()) {
    // A window of its own in the engine's X server, of the view's size.
    int left = 0, top = 0;
    chromium_->NextWindowPlace(&left, &top);
    const QJsonObject visible = VisibleSize();
    const int width = visible.value(QLatin1String("width")).toInt();
    const int height = visible.value(QLatin1String("height")).toInt();
    if (sync) {
      const QString target =
          chromium_->OpenWindowSync(left, top, width, height);
      if (target.isEmpty()) {
        LOG(ERROR) << "CefBrowserHost::CreateBrowserSync: Chromium made no "
                      "page";
        return false;
      }
      OnTargetCreated(target);
      NotifyAfterCreated();
      return true;
    }
    CefRefPtr<BrowserImpl> self(this);
    chromium_->OpenWindow(
        left, top, width, height,
        [self](const QString& target, const QString& error) {
          if (target.isEmpty()) {
            LOG(ERROR) << "CefBrowserHost::CreateBrowser: Chromium made no "
                          "page: "
                       << error.toStdString();
            self->Destroy(false);
            return;
          }
          self->OnTargetCreated(target);
        });
    return true;
  }
  const QJsonObject params{{"url", "about:blank"},
                           {"width", size.width},
                           {"height", size.height}};
  if (sync) {
    const DevToolsReply reply =
        session->sendCommandSync(QStringLiteral("Target.createTarget"), params,
                                 QString(), kCreateTimeout);
    if (!reply.ok()) {
      LOG(ERROR) << "CefBrowserHost::CreateBrowserSync: Chromium made no page: "
                 << reply.error.value(QLatin1String("message"))
                        .toString()
                        .toStdString();
      return false;
    }
    OnTargetCreated(reply.result.value(QLatin1String("targetId")).toString());
    NotifyAfterCreated();
    return true;
  }
  CefRefPtr<BrowserImpl> self(this);
  session->sendCommand(
      QStringLiteral("Target.createTarget"), params, QString(),
      [self](const QJsonObject& result, const QJsonObject& error) {
        if (!error.isEmpty()) {
          LOG(ERROR) << "CefBrowserHost::CreateBrowser: Chromium made no page: "
                     << error.value(QLatin1String("message"))
                            .toString()
                            .toStdString();
          // A browser the client already has waits for the next try.
          if (self->after_created_) {
            self->Detach();
          } else {
            self->Destroy(false);
          }
          return;
        }
        self->OnTargetCreated(
            result.value(QLatin1String("targetId")).toString());
      });
  return true;
}

void BrowserImpl::CreatePopup(CefRefPtr<BrowserImpl> opener,
                              CreateParams params,
                              const QString& target_id,
                              const QString& session_id) {
  CefRefPtr<BrowserImpl> popup =
      new BrowserImpl(BrowserRegistry::Get().NextBrowserId(), std::move(params));
  BrowserRegistry::Get().AddBrowser(popup);
  popup->UpdateViewFromClient();
  {
    std::lock_guard<std::mutex> lock(popup->mutex_);
    popup->chromium_scale_factor_ = popup->chromium_->scale_factor();
  }
  popup->RegisterTarget(target_id);
  popup->Attach(session_id);
}

void BrowserImpl::RegisterTarget(const QString& target_id) {
  target_id_ = target_id;
  if (IsValid()) {
    chromium_->AddTarget(target_id, this);
    AddFrame(target_id, QString());
  }
}

void BrowserImpl::OnTargetCreated(const QString& target_id) {
  RegisterTarget(target_id);
  CefRefPtr<BrowserImpl> self(this);
  chromium_->WhenAttached(target_id,
                          [self](const QString& session_id, const QJsonObject&) {
                            self->Attach(session_id);
                          });
}

void BrowserImpl::Attach(const QString& session_id) {
  std::shared_ptr<DevToolsSession> session = chromium_->session();
  if (!session) {
    return;
  }
  if (!IsValid()) {
    // Closed while Chromium was still making the page.
    session->sendCommand(QStringLiteral("Target.closeTarget"),
                         QJsonObject{{"targetId", target_id_}}, QString(), {});
    return;
  }
  chromium_->AddSession(session_id, this);
  {
    std::lock_guard<std::mutex> lock(mutex_);
    devtools_ = session;
    session_id_ = session_id;
  }
  // Commands the renderer handles wait until it runs, while a navigation
  // would not: so the page's own commands go out only once every domain
  // answered, or the first load's events could be missed.
  CefRefPtr<BrowserImpl> self(this);
  auto pending = std::make_shared<int>(0);
  auto send = [&](const char* method, const QJsonObject& params) {
    ++*pending;
    session->sendCommand(QLatin1String(method), params, session_id,
                         [self, pending](const QJsonObject&, const QJsonObject&) {
                           if (--*pending == 0) {
                             self->FinishAttach();
                           }
                         });
  };
  send("Page.enable", {});
  // Headless Chromium shows no file chooser: the client is asked instead.
  send("Page.setInterceptFileChooserDialog", {{"enabled", true}});
  send("Runtime.enable", {});
  send("Network.enable", {});
  send("Log.enable", {});
  send("Emulation.setDeviceMetricsOverride", MetricsOverride());
  send("Emulation.setVisibleSize", VisibleSize());
  send("Emulation.setUserAgentOverride", UserAgentOverride());
  // Cross-site frames run in renderers of their own, reached through
  // sessions that this opens; held until they are set up like the page.
  send("Target.setAutoAttach", FrameSessions::AutoAttachParams());
  // Titles set by the page or its scripts come from a watcher in a world of
  // the engine's own, out of the page's reach.
  send("Runtime.addBinding", {{"name", PageEvents::kTitleBinding},
                              {"executionContextName", kEngineWorld}});
  send("Page.addScriptToEvaluateOnNewDocument",
       {{"source", PageEvents::TitleWatcherScript()},
        {"worldName", kEngineWorld}});
  send("Runtime.addBinding", {{"name", PageEvents::kTakeFocusBinding},
                              {"executionContextName", kEngineWorld}});
  send("Page.addScriptToEvaluateOnNewDocument",
       {{"source", PageEvents::TakeFocusWatcherScript()},
        {"worldName", kEngineWorld}});
  // Cursor, tooltips, the caret and context menus are told by watchers in
  // the engine's world: Chromium reports none of them over the protocol.
  const std::pair<const char*, QString> watchers[] = {
      {PointerFeedback::kBinding, PointerFeedback::WatcherScript()},
      {CaretReporter::kBinding, CaretReporter::WatcherScript()},
      {ContextMenus::kBinding, ContextMenus::WatcherScript()},
      {DragSource::kBinding, DragSource::WatcherScript()}};
  for (const auto& [binding, script] : watchers) {
    send("Runtime.addBinding",
         {{"name", binding}, {"executionContextName", kEngineWorld}});
    send("Page.addScriptToEvaluateOnNewDocument",
         {{"source", script}, {"worldName", kEngineWorld}});
  }
  // Drags the page starts go to the client's render handler.
  send("Input.setInterceptDrags", {{"enabled", true}});
  if (chromium_->uses_x11()) {
    send("Page.addScriptToEvaluateOnNewDocument",
         {{"source", ScriptSource("native_menu_blocker.js")},
          {"worldName", kEngineWorld}});
  }
  // Headless Chromium prints nothing: window.print() asks the client.
  send("Runtime.addBinding", {{"name", Printing::kPrintBinding}});
  send("Page.addScriptToEvaluateOnNewDocument",
       {{"source", Printing::PrintWrapperScript()}});

  if (NavigationPolicyFactory factory = GetNavigationPolicyFactory()) {
    navigation_policy_ = factory(this);
  }
  if (navigation_policy_) {
    navigation_policy_->OnAttached(this);
  }
  if (RenderSideFactory factory = GetRenderSideFactory()) {
    render_side_ = factory(this);
  }
  if (render_side_) {
    render_side_->OnAttached(this);
  }
  if (RenderObserverFactory factory = GetRenderObserverFactory()) {
    render_observer_ = factory(this);
  }
  if (render_observer_) {
    render_observer_->OnAttached(this);
  }
  send("Runtime.runIfWaitingForDebugger", {});
}

QString BrowserImpl::SessionForFrame(const QString& frame_id) const {
  return frame_sessions_->SessionFor(frame_id);
}

QJsonObject BrowserImpl::UserAgentOverride() const {
  QJsonObject agent{{"userAgent", chromium_->user_agent()}};
  const std::string languages = request_context_->accept_language_list();
  if (!languages.empty()) {
    agent.insert(QStringLiteral("acceptLanguage"),
                 QString::fromStdString(languages));
  }
  return agent;
}

void BrowserImpl::FinishAttach() {
  if (!IsValid()) {
    return;
  }
  {
    std::lock_guard<std::mutex> lock(mutex_);
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
  }
  NotifyAfterCreated();
}

void BrowserImpl::NotifyAfterCreated() {
  if (after_created_) {
    return;
  }
  after_created_ = true;
  CefRefPtr<CefClient> client = this->client();
  if (CefRefPtr<CefLifeSpanHandler> life_span =
          client ? client->GetLifeSpanHandler() : nullptr) {
    life_span->OnAfterCreated(this);
  }
  if (render_observer_) {
    render_observer_->OnAfterCreated(this);
  }
}

// --- Engine-side accessors ------------------------------------------------

DevToolsSession* BrowserImpl::devtools() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return destroyed_ ? nullptr : devtools_.get();
}

QString BrowserImpl::session_id() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return destroyed_ ? QString() : session_id_;
}

CefRefPtr<CefClient> BrowserImpl::client() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return client_;
}

CefRefPtr<CefRenderHandler> BrowserImpl::render_handler() const {
  CefRefPtr<CefClient> client = this->client();
  return client ? client->GetRenderHandler() : nullptr;
}

CefSize BrowserImpl::view_size() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return view_size_;
}

float BrowserImpl::device_scale_factor() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return device_scale_factor_;
}

float BrowserImpl::chromium_scale_factor() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return chromium_scale_factor_;
}

bool BrowserImpl::is_hidden() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return hidden_;
}

int BrowserImpl::windowless_frame_rate() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return frame_rate_;
}

CefPoint BrowserImpl::last_mouse_point() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return last_mouse_point_;
}

double BrowserImpl::css_to_view_scale() {
  return AppliedZoomFactor(GetZoomLevel());
}

void BrowserImpl::SendPageCommand(const QString& method,
                                  const QJsonObject& params,
                                  CommandCallback callback) {
  SendSessionCommand(QString(), method, params, std::move(callback));
}

void BrowserImpl::SendSessionCommand(const QString& session_id,
                                     const QString& method,
                                     const QJsonObject& params,
                                     CommandCallback callback) {
  CefRefPtr<BrowserImpl> self(this);
  auto fail = [self, callback](const QJsonObject& error) {
    PostUiTask([self, callback, error] {
      if (callback) {
        callback({}, error);
      }
    });
  };
  std::unique_lock<std::mutex> lock(mutex_);
  if (destroyed_ || gone_) {
    const QJsonObject error = destroyed_ ? NotAttachedError() : NoPageError();
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
  CommandCallback counted = [self, callback = std::move(callback)](
                                const QJsonObject& result,
                                const QJsonObject& error) {
    self->OnPageCommandDone(error);
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

void BrowserImpl::OnPageCommandDone(const QJsonObject& error) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    --commands_in_flight_;
    if (commands_in_flight_ == 0) {
      warned_command_limit_ = false;
    }
  }
  if (error.value(QLatin1String("code")).toInt() ==
          DevToolsSession::kTimeoutCode &&
      IsValid()) {
    hang_monitor_->OnCommandExpired();
  }
}

// --- Page state, kept for callers on any thread ---------------------------

CefRefPtr<FrameImpl> BrowserImpl::FindFrame(const QString& id) const {
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = frames_.find(id);
  return it == frames_.end() ? nullptr : it->second;
}

CefRefPtr<FrameImpl> BrowserImpl::AddFrame(const QString& id,
                                           const QString& parent_id) {
  CefRefPtr<FrameImpl> frame = new FrameImpl(this, id, parent_id);
  CefRefPtr<FrameImpl> replaced;
  std::lock_guard<std::mutex> lock(mutex_);
  if (destroyed_) {
    frame->Invalidate();
    return frame;
  }
  frames_[id] = frame;
  if (parent_id.isEmpty()) {
    // A page made anew after its Chromium went has a main frame of its own.
    if (main_frame_ && main_frame_ != frame &&
        frames_.erase(QString::fromStdString(
            main_frame_->GetIdentifier().ToString()))) {
      replaced = main_frame_;
      replaced->Invalidate();
    }
    main_frame_ = frame;
  }
  return frame;
}

void BrowserImpl::RemoveFrame(const QString& id) {
  CefRefPtr<FrameImpl> removed;
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = frames_.find(id);
  if (it == frames_.end() || it->second == main_frame_) {
    return;
  }
  removed = it->second;
  frames_.erase(it);
  removed->Invalidate();
}

void BrowserImpl::SetLoadState(bool loading) {
  std::lock_guard<std::mutex> lock(mutex_);
  loading_ = loading;
}

void BrowserImpl::SetHistory(const QJsonArray& entries, int current_index) {
  std::lock_guard<std::mutex> lock(mutex_);
  history_ = entries;
  history_index_ = current_index;
  has_document_ = true;
}

bool BrowserImpl::HistoryState(bool* can_go_back, bool* can_go_forward) const {
  std::lock_guard<std::mutex> lock(mutex_);
  *can_go_back = history_index_ > 0;
  *can_go_forward =
      history_index_ >= 0 && history_index_ + 1 < history_.size();
  return history_index_ >= 0;
}

void BrowserImpl::SetDocumentStatus(int http_status) {
  std::lock_guard<std::mutex> lock(mutex_);
  document_status_ = http_status;
}

// --- Events ---------------------------------------------------------------

void BrowserImpl::OnProtocolEvent(const QString& method,
                                  const QJsonObject& params,
                                  const QString& session_id) {
  if (!IsValid()) {
    return;
  }
  const bool from_frame = frame_sessions_->Owns(session_id);
  if (method.startsWith(QLatin1String("Target.")) && !session_id.isEmpty()) {
    // The page's and its frames' sessions hear of the frames' targets.
    const QJsonObject info =
        params.value(QLatin1String("targetInfo")).toObject();
    if (method == QLatin1String("Target.attachedToTarget")) {
      if (info.value(QLatin1String("type")).toString() ==
          QLatin1String("iframe")) {
        frame_sessions_->OnAttached(params);
      }
      return;
    }
    if (method == QLatin1String("Target.detachedFromTarget")) {
      frame_sessions_->OnDetached(
          params.value(QLatin1String("sessionId")).toString());
      return;
    }
    const QString about = params.value(QLatin1String("targetId"))
                              .toString(info.value(QLatin1String("targetId"))
                                            .toString());
    if (about != target_id_) {
      return;
    }
  }
  if (from_frame) {
    frame_sessions_->NoteEvent(session_id, method, params);
    // A frame's renderer is not the page's: CEF tells only of the latter.
    if (method == QLatin1String("Inspector.targetCrashed")) {
      return;
    }
  }
  if (method == QLatin1String("Fetch.requestPaused") && from_frame) {
    std::lock_guard<std::mutex> lock(mutex_);
    fetch_sessions_[params.value(QLatin1String("requestId")).toString()] =
        session_id;
  }
  event_session_ = from_frame ? session_id : QString();
  DispatchEvent(method, params);
  event_session_.clear();
}

void BrowserImpl::DispatchEvent(const QString& method,
                                const QJsonObject& params) {
  if (method == QLatin1String("Inspector.targetCrashed") ||
      method == QLatin1String("Target.targetCrashed")) {
    // The client's Terminate ended it: a kill, as CEF reports it.
    const bool killed = hang_monitor_->terminating();
    hang_monitor_->Reset();
    if (killed) {
      QJsonObject reported = params;
      reported.insert(QStringLiteral("status"), QStringLiteral("killed"));
      page_events_->Push(method, reported);
      return;
    }
  }
  if (navigation_policy_ &&
      navigation_policy_->OnPageEvent(this, method, params)) {
    return;
  }
  if (render_side_ && render_side_->OnPageEvent(this, method, params)) {
    return;
  }
  page_events_->Push(method, params, event_session_);
}

void BrowserImpl::OnChromiumGone(cef_termination_status_t status,
                                 int error_code,
                                 const std::string& description) {
  if (!IsValid()) {
    return;
  }
  CefRefPtr<BrowserImpl> self(this);
  // A close under way has no page left to ask; a browser still being made
  // fails as its creation would.
  const bool closing = asking_unload_ || closing_ || !after_created_;
  // Before the client hears of it: it may reload at once.
  Detach();
  if (closing) {
    Destroy(false);
    return;
  }
  CefRefPtr<CefClient> client = this->client();
  if (CefRefPtr<CefRequestHandler> request =
          client ? client->GetRequestHandler() : nullptr) {
    request->OnRenderProcessTerminated(this, status, error_code,
                                       "Chromium ended: " + description);
  }
}

void BrowserImpl::DropPage() {
  if (!IsValid() || IsGone()) {
    return;
  }
  CefRefPtr<BrowserImpl> self(this);
  const QString target = target_id_;
  std::shared_ptr<DevToolsSession> session = chromium_->session();
  // Its routes go first: the page's end is not the browser's.
  Detach();
  if (session && !target.isEmpty()) {
    session->sendCommand(QStringLiteral("Target.closeTarget"),
                         QJsonObject{{"targetId", target}}, QString(), {});
  }
  CefRefPtr<CefClient> client = this->client();
  if (CefRefPtr<CefRequestHandler> request =
          client ? client->GetRequestHandler() : nullptr) {
    request->OnRenderProcessTerminated(this, TS_PROCESS_WAS_KILLED, 0,
                                       "renderer killed");
  }
}

void BrowserImpl::Detach() {
  std::vector<QueuedCommand> queued;
  std::map<QString, CefRefPtr<FrameImpl>> subframes;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (destroyed_) {
      return;
    }
    gone_ = true;
    attached_ = false;
    devtools_.reset();
    session_id_.clear();
    fetch_sessions_.clear();
    queued.swap(queued_);
    // The main frame stays, so that its LoadURL can bring the page back.
    subframes.swap(frames_);
    if (main_frame_) {
      const QString main_id =
          QString::fromStdString(main_frame_->GetIdentifier().ToString());
      frames_[main_id] = main_frame_;
      subframes.erase(main_id);
    }
    loading_ = false;
  }
  for (QueuedCommand& command : queued) {
    PostUiTask([callback = std::move(command.callback)] {
      callback({}, NoPageError());
    });
  }
  for (auto& [id, frame] : subframes) {
    frame->Invalidate();
  }
  hang_monitor_->Reset();
  frame_sessions_->Clear();
  script_dialogs_->OnPageLeft();
  file_dialogs_->OnFrameNavigated(QString(), true);
  page_events_->Reset();
  DropPageHooks();
  chromium_->RemoveBrowser(this);
}

void BrowserImpl::DropPageHooks() {
  if (navigation_policy_) {
    navigation_policy_->OnDetached(this);
    navigation_policy_.reset();
  }
  if (render_side_) {
    render_side_->OnDetached(this);
    render_side_.reset();
  }
  if (render_observer_) {
    render_observer_->OnDetached(this);
    render_observer_.reset();
  }
}

void BrowserImpl::Revive(const std::string& url) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (destroyed_ || !gone_) {
      return;
    }
    gone_ = false;
  }
  target_gone_ = false;
  if (!Start(false, url)) {
    Detach();
  }
}

void BrowserImpl::OnTargetGone() {
  // Chromium tells both the detach and the end of the target.
  if (!IsValid() || target_gone_) {
    return;
  }
  target_gone_ = true;
  CefRefPtr<BrowserImpl> self(this);
  // The page allowed a close we asked for: DoClose may still leave the
  // browser to the next close request, though its page is gone.
  const bool asked = asking_unload_;
  asking_unload_ = false;
  closing_ = true;
  bool deferred = false;
  CefRefPtr<CefClient> client = this->client();
  if (CefRefPtr<CefLifeSpanHandler> life_span =
          client ? client->GetLifeSpanHandler() : nullptr) {
    deferred = life_span->DoClose(this);
  }
  if (asked && deferred) {
    close_deferred_ = true;
    return;
  }
  Destroy(false);
}

// --- Closing --------------------------------------------------------------

void BrowserImpl::CloseBrowser(bool force_close) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, force_close] { self->CloseOnUiThread(force_close); });
}

bool BrowserImpl::TryCloseBrowser() {
  if (!OnUiThread()) {
    LOG(ERROR) << "CefBrowserHost::TryCloseBrowser must be called on the UI "
                  "thread";
    return false;
  }
  CefRefPtr<BrowserImpl> self(this);
  CloseOnUiThread(false);
  return !IsValid();
}

void BrowserImpl::CloseOnUiThread(bool force) {
  if (!IsValid()) {
    return;
  }
  if (close_deferred_) {
    Destroy(!target_gone_);
    return;
  }
  if (closing_ || (!force && (asking_unload_ || AskUnload()))) {
    return;
  }
  asking_unload_ = false;
  closing_ = true;
  CefRefPtr<CefClient> client = this->client();
  CefRefPtr<CefLifeSpanHandler> life_span =
      client ? client->GetLifeSpanHandler() : nullptr;
  // Windowless: false destroys the browser now; true leaves the close to
  // the application's next close request.
  if (life_span && life_span->DoClose(this)) {
    close_deferred_ = true;
    return;
  }
  Destroy(true);
}

bool BrowserImpl::AskUnload() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!attached_) {
      return false;
    }
  }
  // A dialog holding the page would keep beforeunload from running.
  script_dialogs_->BeforeLeaving(false);
  asking_unload_ = true;
  SendUnloadRequest(++unload_request_);
  WatchUnload();
  return true;
}

void BrowserImpl::SendUnloadRequest(int request) {
  CefRefPtr<BrowserImpl> self(this);
  SendPageCommand(QStringLiteral("Page.close"), {},
                  [self, request](const QJsonObject&, const QJsonObject& error) {
                    if (!error.isEmpty() && self->asking_unload_ &&
                        self->unload_request_ == request) {
                      self->CloseOnUiThread(true);
                    }
                  });
  // Chromium drops a Page.close that comes while the page still settles a
  // beforeunload answered a moment ago; asking again is harmless, as it
  // joins one under way.
  PostUiTask(
      [self, request] {
        if (self->IsValid() && self->asking_unload_ &&
            self->unload_request_ == request &&
            !self->script_dialogs_->waiting_for_unload_answer()) {
          self->SendUnloadRequest(request);
        }
      },
      kUnloadRetryMs);
}

void BrowserImpl::WatchUnload() {
  const int request = unload_request_;
  CefRefPtr<BrowserImpl> self(this);
  PostUiTask(
      [self, request] {
        if (!self->IsValid() || !self->asking_unload_ ||
            self->unload_request_ != request ||
            self->script_dialogs_->waiting_for_unload_answer()) {
          return;
        }
        LOG(WARNING) << "The page neither answered nor went when asked to "
                        "close: closing it without asking";
        self->CloseOnUiThread(true);
      },
      kUnloadTimeoutMs);
}

void BrowserImpl::OnUnloadAnswered(bool allowed) {
  // Otherwise the dialog was a navigation's.
  if (!IsValid() || !asking_unload_) {
    return;
  }
  if (!allowed) {
    asking_unload_ = false;
    return;
  }
  // The unload handlers run and the target goes; watched anew, as the
  // client may have taken long to answer.
  ++unload_request_;
  WatchUnload();
}

void BrowserImpl::Destroy(bool close_target) {
  std::vector<QueuedCommand> queued;
  // The frames hold the browser: dropping them ends the cycle.
  std::map<QString, CefRefPtr<FrameImpl>> frames;
  CefRefPtr<FrameImpl> main_frame;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (destroyed_) {
      return;
    }
    destroyed_ = true;
    queued.swap(queued_);
    frames.swap(frames_);
    main_frame.swap(main_frame_);
  }
  CefRefPtr<BrowserImpl> self(this);
  for (QueuedCommand& command : queued) {
    PostUiTask([callback = std::move(command.callback)] {
      callback({}, NotAttachedError());
    });
  }
  for (auto& [id, frame] : frames) {
    frame->Invalidate();
  }
  asking_unload_ = false;
  hang_monitor_->Reset();
  frame_sessions_->Clear();
  CloseInspector();
  script_dialogs_->OnPageLeft();
  file_dialogs_->OnBrowserClosed();
  printing_->Release();
  context_menus_->Release();
  page_events_->Clear();
  DropPageHooks();
  if (close_target && !target_id_.isEmpty()) {
    if (std::shared_ptr<DevToolsSession> session = chromium_->session()) {
      session->sendCommand(QStringLiteral("Target.closeTarget"),
                           QJsonObject{{"targetId", target_id_}}, QString(),
                           {});
    }
  }
  chromium_->RemoveBrowser(this);
  CefRefPtr<CefClient> client = this->client();
  if (CefRefPtr<CefLifeSpanHandler> life_span =
          client ? client->GetLifeSpanHandler() : nullptr) {
    life_span->OnBeforeClose(this);
  }
  BrowserRegistry::Get().RemoveBrowser(id_);
  // As CEF does: a closed browser lets go of its client, which may hold
  // callbacks that hold the browser (a menu never answered).
  CefRefPtr<CefClient> released;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    released.swap(client_);
  }
}

void BrowserImpl::ReleaseAfterShutdown() {
  std::map<QString, CefRefPtr<FrameImpl>> frames;
  CefRefPtr<CefClient> client;
  CefRefPtr<FrameImpl> main_frame;
  std::vector<QueuedCommand> queued;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    destroyed_ = true;
    frames.swap(frames_);
    client.swap(client_);
    main_frame.swap(main_frame_);
    queued.swap(queued_);
    drag_data_ = nullptr;
    devtools_.reset();
  }
  CloseInspector(false);
  page_events_->Clear();
  script_dialogs_->Release();
  file_dialogs_->Release();
  printing_->Release();
  context_menus_->Release();
  navigation_policy_.reset();
  render_side_.reset();
  render_observer_.reset();
}

bool BrowserImpl::IsGone() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return gone_ && !destroyed_;
}

bool BrowserImpl::ReviveAtCurrentUrl() {
  if (!IsGone()) {
    return false;
  }
  CefRefPtr<FrameImpl> main;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    main = main_frame_;
  }
  std::string url = main ? main->GetURL().ToString() : std::string();
  Revive(url.empty() ? "about:blank" : url);
  return true;
}

// --- CefBrowser -----------------------------------------------------------

bool BrowserImpl::IsValid() {
  std::lock_guard<std::mutex> lock(mutex_);
  return !destroyed_;
}

CefRefPtr<CefBrowserHost> BrowserImpl::GetHost() {
  return this;
}

bool BrowserImpl::CanGoBack() {
  bool back = false;
  bool forward = false;
  HistoryState(&back, &forward);
  return back;
}

bool BrowserImpl::CanGoForward() {
  bool back = false;
  bool forward = false;
  HistoryState(&back, &forward);
  return forward;
}

void BrowserImpl::GoBack() {
  NavigateHistory(-1);
}

void BrowserImpl::GoForward() {
  NavigateHistory(1);
}

void BrowserImpl::NavigateHistory(int offset) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, offset] {
    QJsonObject entry;
    {
      std::lock_guard<std::mutex> lock(self->mutex_);
      const int index = self->history_index_ + offset;
      if (self->history_index_ < 0 || index < 0 ||
          index >= self->history_.size()) {
        return;
      }
      entry = self->history_.at(index).toObject();
    }
    self->script_dialogs_->BeforeLeaving(false);
    self->page_events_->ExpectTransition(static_cast<cef_transition_type_t>(
        TransitionFromProtocol(
            entry.value(QLatin1String("transitionType")).toString()) |
        TT_FORWARD_BACK_FLAG));
    self->SendPageCommand(
        QStringLiteral("Page.navigateToHistoryEntry"),
        QJsonObject{{"entryId", entry.value(QLatin1String("id")).toInt()}});
  });
}

bool BrowserImpl::IsLoading() {
  std::lock_guard<std::mutex> lock(mutex_);
  return loading_;
}

void BrowserImpl::Reload() {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self] {
    if (self->ReviveAtCurrentUrl()) {
      return;
    }
    self->script_dialogs_->BeforeLeaving(true);
    self->page_events_->ExpectTransition(TT_RELOAD);
    self->SendPageCommand(QStringLiteral("Page.reload"),
                          QJsonObject{{"ignoreCache", false}});
  });
}

void BrowserImpl::ReloadIgnoreCache() {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self] {
    if (self->ReviveAtCurrentUrl()) {
      return;
    }
    self->script_dialogs_->BeforeLeaving(true);
    self->page_events_->ExpectTransition(TT_RELOAD);
    self->SendPageCommand(QStringLiteral("Page.reload"),
                          QJsonObject{{"ignoreCache", true}});
  });
}

void BrowserImpl::StopLoad() {
  SendPageCommand(QStringLiteral("Page.stopLoading"), {});
}

int BrowserImpl::GetIdentifier() {
  return id_;
}

bool BrowserImpl::IsSame(CefRefPtr<CefBrowser> that) {
  return that && that->GetIdentifier() == id_;
}

bool BrowserImpl::IsPopup() {
  return is_popup_;
}

bool BrowserImpl::HasDocument() {
  std::lock_guard<std::mutex> lock(mutex_);
  return has_document_;
}

CefRefPtr<CefFrame> BrowserImpl::GetMainFrame() {
  std::lock_guard<std::mutex> lock(mutex_);
  return main_frame_.get();
}

CefRefPtr<CefFrame> BrowserImpl::GetFocusedFrame() {
  return GetMainFrame();
}

CefRefPtr<CefFrame> BrowserImpl::GetFrameByIdentifier(
    const CefString& identifier) {
  return FindFrame(QString::fromStdString(identifier.ToString())).get();
}

CefRefPtr<CefFrame> BrowserImpl::GetFrameByName(const CefString& name) {
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& [id, frame] : frames_) {
    if (frame->GetName() == name) {
      return frame.get();
    }
  }
  return nullptr;
}

size_t BrowserImpl::GetFrameCount() {
  std::lock_guard<std::mutex> lock(mutex_);
  return frames_.size();
}

void BrowserImpl::GetFrameIdentifiers(std::vector<CefString>& identifiers) {
  identifiers.clear();
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& [id, frame] : frames_) {
    identifiers.push_back(id.toStdString());
  }
}

void BrowserImpl::GetFrameNames(std::vector<CefString>& names) {
  names.clear();
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& [id, frame] : frames_) {
    names.push_back(frame->GetName());
  }
}

// --- Scripts and navigation -----------------------------------------------

void BrowserImpl::Navigate(const QString& frame_id, const std::string& url) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, frame_id, url] {
    if (frame_id.isEmpty() && self->IsGone()) {
      self->Revive(url);
      return;
    }
    const QString target_url = QString::fromStdString(url);
    if (self->navigation_policy_ &&
        self->navigation_policy_->OnNavigate(self.get(), frame_id, target_url)) {
      return;
    }
    self->script_dialogs_->BeforeLeaving(false);
    QJsonObject params{{"url", target_url}};
    if (frame_id.isEmpty()) {
      self->page_events_->ExpectTransition(TT_EXPLICIT);
    } else {
      params.insert(QStringLiteral("frameId"), frame_id);
    }
    self->SendSessionCommand(
        self->frame_sessions_->SessionFor(frame_id),
        QStringLiteral("Page.navigate"), params,
        [self, frame_id, target_url](const QJsonObject& result,
                                     const QJsonObject& error) {
          if (!self->IsValid()) {
            return;
          }
          self->page_events_->Push(
              QStringLiteral("Brovia.navigated"),
              QJsonObject{{"url", target_url},
                          {"frameId", frame_id},
                          {"result", result},
                          {"error", error}});
        });
  });
}

void BrowserImpl::Evaluate(const QString& frame_id,
                           const QString& expression,
                           EvaluateCallback callback) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, frame_id, expression, callback] {
    QJsonObject params{{"expression", expression}, {"returnByValue", true}};
    if (!frame_id.isEmpty() && frame_id != self->target_id_) {
      const int context = self->page_events_->ContextFor(frame_id);
      if (!context) {
        if (callback) {
          callback(QJsonValue(), QStringLiteral("The frame has no document"));
        }
        return;
      }
      params.insert(QStringLiteral("contextId"), context);
    }
    self->SendSessionCommand(
        self->frame_sessions_->SessionFor(frame_id),
        QStringLiteral("Runtime.evaluate"), params,
        [callback](const QJsonObject& result, const QJsonObject& error) {
          if (!callback) {
            return;
          }
          if (!error.isEmpty()) {
            callback(QJsonValue(),
                     error.value(QLatin1String("message")).toString());
          } else if (result.contains(QLatin1String("exceptionDetails"))) {
            callback(QJsonValue(), result.value(QLatin1String("exceptionDetails"))
                                       .toObject()
                                       .value(QLatin1String("text"))
                                       .toString());
          } else {
            callback(result.value(QLatin1String("result"))
                         .toObject()
                         .value(QLatin1String("value")),
                     QString());
          }
        });
  });
}

void BrowserImpl::ExecuteJavaScript(const QString& frame_id,
                                    const QString& code,
                                    const QString& script_url,
                                    int start_line) {
  // Blank lines in front make error line numbers count from |start_line|.
  QString expression =
      QString(std::clamp(start_line - 1, 0, 100000), QChar('\n')) + code;
  if (!script_url.isEmpty()) {
    expression += QStringLiteral("\n//# sourceURL=") + script_url;
  }
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, frame_id, expression] {
    QJsonObject params{{"expression", expression}, {"returnByValue", false}};
    if (!frame_id.isEmpty() && frame_id != self->target_id_) {
      const int context = self->page_events_->ContextFor(frame_id);
      if (!context) {
        return;
      }
      params.insert(QStringLiteral("contextId"), context);
    }
    self->SendSessionCommand(
        self->frame_sessions_->SessionFor(frame_id),
        QStringLiteral("Runtime.evaluate"), params,
        [self](const QJsonObject& result, const QJsonObject& error) {
          // Like an inline script: an uncaught exception is a console error.
          if (self->IsValid() &&
              result.contains(QLatin1String("exceptionDetails"))) {
            self->page_events_->Push(
                QStringLiteral("Runtime.exceptionThrown"),
                QJsonObject{{"exceptionDetails",
                             result.value(QLatin1String("exceptionDetails"))}});
          }
        });
  });
}

void BrowserImpl::RunEditCommand(const char* command) {
  SendPageCommand(
      QStringLiteral("Input.dispatchKeyEvent"),
      QJsonObject{{"type", "rawKeyDown"},
                  {"commands", QJsonArray{QLatin1String(command)}}});
}

// --- CefBrowserHost -------------------------------------------------------

CefRefPtr<CefBrowser> BrowserImpl::GetBrowser() {
  return this;
}

void BrowserImpl::SetFocus(bool focus) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, focus] { self->SetFocusOnUiThread(focus); });
}

void BrowserImpl::SetFocusOnUiThread(bool focus) {
  // A headless page has no window focus of its own: emulating it is what
  // makes document.hasFocus() and focus events follow the host.
  SendPageCommand(QStringLiteral("Emulation.setFocusEmulationEnabled"),
                  QJsonObject{{"enabled", focus}});
  if (focus) {
    SendPageCommand(QStringLiteral("Page.bringToFront"), {});
  }
}

CefWindowHandle BrowserImpl::GetWindowHandle() {
  return kNullWindowHandle;
}

CefWindowHandle BrowserImpl::GetOpenerWindowHandle() {
  return kNullWindowHandle;
}

bool BrowserImpl::HasView() {
  return false;
}

CefRefPtr<CefClient> BrowserImpl::GetClient() {
  return client();
}

CefRefPtr<CefRequestContext> BrowserImpl::GetRequestContext() {
  return request_context_.get();
}

bool BrowserImpl::CanZoom(cef_zoom_command_t command) {
  const double factor = ZoomFactor(GetZoomLevel());
  switch (command) {
    case CEF_ZOOM_COMMAND_OUT:
      return factor > kZoomFactors[0] + 1e-6;
    case CEF_ZOOM_COMMAND_RESET:
      return std::fabs(factor - 1.0) > 1e-6;
    case CEF_ZOOM_COMMAND_IN:
      return factor < kZoomFactors[std::size(kZoomFactors) - 1] - 1e-6;
  }
  return false;
}

void BrowserImpl::Zoom(cef_zoom_command_t command) {
  CefRefPtr<BrowserImpl> self(this);
  // On the UI thread, so that commands from elsewhere step in turn.
  RunOnUiThread([self, command] {
    const double factor = ZoomFactor(self->GetZoomLevel());
    double next = 1.0;
    if (command == CEF_ZOOM_COMMAND_IN) {
      next = kZoomFactors[std::size(kZoomFactors) - 1];
      for (double step : kZoomFactors) {
        if (step > factor + 1e-6) {
          next = step;
          break;
        }
      }
    } else if (command == CEF_ZOOM_COMMAND_OUT) {
      next = kZoomFactors[0];
      for (double step : kZoomFactors) {
        if (step < factor - 1e-6) {
          next = step;
        }
      }
    }
    self->SetZoomLevel(ZoomLevel(next));
  });
}

double BrowserImpl::GetDefaultZoomLevel() {
  return 0.0;
}

double BrowserImpl::GetZoomLevel() {
  std::lock_guard<std::mutex> lock(mutex_);
  return zoom_level_;
}

// The protocol has no page zoom: it is made of the metrics override, which
// the page keeps across navigations.
void BrowserImpl::SetZoomLevel(double zoomLevel) {
  if (!std::isfinite(zoomLevel)) {
    LOG(ERROR) << "CefBrowserHost::SetZoomLevel: not a zoom level";
    return;
  }
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (zoom_level_ == zoomLevel) {
      return;
    }
    zoom_level_ = zoomLevel;
  }
  CefRefPtr<BrowserImpl> self(this);
  // The task reads the level when it runs: the last one set wins.
  RunOnUiThread([self] {
    if (!self->IsValid()) {
      return;
    }
    // The metrics override resets the visible size: both go again.
    self->SendPageCommand(QStringLiteral("Emulation.setDeviceMetricsOverride"),
                          self->MetricsOverride());
    self->SendPageCommand(QStringLiteral("Emulation.setVisibleSize"),
                          self->VisibleSize());
    if (self->render_observer_) {
      self->render_observer_->OnViewChanged(self.get());
    }
  });
}

void BrowserImpl::RunFileDialog(FileDialogMode mode,
                                const CefString& title,
                                const CefString& default_file_path,
                                const std::vector<CefString>& accept_filters,
                                CefRefPtr<CefRunFileDialogCallback> callback) {
  if (!callback) {
    LOG(ERROR) << "CefBrowserHost::RunFileDialog: no callback";
    return;
  }
  CefRefPtr<BrowserImpl> self(this);
  const CefString dialog_title = title;
  const CefString path = default_file_path;
  // Later even on the UI thread: CEF starts the dialog asynchronously.
  PostUiTask([self, mode, dialog_title, path, accept_filters, callback] {
    self->file_dialogs_->Run(mode, dialog_title, path, accept_filters,
                             callback);
  });
}

void BrowserImpl::StartDownload(const CefString& url) {
  CefRefPtr<BrowserImpl> self(this);
  const QString target = QString::fromStdString(url.ToString());
  // A link with the download attribute, as if the user followed it: the
  // download is Chromium's, with the page's cookies.
  RunOnUiThread([self, target] {
    if (!self->IsValid()) {
      return;
    }
    if (!self->download_world_) {
      self->download_world_ = std::make_unique<EngineWorld>(
          self.get(), QStringLiteral("__broviaDownload"));
    }
    const QString quoted = QString::fromUtf8(
        QJsonDocument(QJsonArray{target}).toJson(QJsonDocument::Compact));
    self->download_world_->Evaluate(
        QStringLiteral("(%1)(%2)").arg(ScriptSource("start_download.js"), quoted),
        [target](const QJsonValue&, const QString& error) {
          if (!error.isEmpty()) {
            LOG(WARNING) << "CefBrowserHost::StartDownload(" << target.toStdString()
                         << "): " << error.toStdString();
          }
        });
  });
}

void BrowserImpl::DownloadImage(const CefString& image_url,
                                bool is_favicon,
                                uint32_t max_image_size,
                                bool bypass_cache,
                                CefRefPtr<CefDownloadImageCallback> callback) {
  if (callback) {
    const CefString url = image_url;
    PostUiTask(
        [callback, url] { callback->OnDownloadImageFinished(url, 0, nullptr); });
  }
}

void BrowserImpl::Print() {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self] { self->printing_->Start(); });
}

void BrowserImpl::PrintToPDF(const CefString& path,
                             const CefPdfPrintSettings& settings,
                             CefRefPtr<CefPdfPrintCallback> callback) {
  CefRefPtr<BrowserImpl> self(this);
  const QString file = QString::fromStdString(path.ToString());
  // CefPdfPrintSettings owns its strings: copied for the UI thread.
  auto copy = std::make_shared<CefPdfPrintSettings>(settings);
  RunOnUiThread([self, file, copy, callback] {
    self->printing_->PrintToPDF(file, *copy, callback);
  });
}

void BrowserImpl::Find(const CefString& searchText,
                       bool forward,
                       bool matchCase,
                       bool findNext) {
  CefRefPtr<BrowserImpl> self(this);
  const QString text = QString::fromStdString(searchText.ToString());
  RunOnUiThread([self, text, forward, matchCase, findNext] {
    self->find_in_page_->Find(text, forward, matchCase, findNext);
  });
}

void BrowserImpl::StopFinding(bool clearSelection) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread(
      [self, clearSelection] { self->find_in_page_->Stop(clearSelection); });
}

void BrowserImpl::ShowDevTools(const CefWindowInfo& windowInfo,
                               CefRefPtr<CefClient> client,
                               const CefBrowserSettings& settings,
                               const CefPoint& inspect_element_at) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, client] {
    if (self->devtools_browser_ || self->closing_ || self->target_id_.isEmpty()) {
      return;
    }
    std::string why;
    if (!DevToolsWindow::DisplayReachable(&why)) {
      // Once a process: a host may ask on every click.
      static bool told = false;
      LOG_IF(WARNING, !told) << "CefBrowserHost::ShowDevTools: " << why
                             << "; no inspector window is opened";
      told = true;
      return;
    }
    // The inspector holds its browser until it closes, and never longer.
    self->devtools_browser_ = DevToolsBrowser::Open(
        self->chromium_->session(), self->target_id_,
        client ? client : self->client(), [self] {
          self->devtools_browser_ = nullptr;
          self->has_devtools_ = false;
        });
    self->has_devtools_ = self->devtools_browser_ != nullptr;
    if (CefRefPtr<DevToolsBrowser> inspector = self->devtools_browser_) {
      inspector->NotifyCreated();
    }
  });
}

void BrowserImpl::CloseDevTools() {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self] { self->CloseInspector(); });
}

// Engine UI thread.
void BrowserImpl::CloseInspector(bool tell_client) {
  CefRefPtr<DevToolsBrowser> inspector;
  inspector.swap(devtools_browser_);
  has_devtools_ = false;
  if (inspector) {
    inspector->Close(tell_client);
  }
}

bool BrowserImpl::HasDevTools() {
  return has_devtools_;
}

bool BrowserImpl::SendDevToolsMessage(const void* message,
                                      size_t message_size) {
  return false;
}

int BrowserImpl::ExecuteDevToolsMethod(int message_id,
                                       const CefString& method,
                                       CefRefPtr<CefDictionaryValue> params) {
  return 0;
}

CefRefPtr<CefRegistration> BrowserImpl::AddDevToolsMessageObserver(
    CefRefPtr<CefDevToolsMessageObserver> observer) {
  return nullptr;
}

void BrowserImpl::GetNavigationEntries(
    CefRefPtr<CefNavigationEntryVisitor> visitor,
    bool current_only) {
  if (!visitor) {
    return;
  }
  QJsonArray entries;
  int current = -1;
  int status = 0;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    entries = history_;
    current = history_index_;
    status = document_status_;
  }
  const int total = entries.size();
  for (int index = 0; index < total; ++index) {
    if (current_only && index != current) {
      continue;
    }
    CefRefPtr<CefNavigationEntry> entry = new NavigationEntryImpl(
        entries.at(index).toObject(), index == current ? status : 0);
    if (!visitor->Visit(entry, index == current, index, total)) {
      break;
    }
  }
}

CefRefPtr<CefNavigationEntry> BrowserImpl::GetVisibleNavigationEntry() {
  std::lock_guard<std::mutex> lock(mutex_);
  if (history_index_ < 0 || history_index_ >= history_.size()) {
    return nullptr;
  }
  return new NavigationEntryImpl(history_.at(history_index_).toObject(),
                                 document_status_);
}

void BrowserImpl::ReplaceMisspelling(const CefString& word) {}

void BrowserImpl::AddWordToDictionary(const CefString& word) {}

bool BrowserImpl::IsWindowRenderingDisabled() {
  return true;
}

// --- View -----------------------------------------------------------------

bool BrowserImpl::UpdateViewFromClient() {
  CefSize size(kDefaultWidth, kDefaultHeight);
  float scale = 1;
  if (CefRefPtr<CefRenderHandler> handler = render_handler()) {
    CefRect rect;
    handler->GetViewRect(this, rect);
    if (rect.width > 0 && rect.height > 0) {
      size = CefSize(rect.width, rect.height);
    }
    CefScreenInfo screen;
    if (handler->GetScreenInfo(this, screen) &&
        screen.device_scale_factor > 0) {
      scale = screen.device_scale_factor;
    }
  } else if (popup_size_.width > 0 && popup_size_.height > 0) {
    size = popup_size_;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  const bool changed = size != view_size_ || scale != device_scale_factor_;
  view_size_ = size;
  device_scale_factor_ = scale;
  return changed;
}

namespace {

// Chromium rasterizes at its process's factor only; a page of another factor
// is laid out at its own and zoomed by the ratio into a view of the right
// number of device pixels.
double PageZoom(float scale, float painted) {
  return painted > 0 ? static_cast<double>(scale) / painted : 1.0;
}

}  // namespace

QJsonObject BrowserImpl::MetricsOverride() {
  const CefSize size = view_size();
  const float scale = device_scale_factor();
  const float painted = chromium_scale_factor();
  // Page zoom as Chromium's: the page is laid out smaller by the factor and
  // at a ratio larger by it, into the same visible size.
  const double zoom = AppliedZoomFactor(GetZoomLevel());
  if (scale > painted && !warned_soft_scale_) {
    // Above the process's factor the zoom enlarges.
    warned_soft_scale_ = true;
    LOG(WARNING) << "Device scale factor " << scale
                 << " is above the factor its Chromium paints at (" << painted
                 << "): the page is enlarged and less sharp";
  }
  // Width 0 would end the override.
  QJsonObject metrics{{"width", std::max(1, qRound(size.width / zoom))},
                      {"height", std::max(1, qRound(size.height / zoom))},
                      {"deviceScaleFactor", scale * zoom},
                      {"mobile", false},
                      {"scale", PageZoom(scale, painted) * zoom}};
  if (zoom != 1.0) {
    // Chromium's zoom leaves scrollbars their size on screen, while classic
    // ones would grow with the ratio here and crowd the view: a zoomed page
    // gets overlay scrollbars, which take no room.
    metrics.insert(QStringLiteral("scrollbarType"), QStringLiteral("overlay"));
  }
  return metrics;
}

QJsonObject BrowserImpl::ToPagePoint(QJsonObject params) const {
  // The protocol takes input points in the zoomed view's pixels; the page
  // divides them by the whole scale, its zoom included.
  const double zoom = PageZoom(device_scale_factor(), chromium_scale_factor());
  if (zoom != 1.0) {
    for (const char* key : {"x", "y"}) {
      params.insert(QLatin1String(key), params.value(key).toDouble() * zoom);
    }
  }
  return params;
}

QJsonObject BrowserImpl::VisibleSize() const {
  const CefSize size = view_size();
  const double zoom = PageZoom(device_scale_factor(), chromium_scale_factor());
  return QJsonObject{{"width", qRound(size.width * zoom)},
                     {"height", qRound(size.height * zoom)}};
}

void BrowserImpl::WasResized() {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self] {
    if (!self->IsValid() || !self->UpdateViewFromClient()) {
      return;
    }
    self->SendPageCommand(QStringLiteral("Emulation.setDeviceMetricsOverride"),
                          self->MetricsOverride());
    self->SendPageCommand(QStringLiteral("Emulation.setVisibleSize"),
                          self->VisibleSize());
    if (self->render_observer_) {
      self->render_observer_->OnViewChanged(self.get());
    }
  });
}

void BrowserImpl::NotifyScreenInfoChanged() {
  WasResized();
}

void BrowserImpl::WasHidden(bool hidden) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    hidden_ = hidden;
  }
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, hidden] {
    if (self->render_observer_) {
      self->render_observer_->OnVisibilityChanged(self.get(), hidden);
    }
  });
}

void BrowserImpl::Invalidate(PaintElementType type) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, type] {
    if (self->render_observer_) {
      self->render_observer_->OnInvalidate(self.get(), type);
    }
  });
}

void BrowserImpl::SendExternalBeginFrame() {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self] {
    if (self->render_observer_) {
      self->render_observer_->OnExternalBeginFrame(self.get());
    }
  });
}

int BrowserImpl::GetWindowlessFrameRate() {
  return windowless_frame_rate();
}

void BrowserImpl::SetWindowlessFrameRate(int frame_rate) {
  const int clamped = std::clamp(frame_rate, 1, 60);
  {
    std::lock_guard<std::mutex> lock(mutex_);
    frame_rate_ = clamped;
  }
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, clamped] {
    if (self->render_observer_) {
      self->render_observer_->OnFrameRateChanged(self.get(), clamped);
    }
  });
}

void BrowserImpl::NotifyMoveOrResizeStarted() {}

// --- Input ----------------------------------------------------------------

void BrowserImpl::SendKeyEvent(const CefKeyEvent& event) {
  if (chromium_->uses_x11() && event.type != KEYEVENT_KEYUP) {
    CefRefPtr<BrowserImpl> self(this);
    RunOnUiThread([self] {
      if (self->render_observer_) {
        self->render_observer_->OnKeyInput(self.get());
      }
    });
  }
  SendPageCommand(QStringLiteral("Input.dispatchKeyEvent"),
                  InputTranslator::KeyEvent(event));
}

void BrowserImpl::SendMouseInput(const CefMouseEvent& event,
                                 int button,
                                 bool up,
                                 int wheel_x,
                                 int wheel_y,
                                 QJsonObject params,
                                 std::function<void()> after) {
  if (!chromium_->uses_x11()) {
    SendPageCommand(QStringLiteral("Input.dispatchMouseEvent"), params);
    if (after) {
      after();
    }
    return;
  }
  // An open drop-down of a full Chromium takes its own input, through the
  // X server: the decision is the renderer's, on the engine UI thread.
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, event, button, up, wheel_x, wheel_y,
                 params = std::move(params), after = std::move(after)] {
    if (self->render_observer_ &&
        self->render_observer_->OnMouseEvent(self.get(), event, button, up,
                                             wheel_x, wheel_y)) {
      return;
    }
    self->SendPageCommand(QStringLiteral("Input.dispatchMouseEvent"), params);
    if (after) {
      after();
    }
  });
}

void BrowserImpl::SendMouseClickEvent(const CefMouseEvent& event,
                                      MouseButtonType type,
                                      bool mouseUp,
                                      int clickCount) {
  SendMouseInput(event, type == MBT_LEFT ? 1 : type == MBT_MIDDLE ? 2 : 3, mouseUp, 0, 0,
                 ToPagePoint(InputTranslator::MouseClick(event, type, mouseUp,
                                                         clickCount)),
                 {});
}

void BrowserImpl::SendMouseMoveEvent(const CefMouseEvent& event,
                                     bool mouseLeave) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    last_mouse_point_ = CefPoint(event.x, event.y);
  }
  SendMouseInput(event, 0, false, 0, 0,
                 ToPagePoint(InputTranslator::MouseMove(event, mouseLeave)),
                 {});
}

void BrowserImpl::SendMouseWheelEvent(const CefMouseEvent& event,
                                      int deltaX,
                                      int deltaY) {
  SendMouseInput(
      event, 0, false, deltaX, deltaY,
      ToPagePoint(InputTranslator::MouseWheel(event, deltaX, deltaY)), {});
}

QJsonArray BrowserImpl::TouchPoints() const {
  QJsonArray points;
  for (const auto& [id, point] : touch_points_) {
    points.append(point);
  }
  return points;
}

void BrowserImpl::SendTouchEvent(const CefTouchEvent& event) {
  // The protocol wants every point still down in each event; a release
  // ends the touch only when it was the last point.
  QString type;
  QJsonArray points;
  const QJsonObject point = ToPagePoint(InputTranslator::TouchPoint(event));
  {
    std::lock_guard<std::mutex> lock(mutex_);
    switch (event.type) {
      case CEF_TET_PRESSED:
        touch_points_[event.id] = point;
        type = QStringLiteral("touchStart");
        break;
      case CEF_TET_MOVED:
        touch_points_[event.id] = point;
        type = QStringLiteral("touchMove");
        break;
      case CEF_TET_RELEASED:
        touch_points_.erase(event.id);
        type = touch_points_.empty() ? QStringLiteral("touchEnd")
                                     : QStringLiteral("touchMove");
        break;
      case CEF_TET_CANCELLED:
        touch_points_.clear();
        type = QStringLiteral("touchCancel");
        break;
    }
    points = TouchPoints();
  }
  SendPageCommand(
      QStringLiteral("Input.dispatchTouchEvent"),
      QJsonObject{{"type", type},
                  {"touchPoints", points},
                  {"modifiers", InputTranslator::Modifiers(event.modifiers)}});
}

void BrowserImpl::SendCaptureLostEvent() {}

void BrowserImpl::ImeSetComposition(
    const CefString& text,
    const std::vector<CefCompositionUnderline>& underlines,
    const CefRange& replacement_range,
    const CefRange& selection_range) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    composition_ = QString::fromStdString(text.ToString());
  }
  SendPageCommand(QStringLiteral("Input.imeSetComposition"),
                  InputTranslator::ImeComposition(text, replacement_range,
                                                  selection_range));
}

void BrowserImpl::ImeCommitText(const CefString& text,
                                const CefRange& replacement_range,
                                int relative_cursor_pos) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    composition_.clear();
  }
  // The protocol inserts at the selection only: text that replaces a range
  // is first made the composition over that range, which the insertion
  // then commits.
  const QJsonObject composition = InputTranslator::ImeComposition(
      text, replacement_range, CefRange::InvalidRange());
  if (composition.contains(QLatin1String("replacementStart"))) {
    SendPageCommand(QStringLiteral("Input.imeSetComposition"), composition);
  }
  SendPageCommand(
      QStringLiteral("Input.insertText"),
      QJsonObject{{"text", QString::fromStdString(text.ToString())}});
}

void BrowserImpl::ImeFinishComposingText(bool keep_selection) {
  QString composition;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    composition.swap(composition_);
  }
  if (!composition.isEmpty()) {
    SendPageCommand(QStringLiteral("Input.insertText"),
                    QJsonObject{{"text", composition}});
  }
}

void BrowserImpl::ImeCancelComposition() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    composition_.clear();
  }
  SendPageCommand(
      QStringLiteral("Input.imeSetComposition"),
      QJsonObject{{"text", ""}, {"selectionStart", 0}, {"selectionEnd", 0}});
}

void BrowserImpl::DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                                      const CefMouseEvent& event,
                                      DragOperationsMask allowed_ops) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    drag_data_ = drag_data;
    drag_allowed_ops_ = allowed_ops;
  }
  SendPageCommand(
      QStringLiteral("Input.dispatchDragEvent"),
      ToPagePoint(InputTranslator::DragEvent("dragEnter", event, allowed_ops, drag_data)));
}

void BrowserImpl::DragTargetDragOver(const CefMouseEvent& event,
                                     DragOperationsMask allowed_ops) {
  CefRefPtr<CefDragData> data;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    data = drag_data_;
    drag_allowed_ops_ = allowed_ops;
  }
  SendPageCommand(
      QStringLiteral("Input.dispatchDragEvent"),
      ToPagePoint(InputTranslator::DragEvent("dragOver", event, allowed_ops, data)));
}

void BrowserImpl::DragTargetDragLeave() {
  CefRefPtr<CefDragData> data;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    data.swap(drag_data_);
  }
  SendPageCommand(QStringLiteral("Input.dispatchDragEvent"),
                  InputTranslator::DragEvent("dragCancel", CefMouseEvent(),
                                             DRAG_OPERATION_NONE, data));
}

void BrowserImpl::DragTargetDrop(const CefMouseEvent& event) {
  CefRefPtr<CefDragData> data;
  DragOperationsMask allowed = DRAG_OPERATION_EVERY;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    data.swap(drag_data_);
    std::swap(allowed, drag_allowed_ops_);
  }
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self] { self->drag_source_->DroppedInPage(); });
  SendPageCommand(
      QStringLiteral("Input.dispatchDragEvent"),
      ToPagePoint(InputTranslator::DragEvent("drop", event, allowed, data)));
}

void BrowserImpl::DragSourceEndedAt(int x, int y, DragOperationsMask op) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self, x, y, op] { self->drag_source_->EndedAt(x, y, op); });
}

void BrowserImpl::DragSourceSystemDragEnded() {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self] { self->drag_source_->SystemDragEnded(); });
}

// --- The rest: defaults ---------------------------------------------------

void BrowserImpl::SetAccessibilityState(cef_state_t accessibility_state) {}

void BrowserImpl::SetAutoResizeEnabled(bool enabled,
                                       const CefSize& min_size,
                                       const CefSize& max_size) {}

// Chromium runs muted (--mute-audio); the flag is only remembered.
void BrowserImpl::SetAudioMuted(bool mute) {
  std::lock_guard<std::mutex> lock(mutex_);
  audio_muted_ = mute;
}

bool BrowserImpl::IsAudioMuted() {
  std::lock_guard<std::mutex> lock(mutex_);
  return audio_muted_;
}

bool BrowserImpl::IsFullscreen() {
  return false;
}

void BrowserImpl::ExitFullscreen(bool will_cause_resize) {}

bool BrowserImpl::CanExecuteChromeCommand(int command_id) {
  return false;
}

void BrowserImpl::ExecuteChromeCommand(
    int command_id,
    cef_window_open_disposition_t disposition) {}

bool BrowserImpl::IsRenderProcessUnresponsive() {
  return hang_monitor_->unresponsive();
}

cef_runtime_style_t BrowserImpl::GetRuntimeStyle() {
  return CEF_RUNTIME_STYLE_ALLOY;
}

}  // namespace cefengine
