#include "libcef/browser/page_events.h"

#include <utility>

#include <QJsonArray>
#include <QStringList>

#include "include/base/cef_logging.h"
#include "include/cef_client.h"
#include "include/cef_focus_handler.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/caret_reporter.h"
#include "libcef/browser/context_menus.h"
#include "libcef/browser/drag_source.h"
#include "libcef/browser/file_dialogs.h"
#include "libcef/browser/frame_impl.h"
#include "libcef/browser/frame_tree.h"
#include "libcef/browser/navigation_entry_impl.h"
#include "libcef/browser/navigation_policy.h"
#include "libcef/browser/net_error.h"
#include "libcef/browser/page_navigation.h"
#include "libcef/browser/pointer_feedback.h"
#include "libcef/browser/printing.h"
#include "libcef/browser/protocol_fields.h"
#include "libcef/browser/render_observer.h"
#include "libcef/browser/script_dialogs.h"
#include "libcef/browser/ui_task.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

bool IsHttp(const QString& url) {
  return url.startsWith(QLatin1String("http:"), Qt::CaseInsensitive) ||
         url.startsWith(QLatin1String("https:"), Qt::CaseInsensitive);
}

bool KnownScheme(const QString& url) {
  // Never destroyed: engine threads may still ask while the process exits.
  static const QStringList& kSchemes = *new QStringList{
      "http",  "https", "file",       "data",       "about",
      "blob",  "ws",    "wss",        "javascript", "filesystem",
      "chrome", "chrome-error", "devtools", "view-source"};
  return kSchemes.contains(url.section(':', 0, 0).toLower());
}

cef_termination_status_t TerminationFromProtocol(const QString& status) {
  if (status == QLatin1String("killed")) {
    return TS_PROCESS_WAS_KILLED;
  }
  if (status == QLatin1String("crashed")) {
    return TS_PROCESS_CRASHED;
  }
  if (status == QLatin1String("oom")) {
    return TS_PROCESS_OOM;
  }
  if (status == QLatin1String("launch failed")) {
    return TS_LAUNCH_FAILED;
  }
  if (status == QLatin1String("integrity failure")) {
    return TS_INTEGRITY_FAILURE;
  }
  return TS_ABNORMAL_TERMINATION;
}

}  // namespace

QString PageEvents::TitleWatcherScript() {
  return ScriptSource("title_watcher.js")
      .replace(QLatin1String("__BINDING__"), QLatin1String(kTitleBinding));
}

QString PageEvents::TakeFocusWatcherScript() {
  return ScriptSource("take_focus_watcher.js")
      .replace(QLatin1String("__BINDING__"), QLatin1String(kTakeFocusBinding));
}

PageEvents::PageEvents(BrowserImpl* browser)
    : browser_(browser), console_(browser, &contexts_), popups_(browser) {}

PageEvents::~PageEvents() = default;

void PageEvents::Push(const QString& method,
                      const QJsonObject& params,
                      const QString& session_id) {
  queue_.push_back(Event{method, params, session_id});
  Drain();
}

void PageEvents::ExpectTransition(cef_transition_type_t type) {
  expected_transition_ = type;
}

int PageEvents::ContextFor(const QString& frame_id) const {
  return contexts_.ContextFor(frame_id);
}

void PageEvents::Clear() {
  queue_.clear();
}

void PageEvents::Reset() {
  ++generation_;
  queue_.clear();
  waiting_ = false;
  loading_frames_.clear();
  loading_ = false;
  commits_.clear();
  status_by_loader_.clear();
  document_requests_.clear();
  reported_loaders_.clear();
  contexts_.Clear();
  popups_.Clear();
  expected_transition_.reset();
  requested_transition_.reset();
  has_committed_ = false;
  history_seen_ = false;
  blank_entry_id_ = -1;
  blank_dropped_ = false;
  crashed_ = false;
  title_.clear();
}

void PageEvents::Drain() {
  if (draining_) {
    return;
  }
  draining_ = true;
  while (!waiting_ && !queue_.empty()) {
    Event event = std::move(queue_.front());
    queue_.pop_front();
    session_id_ = event.session_id;
    Handle(event.method, event.params);
    session_id_.clear();
  }
  draining_ = false;
}

void PageEvents::Await(const QString& method,
                       const QJsonObject& params,
                       std::function<void(const QJsonObject& result,
                                          const QJsonObject& error)> then) {
  waiting_ = true;
  CefRefPtr<BrowserImpl> browser(browser_);
  const int generation = generation_;
  browser_->SendPageCommand(
      method, params,
      [this, browser, generation, then = std::move(then)](
          const QJsonObject& result, const QJsonObject& error) {
        if (generation != generation_) {
          return;
        }
        waiting_ = false;
        if (browser->IsValid()) {
          then(result, error);
        }
        Drain();
      });
}

