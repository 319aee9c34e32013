#include "libcef/browser/hang_monitor.h"

#include <atomic>
#include <utility>

#include "include/base/cef_logging.h"
#include "include/cef_client.h"
#include "include/cef_unresponsive_process_callback.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/ui_task.h"
#include "libcef/devtools/devtools_session.h"

namespace cefengine {

namespace {

// Chromium's own hung-renderer delay is of this order.
std::atomic<int64_t> g_command_deadline_ms{15000};
std::atomic<int64_t> g_probe_deadline_ms{5000};

// Answers one report, once; any thread.
class UnresponsiveCallback : public CefUnresponsiveProcessCallback {
 public:
  UnresponsiveCallback(CefRefPtr<BrowserImpl> browser, int report)
      : browser_(std::move(browser)), report_(report) {}

  void Wait() override { Answer(false); }
  void Terminate() override { Answer(true); }

 private:
  void Answer(bool terminate) {
    if (answered_.exchange(true)) {
      return;
    }
    // Let go of the browser: a client may keep the callback.
    CefRefPtr<BrowserImpl> browser = std::move(browser_);
    const int report = report_;
    RunOnUiThread([browser, report, terminate] {
      if (!browser->IsValid()) {
        return;
      }
      if (terminate) {
        browser->hang_monitor()->Terminate(report);
      } else {
        browser->hang_monitor()->Wait(report);
      }
    });
  }

  CefRefPtr<BrowserImpl> browser_;
  const int report_;
  std::atomic<bool> answered_{false};
  IMPLEMENT_REFCOUNTING(UnresponsiveCallback);
};

}  // namespace

std::chrono::milliseconds HangMonitor::CommandDeadline() {
  return std::chrono::milliseconds(g_command_deadline_ms.load());
}

std::chrono::milliseconds HangMonitor::ProbeDeadline() {
  return std::chrono::milliseconds(g_probe_deadline_ms.load());
}

void HangMonitor::SetDeadlines(std::chrono::milliseconds command,
                               std::chrono::milliseconds probe) {
  g_command_deadline_ms = command.count();
  g_probe_deadline_ms = probe.count();
}

HangMonitor::HangMonitor(BrowserImpl* browser) : browser_(browser) {}

void HangMonitor::OnCommandExpired() {
  if (!probing_) {
    Probe();
  }
}

void HangMonitor::Reset() {
  ++generation_;
  probing_ = false;
  report_again_ = false;
  terminating_ = false;
  if (unresponsive_.exchange(false)) {
    // The hung renderer is gone; a new one answers.
    ++report_;
  }
}

void HangMonitor::Probe() {
  DevToolsSession* session = browser_->devtools();
  const QString session_id = browser_->session_id();
  if (!session || session_id.isEmpty()) {
    return;
  }
  probing_ = true;
  CefRefPtr<BrowserImpl> browser(browser_);
  const int generation = generation_;
  // Evaluated on the renderer's main thread: it answers only if that thread
  // runs.
  session->sendCommand(
      QStringLiteral("Runtime.evaluate"), QJsonObject{{"expression", "0"}},
      session_id,
      [browser, generation](const QJsonObject&, const QJsonObject& error) {
        if (!browser->IsValid()) {
          return;
        }
        const bool timed_out = error.value(QLatin1String("code")).toInt() ==
                               DevToolsSession::kTimeoutCode;
        // Any other error is the page going, which tells nothing either way.
        if (error.isEmpty() || timed_out) {
          browser->hang_monitor()->OnProbeAnswered(generation, !timed_out);
        } else if (generation == browser->hang_monitor()->generation_) {
          browser->hang_monitor()->probing_ = false;
        }
      },
      ProbeDeadline());
}

void HangMonitor::OnProbeAnswered(int generation, bool answered) {
  if (generation != generation_ || terminating_) {
    return;
  }
  probing_ = false;
  if (answered) {
    if (unresponsive_.exchange(false)) {
      ++report_;
      report_again_ = false;
      CefRefPtr<CefClient> client = browser_->client();
      if (CefRefPtr<CefRequestHandler> handler =
              client ? client->GetRequestHandler() : nullptr) {
        handler->OnRenderProcessResponsive(browser_);
      }
    }
    return;
  }
  if (!unresponsive_.exchange(true) || report_again_) {
    report_again_ = false;
    Report();
  }
  // Watched on, so that the client hears when it answers again.
  if (generation == generation_ && !probing_) {
    Probe();
  }
}

void HangMonitor::Report() {
  const int report = ++report_;
  LOG(WARNING) << "The page's renderer does not answer";
  CefRefPtr<CefClient> client = browser_->client();
  CefRefPtr<CefRequestHandler> handler =
      client ? client->GetRequestHandler() : nullptr;
  if (!handler) {
    // Nobody could ever decide: the renderer goes, and a reload brings the
    // page back.
    Terminate(report);
    return;
  }
  // False leaves it waiting, as CEF does for windowless browsers.
  handler->OnRenderProcessUnresponsive(
      browser_, new UnresponsiveCallback(browser_, report));
}

void HangMonitor::Wait(int report) {
  if (report == report_ && unresponsive_) {
    report_again_ = true;
  }
}

void HangMonitor::Terminate(int report) {
  if (report != report_ || !unresponsive_ || terminating_) {
    return;
  }
  DevToolsSession* session = browser_->devtools();
  const QString session_id = browser_->session_id();
  if (!session || session_id.isEmpty()) {
    return;
  }
  terminating_ = true;
  // Carried out off the renderer's main thread, so a hung page ends too; it
  // never answers.
  session->sendCommand(QStringLiteral("Page.crash"), {}, session_id, {},
                       ProbeDeadline());
  CefRefPtr<BrowserImpl> browser(browser_);
  const int generation = generation_;
  PostUiTask(
      [browser, generation] {
        HangMonitor* self = browser->hang_monitor();
        if (!browser->IsValid() || self->generation_ != generation ||
            !self->terminating_) {
          return;
        }
        // A renderer that takes nothing at all (a stopped process) does not
        // crash either: its page goes instead, which ends the process.
        browser->DropPage();
      },
      ProbeDeadline().count());
}

}  // namespace cefengine
