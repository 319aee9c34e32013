#include "libcef/browser/page_attacher.h"

#include <chrono>
#include <memory>
#include <utility>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/browser_view.h"
#include "libcef/browser/caret_reporter.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/context_menus.h"
#include "libcef/browser/drag_source.h"
#include "libcef/browser/frame_impl.h"
#include "libcef/browser/frame_sessions.h"
#include "libcef/browser/frame_tree.h"
#include "libcef/browser/page_connection.h"
#include "libcef/browser/page_events.h"
#include "libcef/browser/page_hooks.h"
#include "libcef/browser/page_navigation.h"
#include "libcef/browser/page_recovery.h"
#include "libcef/browser/pointer_feedback.h"
#include "libcef/browser/printing.h"
#include "libcef/browser/render_observer.h"
#include "libcef/devtools/devtools_session.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

constexpr std::chrono::seconds kCreateTimeout{20};
constexpr char kEngineWorld[] = "__brovia";

}  // namespace

PageAttacher::PageAttacher(BrowserImpl* browser) : browser_(browser) {}

bool PageAttacher::Start(bool sync, const std::string& url) {
  browser_->view()->UpdateFromClient();
  const std::string& initial_url = browser_->initial_url();
  ChromiumInstance* chromium = browser_->chromium();
  if (sync) {
    // The caller asked to wait: the page exists when this returns.
    if (!chromium->EnsureStarted(browser_->device_scale_factor())) {
      LOG(ERROR) << "CefBrowserHost::CreateBrowserSync: no Chromium to show "
                 << (initial_url.empty() ? "the page" : initial_url);
      return false;
    }
    if (!url.empty()) {
      browser_->navigation()->Navigate(QString(), url);
    }
    return CreateTarget(true);
  }
  // As in CEF, the client has the browser at once, with a main frame, and
  // what it asks of the page waits until the page is attached: a host that
  // waits for the browser is not held up by Chromium's start.
  if (!browser_->frames()->Main()) {
    browser_->frames()->Add(QString(), QString());
  }
  // First in the page's queue: what the client asks meanwhile comes after.
  if (!url.empty()) {
    browser_->navigation()->Navigate(QString(), url);
  }
  NotifyAfterCreated();
  // Chromium may still be starting (it starts with the engine): the page is
  // made once it runs, and the engine UI thread goes on meanwhile.
  CefRefPtr<BrowserImpl> self(browser_);
  chromium->WhenStarted(
      browser_->device_scale_factor(), [self, this](bool started) {
        if (!started) {
          const std::string& initial_url = self->initial_url();
          LOG(ERROR) << "CefBrowserHost::CreateBrowser: no Chromium to show "
                     << (initial_url.empty() ? "the page" : initial_url);
          OnCreateFailed();
          return;
        }
        // Closed while Chromium started.
        if (self->IsValid()) {
          CreateTarget(false);
        }
      });
  return true;
}

void PageAttacher::OnCreateFailed() {
  // A browser the client already has waits for the next try.
  if (after_created_) {
    browser_->recovery()->Detach();
  } else {
    browser_->Destroy(false);
  }
}