void PageEvents::RefreshHistory(std::function<void()> then, int attempt) {
  Await(QStringLiteral("Page.getNavigationHistory"), {},
        [this, then = std::move(then), attempt](const QJsonObject& result,
                                                const QJsonObject& error) {
          if (!error.isEmpty()) {
            // While a navigation swaps the page's process the page is briefly
            // unreachable; the history is asked again a moment later.
            if (attempt < kHistoryAttempts) {
              waiting_ = true;
              CefRefPtr<BrowserImpl> browser(browser_);
              const int generation = generation_;
              PostUiTask(
                  [this, browser, generation, then, attempt] {
                    if (generation != generation_) {
                      return;
                    }
                    waiting_ = false;
                    RefreshHistory(then, attempt + 1);
                  },
                  kHistoryRetryDelayMs);
            } else if (then) {
              then();
            }
            return;
          }
          QJsonArray entries = result.value(QLatin1String("entries")).toArray();
          int current = result.value(QLatin1String("currentIndex")).toInt(-1);
          // The blank page the target was made with is no history of the
          // user's: hidden now, dropped once the first page has loaded.
          if (!history_seen_) {
            history_seen_ = true;
            if (current > 0 && Str(entries.first().toObject(), "url") ==
                                   QLatin1String("about:blank")) {
              blank_entry_id_ =
                  entries.first().toObject().value(QLatin1String("id")).toInt();
            }
          }
          for (int i = entries.size() - 1; i >= 0; --i) {
            if (blank_entry_id_ >= 0 &&
                entries.at(i).toObject().value(QLatin1String("id")).toInt() ==
                    blank_entry_id_) {
              entries.removeAt(i);
              if (current >= i) {
                --current;
              }
            }
          }
          browser_->navigation()->SetHistory(entries, current);
          if (then) {
            then();
          }
        });
}

