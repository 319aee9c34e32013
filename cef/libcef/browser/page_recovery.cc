#include "libcef/browser/page_recovery.h"

#include <memory>

#include <QJsonObject>

#include "libcef/browser/browser_closer.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/file_dialogs.h"
#include "libcef/browser/frame_impl.h"
#include "libcef/browser/frame_sessions.h"
#include "libcef/browser/frame_tree.h"
#include "libcef/browser/hang_monitor.h"
#include "libcef/browser/page_attacher.h"
#include "libcef/browser/page_connection.h"
#include "libcef/browser/page_events.h"
#include "libcef/browser/page_hooks.h"
#include "libcef/browser/page_navigation.h"
#include "libcef/browser/script_dialogs.h"
#include "libcef/devtools/devtools_session.h"

namespace cefengine {

PageRecovery::PageRecovery(BrowserImpl* browser) : browser_(browser) {}

void PageRecovery::OnChromiumGone(cef_termination_status_t status,
                                  int error_code,
                                  const std::string& description) {
  if (!browser_->IsValid()) {
    return;
  }
  CefRefPtr<BrowserImpl> self(browser_);
  // A close under way has no page left to ask; a browser still being made
  // fails as its creation would.
  const bool closing = browser_->closer()->asking_unload() ||
                       browser_->closer()->closing() ||
                       !browser_->after_created();
  // Before the client hears of it: it may reload at once.
  Detach();
  if (closing) {
    browser_->Destroy(false);
    return;
  }
  ReportTerminated(status, error_code, "Chromium ended: " + description);
}

void PageRecovery::DropPage() {
  if (!browser_->IsValid() || browser_->connection()->IsGone()) {
    return;
  }
  CefRefPtr<BrowserImpl> self(browser_);
  const QString target = browser_->target_id();
  std::shared_ptr<DevToolsSession> session = browser_->chromium()->session();
  // Its routes go first: the page's end is not the browser's.
  Detach();
  if (session && !target.isEmpty()) {
    session->sendCommand(QStringLiteral("Target.closeTarget"),
                         QJsonObject{{"targetId", target}}, QString(), {});
  }
  ReportTerminated(TS_PROCESS_WAS_KILLED, 0, "renderer killed");
}

void PageRecovery::ReportTerminated(cef_termination_status_t status,
                                    int error_code,
                                    const std::string& text) {
  CefRefPtr<CefClient> client = browser_->client();
  if (CefRefPtr<CefRequestHandler> request =
          client ? client->GetRequestHandler() : nullptr) {
    request->OnRenderProcessTerminated(browser_, status, error_code, text);
  }
}

void PageRecovery::Detach() {
  if (!browser_->connection()->Drop()) {
    return;
  }
  // The main frame stays, so that its LoadURL can bring the page back.
  browser_->frames()->DropSubframes();
  browser_->navigation()->SetLoadState(false);
  browser_->hang_monitor()->Reset();
  browser_->frame_sessions()->Clear();
  browser_->script_dialogs()->OnPageLeft();
  browser_->file_dialogs()->OnFrameNavigated(QString(), true);
  browser_->page_events()->Reset();
  browser_->hooks()->Detach();
  browser_->chromium()->RemoveBrowser(browser_);
}

void PageRecovery::Revive(const std::string& url) {
  if (!browser_->connection()->Revive()) {
    return;
  }
  browser_->closer()->OnPageRevived();
  if (!browser_->attacher()->Start(false, url)) {
    Detach();
  }
}

bool PageRecovery::ReviveAtCurrentUrl() {
  if (!browser_->connection()->IsGone()) {
    return false;
  }
  CefRefPtr<FrameImpl> main = browser_->frames()->Main();
  std::string url = main ? main->GetURL().ToString() : std::string();
  Revive(url.empty() ? "about:blank" : url);
  return true;
}

}  // namespace cefengine