bool PageAttacher::CreateTarget(bool sync) {
  ChromiumInstance* chromium = browser_->chromium();
  browser_->view()->set_chromium_scale_factor(chromium->scale_factor());
  std::shared_ptr<DevToolsSession> session = chromium->session();
  if (!session) {
    // Died in the instant since it answered.
    LOG(ERROR) << "CefBrowserHost::CreateBrowser: Chromium went away";
    if (!sync) {
      OnCreateFailed();
    }
    return false;
  }
  const CefSize size = browser_->view_size();
  CefRefPtr<BrowserImpl> self(browser_);
  if (chromium->uses_x11()) {
    // A window of its own in the engine's X server, of the view's size.
    int left = 0, top = 0;
    chromium->NextWindowPlace(&left, &top);
    const QJsonObject visible = browser_->view()->VisibleSize();
    const int width = visible.value(QLatin1String("width")).toInt();
    const int height = visible.value(QLatin1String("height")).toInt();
    if (sync) {
      const QString target = chromium->OpenWindowSync(left, top, width, height);
      if (target.isEmpty()) {
        LOG(ERROR) << "CefBrowserHost::CreateBrowserSync: Chromium made no "
                      "page";
        return false;
      }
      OnTargetCreated(target);
      NotifyAfterCreated();
      return true;
    }
    chromium->OpenWindow(
        left, top, width, height,
        [self, this](const QString& target, const QString& error) {
          if (target.isEmpty()) {
            LOG(ERROR) << "CefBrowserHost::CreateBrowser: Chromium made no "
                          "page: "
                       << error.toStdString();
            OnCreateFailed();
            return;
          }
          OnTargetCreated(target);
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
  session->sendCommand(
      QStringLiteral("Target.createTarget"), params, QString(),
      [self, this](const QJsonObject& result, const QJsonObject& error) {
        if (!error.isEmpty()) {
          LOG(ERROR) << "CefBrowserHost::CreateBrowser: Chromium made no page: "
                     << error.value(QLatin1String("message"))
                            .toString()
                            .toStdString();
          OnCreateFailed();
          return;
        }
        OnTargetCreated(result.value(QLatin1String("targetId")).toString());
      });
  return true;
}

void PageAttacher::AttachPopup(const QString& target_id,
                               const QString& session_id) {
  browser_->view()->UpdateFromClient();
  browser_->view()->set_chromium_scale_factor(
      browser_->chromium()->scale_factor());
  RegisterTarget(target_id);
  Attach(session_id);
}

void PageAttacher::RegisterTarget(const QString& target_id) {
  target_id_ = target_id;
  if (browser_->IsValid()) {
    browser_->chromium()->AddTarget(target_id, browser_);
    browser_->frames()->Add(target_id, QString());
  }
}

void PageAttacher::OnTargetCreated(const QString& target_id) {
  RegisterTarget(target_id);
  CefRefPtr<BrowserImpl> self(browser_);
  browser_->chromium()->WhenAttached(
      target_id, [self, this](const QString& session_id, const QJsonObject&) {
        Attach(session_id);
      });
}

void PageAttacher::Attach(const QString& session_id) {
  ChromiumInstance* chromium = browser_->chromium();
  std::shared_ptr<DevToolsSession> session = chromium->session();
  if (!session) {
    return;
  }
  if (!browser_->IsValid()) {
    // Closed while Chromium was still making the page.
    session->sendCommand(QStringLiteral("Target.closeTarget"),
                         QJsonObject{{"targetId", target_id_}}, QString(), {});
    return;
  }
  chromium->AddSession(session_id, browser_);
  browser_->connection()->SetSession(session, session_id);
  // Commands the renderer handles wait until it runs, while a navigation
  // would not: so the page's own commands go out only once every domain
  // answered, or the first load's events could be missed.
  CefRefPtr<BrowserImpl> self(browser_);
  auto pending = std::make_shared<int>(0);
  auto send = [&](const char* method, const QJsonObject& params) {
    ++*pending;
    session->sendCommand(
        QLatin1String(method), params, session_id,
        [self, this, pending](const QJsonObject&, const QJsonObject&) {
          if (--*pending == 0) {
            FinishAttach();
          }
        });
  };
  send("Page.enable", {});
  // Headless Chromium shows no file chooser: the client is asked instead.
  send("Page.setInterceptFileChooserDialog", {{"enabled", true}});
  send("Runtime.enable", {});
  send("Network.enable", {});
  send("Log.enable", {});
  send("Emulation.setDeviceMetricsOverride",
       browser_->view()->MetricsOverride());
  send("Emulation.setVisibleSize", browser_->view()->VisibleSize());
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
  if (chromium->uses_x11()) {
    send("Page.addScriptToEvaluateOnNewDocument",
         {{"source", ScriptSource("native_menu_blocker.js")},
          {"worldName", kEngineWorld}});
  }
  // Headless Chromium prints nothing: window.print() asks the client.
  send("Runtime.addBinding", {{"name", Printing::kPrintBinding}});
  send("Page.addScriptToEvaluateOnNewDocument",
       {{"source", Printing::PrintWrapperScript()}});

  browser_->hooks()->Attach();
  send("Runtime.runIfWaitingForDebugger", {});
}

QJsonObject PageAttacher::UserAgentOverride() const {
  QJsonObject agent{{"userAgent", browser_->chromium()->user_agent()}};
  const std::string languages =
      browser_->request_context()->accept_language_list();
  if (!languages.empty()) {
    agent.insert(QStringLiteral("acceptLanguage"),
                 QString::fromStdString(languages));
  }
  return agent;
}

void PageAttacher::FinishAttach() {
  if (!browser_->connection()->Open()) {
    return;
  }
  NotifyAfterCreated();
}

void PageAttacher::NotifyAfterCreated() {
  if (!after_created_) {
    after_created_ = true;
    CefRefPtr<CefClient> client = browser_->client();
    if (CefRefPtr<CefLifeSpanHandler> life_span =
            client ? client->GetLifeSpanHandler() : nullptr) {
      life_span->OnAfterCreated(browser_);
    }
  }
  // The frame observer comes with the page, which may follow the client's
  // notice.
  if (observer_told_) {
    return;
  }
  if (RenderObserver* observer = browser_->render_observer()) {
    observer_told_ = true;
    observer->OnAfterCreated(browser_);
  }
}

}  // namespace cefengine