void PageEvents::Handle(const QString& method, const QJsonObject& params) {
  if (method == QLatin1String("Page.frameAttached")) {
    browser_->frames()->Add(Str(params, "frameId"), Str(params, "parentFrameId"));
  } else if (method == QLatin1String("Page.frameDetached")) {
    // A frame moving to another process stays the same frame.
    if (Str(params, "reason") != QLatin1String("swap")) {
      OnFrameDetached(Str(params, "frameId"));
    }
  } else if (method == QLatin1String("Page.frameStartedLoading")) {
    OnFrameStartedLoading(Str(params, "frameId"));
  } else if (method == QLatin1String("Page.frameStoppedLoading")) {
    OnFrameStoppedLoading(Str(params, "frameId"));
  } else if (method == QLatin1String("Page.frameNavigated")) {
    OnFrameNavigated(params);
  } else if (method == QLatin1String("Page.frameRequestedNavigation")) {
    OnFrameRequestedNavigation(params);
  } else if (method == QLatin1String("Page.navigatedWithinDocument")) {
    OnSameDocumentNavigation(params);
  } else if (method == QLatin1String("Page.javascriptDialogOpening")) {
    browser_->script_dialogs()->OnOpening(params);
  } else if (method == QLatin1String("Page.javascriptDialogClosed")) {
    browser_->script_dialogs()->OnClosed(params);
  } else if (method == QLatin1String("Page.fileChooserOpened")) {
    browser_->file_dialogs()->OnChooserOpened(params);
  } else if (method == QLatin1String("Page.windowOpen")) {
    popups_.OnWindowOpen(params);
  } else if (method == QLatin1String("Network.requestWillBeSent")) {
    if (Str(params, "type") == QLatin1String("Document")) {
      document_requests_[Str(params, "requestId")] = {
          Str(params, "frameId"), Str(Obj(params, "request"), "url")};
    }
  } else if (method == QLatin1String("Network.responseReceived")) {
    const QJsonObject response = Obj(params, "response");
    if (Str(params, "type") == QLatin1String("Document") &&
        IsHttp(Str(response, "url"))) {
      status_by_loader_[Str(params, "loaderId")] =
          response.value(QLatin1String("status")).toInt();
    }
  } else if (method == QLatin1String("Network.loadingFinished")) {
    document_requests_.erase(Str(params, "requestId"));
  } else if (method == QLatin1String("Network.loadingFailed")) {
    OnLoadingFailed(params);
  } else if (method == QLatin1String("Runtime.executionContextCreated")) {
    contexts_.OnCreated(params, session_id_);
  } else if (method == QLatin1String("Runtime.executionContextDestroyed")) {
    contexts_.OnDestroyed(params, session_id_);
  } else if (method == QLatin1String("Runtime.executionContextsCleared")) {
    contexts_.OnCleared(session_id_);
  } else if (method == QLatin1String("Runtime.consoleAPICalled")) {
    console_.OnConsoleApiCalled(params, session_id_);
  } else if (method == QLatin1String("Runtime.exceptionThrown")) {
    console_.OnException(params, session_id_);
  } else if (method == QLatin1String("Log.entryAdded")) {
    console_.OnLogEntry(params);
  } else if (method == QLatin1String("Target.targetInfoChanged")) {
    // At each commit Chromium names the page after its address until a
    // title comes.
    OnTitle(Str(Obj(params, "targetInfo"), "title"));
  } else if (method == QLatin1String("Runtime.bindingCalled")) {
    if (Str(params, "name") == QLatin1String(kTitleBinding)) {
      OnTitle(Str(params, "payload"));
    } else if (Str(params, "name") == QLatin1String(Printing::kPrintBinding)) {
      browser_->printing()->Start();
    } else if (Str(params, "name") == QLatin1String(kTakeFocusBinding)) {
      OnTakeFocus(Str(params, "payload") == QLatin1String("1"));
    } else if (Str(params, "name") == QLatin1String(PointerFeedback::kBinding)) {
      browser_->pointer_feedback()->OnReport(Str(params, "payload"));
    } else if (Str(params, "name") == QLatin1String(CaretReporter::kBinding)) {
      browser_->caret_reporter()->OnReport(Str(params, "payload"));
    } else if (Str(params, "name") == QLatin1String(ContextMenus::kBinding)) {
      browser_->context_menus()->OnPageMenu(Str(params, "payload"));
    } else if (Str(params, "name") == QLatin1String(DragSource::kBinding)) {
      browser_->drag_source()->OnDropEffect(Str(params, "payload"));
    }
  } else if (method == QLatin1String("Input.dragIntercepted")) {
    const CefPoint point = browser_->last_mouse_point();
    browser_->drag_source()->OnIntercepted(params, point.x, point.y);
  } else if (method == QLatin1String("Target.targetCrashed") ||
             method == QLatin1String("Inspector.targetCrashed")) {
    OnCrashed(params);
  } else if (method == QLatin1String("Target.targetDestroyed") ||
             method == QLatin1String("Target.detachedFromTarget")) {
    browser_->OnTargetGone();
  } else if (method == QLatin1String("Target.attachedToTarget")) {
    popups_.OnAttached(params);
  } else if (method == QLatin1String("Brovia.navigated")) {
    OnNavigateReply(params);
  }
}

void PageEvents::OnFrameNavigated(const QJsonObject& params) {
  const QJsonObject frame = Obj(params, "frame");
  const QString id = Str(frame, "id");
  const QString parent_id = Str(frame, "parentId");
  const QString unreachable = Str(frame, "unreachableUrl");
  const bool error_page = !unreachable.isEmpty();
  const QString url =
      error_page ? unreachable : Str(frame, "url") + Str(frame, "urlFragment");
  CefRefPtr<FrameImpl> target = browser_->frames()->Find(id);
  if (!target) {
    target = browser_->frames()->Add(id, parent_id);
  }
  target->SetCommitted(url.toStdString(), Str(frame, "name").toStdString());
  commits_[id] = Commit{Str(frame, "loaderId"), error_page, false};
  const bool main = parent_id.isEmpty();
  browser_->file_dialogs()->OnFrameNavigated(id, main);
  if (main) {
    browser_->script_dialogs()->OnPageLeft();
  }
  if (error_page) {
    // The failure itself is told by OnLoadError; CEF reports no start, end
    // or address for the error page.
    if (main) {
      expected_transition_.reset();
    }
    return;
  }
  CefRefPtr<CefClient> client = browser_->client();
  CefRefPtr<CefLoadHandler> load = client ? client->GetLoadHandler() : nullptr;
  if (!main) {
    if (load) {
      load->OnLoadStart(browser_, target.get(), TT_AUTO_SUBFRAME);
    }
    return;
  }
  crashed_ = false;
  has_committed_ = true;
  cef_transition_type_t transition = TT_LINK;
  if (expected_transition_) {
    transition = *expected_transition_;
  } else if (requested_transition_) {
    transition = *requested_transition_;
  }
  expected_transition_.reset();
  requested_transition_.reset();
  if (load) {
    load->OnLoadStart(browser_, target.get(), transition);
  }
  if (CefRefPtr<CefDisplayHandler> display =
          client ? client->GetDisplayHandler() : nullptr) {
    display->OnAddressChange(browser_, target.get(), Cef(url));
  }
  if (RenderObserver* observer = browser_->render_observer()) {
    observer->OnMainFrameNavigated(browser_);
  }
  // For CanGoBack() and the like until the load ends.
  RefreshHistory({});
}

void PageEvents::OnFrameRequestedNavigation(const QJsonObject& params) {
  CefRefPtr<FrameImpl> frame = browser_->frames()->Find(Str(params, "frameId"));
  if (!frame || !frame->IsMain()) {
    return;
  }
  const QString reason = Str(params, "reason");
  int transition = TT_LINK;
  if (reason.startsWith(QLatin1String("formSubmission"))) {
    transition = TT_FORM_SUBMIT;
  } else if (reason == QLatin1String("reload")) {
    transition = TT_RELOAD;
  } else if (reason.endsWith(QLatin1String("Refresh"))) {
    transition = TT_LINK | TT_CLIENT_REDIRECT_FLAG;
  }
  requested_transition_ = static_cast<cef_transition_type_t>(transition);
}

void PageEvents::OnSameDocumentNavigation(const QJsonObject& params) {
  CefRefPtr<FrameImpl> frame = browser_->frames()->Find(Str(params, "frameId"));
  if (!frame) {
    return;
  }
  const QString url = Str(params, "url");
  frame->SetUrl(url.toStdString());
  if (!frame->IsMain()) {
    return;
  }
  CefRefPtr<CefClient> client = browser_->client();
  if (CefRefPtr<CefDisplayHandler> display =
          client ? client->GetDisplayHandler() : nullptr) {
    display->OnAddressChange(browser_, frame.get(), Cef(url));
  }
  RefreshHistory({});
}

void PageEvents::OnFrameStartedLoading(const QString& frame_id) {
  loading_frames_.insert(frame_id);
  if (!loading_) {
    UpdateLoading(true);
  }
}

void PageEvents::OnFrameStoppedLoading(const QString& frame_id) {
  auto commit = commits_.find(frame_id);
  if (commit != commits_.end() && !commit->second.ended &&
      !commit->second.error_page) {
    commit->second.ended = true;
    int status = 0;
    auto known = status_by_loader_.find(commit->second.loader_id);
    if (known != status_by_loader_.end()) {
      status = known->second;
      status_by_loader_.erase(known);
    }
    CefRefPtr<FrameImpl> frame = browser_->frames()->Find(frame_id);
    if (frame && frame->IsMain()) {
      browser_->navigation()->SetDocumentStatus(status);
    }
    CefRefPtr<CefClient> client = browser_->client();
    CefRefPtr<CefLoadHandler> load = client ? client->GetLoadHandler() : nullptr;
    if (frame && load) {
      load->OnLoadEnd(browser_, frame.get(), status);
    }
  }
  loading_frames_.erase(frame_id);
  if (loading_ && loading_frames_.empty()) {
    // The loading state carries the history as it is now.
    RefreshHistory([this] {
      if (blank_entry_id_ >= 0 && !blank_dropped_) {
        blank_dropped_ = true;
        browser_->SendPageCommand(
            QStringLiteral("Page.resetNavigationHistory"), {});
      }
      UpdateLoading(false);
    });
  }
}

void PageEvents::OnFrameDetached(const QString& frame_id) {
  browser_->frames()->Remove(frame_id);
  commits_.erase(frame_id);
  contexts_.ForgetFrame(frame_id);
  loading_frames_.erase(frame_id);
  if (loading_ && loading_frames_.empty()) {
    UpdateLoading(false);
  }
}

void PageEvents::UpdateLoading(bool loading) {
  loading_ = loading;
  browser_->navigation()->SetLoadState(loading);
  bool can_go_back = false;
  bool can_go_forward = false;
  browser_->navigation()->HistoryState(&can_go_back, &can_go_forward);
  CefRefPtr<CefClient> client = browser_->client();
  if (CefRefPtr<CefLoadHandler> load =
          client ? client->GetLoadHandler() : nullptr) {
    load->OnLoadingStateChange(browser_, loading, can_go_back, can_go_forward);
  }
}

void PageEvents::OnNavigateReply(const QJsonObject& params) {
  const QJsonObject result = Obj(params, "result");
  const QJsonObject error = Obj(params, "error");
  const QString url = Str(params, "url");
  const QString frame_id = Str(params, "frameId");
  QString error_text = Str(result, "errorText");
  if (!error.isEmpty()) {
    const QString message = Str(error, "message");
    if (!message.contains(QLatin1String("invalid URL"), Qt::CaseInsensitive)) {
      if (browser_->IsValid()) {
        LOG(WARNING) << "Navigation to " << url.toStdString()
                     << " failed: " << message.toStdString();
      }
      return;
    }
    error_text = QStringLiteral("net::ERR_INVALID_URL");
  }
  if (!error_text.isEmpty()) {
    expected_transition_.reset();
    ReportLoadError(frame_id, error_text, url, Str(result, "loaderId"));
  }
}

void PageEvents::OnLoadingFailed(const QJsonObject& params) {
  const QString request_id = Str(params, "requestId");
  auto request = document_requests_.find(request_id);
  if (request == document_requests_.end()) {
    return;
  }
  const auto [frame_id, url] = request->second;
  document_requests_.erase(request);
  // A document's request id is its loader id.
  ReportLoadError(frame_id, Str(params, "errorText"), url, request_id);
}

void PageEvents::ReportLoadError(const QString& frame_id,
                                 const QString& error_text,
                                 const QString& url,
                                 const QString& loader_id) {
  if (!loader_id.isEmpty() && !reported_loaders_.insert(loader_id).second) {
    return;
  }
  CefRefPtr<FrameImpl> frame = browser_->frames()->Find(
      frame_id.isEmpty() ? browser_->target_id() : frame_id);
  CefRefPtr<CefClient> client = browser_->client();
  CefRefPtr<CefLoadHandler> load = client ? client->GetLoadHandler() : nullptr;
  if (!frame || !load) {
    return;
  }
  QString reported = error_text;
  if (browser_->navigation_policy()) {
    reported = browser_->navigation_policy()->OnLoadFailed(browser_, loader_id,
                                                          error_text);
    if (reported.isEmpty()) {
      return;
    }
  }
  NetError error = NetErrorFromText(reported);
  // Chromium hands a scheme it does not know to the desktop and aborts;
  // CEF, which has no desktop to ask, calls it unknown.
  if (error.code == ERR_ABORTED && !KnownScheme(url)) {
    error = NetErrorFromText(QStringLiteral("net::ERR_UNKNOWN_URL_SCHEME"));
  }
  load->OnLoadError(browser_, frame.get(), error.code, error.name, Cef(url));
}

void PageEvents::OnTakeFocus(bool next) {
  CefRefPtr<CefClient> client = browser_->client();
  if (CefRefPtr<CefFocusHandler> handler =
          client ? client->GetFocusHandler() : nullptr) {
    handler->OnTakeFocus(browser_, next);
  }
}

void PageEvents::OnTitle(const QString& page_title) {
  // The blank page a browser starts on has no title worth telling.
  if (!has_committed_) {
    return;
  }
  // An empty title shows the address, as Chromium does.
  QString title = page_title;
  if (title.isEmpty()) {
    if (CefRefPtr<FrameImpl> main = browser_->frames()->Find(browser_->target_id())) {
      title = QString::fromStdString(main->GetURL().ToString());
    }
  }
  if (title == title_) {
    return;
  }
  title_ = title;
  CefRefPtr<CefClient> client = browser_->client();
  if (CefRefPtr<CefDisplayHandler> display =
          client ? client->GetDisplayHandler() : nullptr) {
    display->OnTitleChange(browser_, Cef(title));
  }
}

void PageEvents::OnCrashed(const QJsonObject& params) {
  if (crashed_) {
    return;
  }
  crashed_ = true;
  browser_->script_dialogs()->OnPageLeft();
  browser_->file_dialogs()->OnFrameNavigated(QString(), true);
  QString status = Str(params, "status");
  if (status.isEmpty()) {
    status = QStringLiteral("crashed");
  }
  CefRefPtr<CefClient> client = browser_->client();
  if (CefRefPtr<CefRequestHandler> request =
          client ? client->GetRequestHandler() : nullptr) {
    request->OnRenderProcessTerminated(
        browser_, TerminationFromProtocol(status),
        params.value(QLatin1String("errorCode")).toInt(),
        Cef(QStringLiteral("renderer ") + status));
  }
  loading_frames_.clear();
  if (loading_) {
    UpdateLoading(false);
  }
}

}  // namespace cefengine
