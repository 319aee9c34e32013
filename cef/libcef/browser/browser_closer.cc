#include "libcef/browser/browser_closer.h"

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/page_connection.h"
#include "libcef/browser/script_dialogs.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

namespace {

// How long a page asked to close may take to either ask the client or go,
// and how often it is asked meanwhile.
constexpr int kUnloadTimeoutMs = 3000;
constexpr int kUnloadRetryMs = 300;

}  // namespace

BrowserCloser::BrowserCloser(BrowserImpl* browser) : browser_(browser) {}

void BrowserCloser::CloseBrowser(bool force_close) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, this, force_close] { Close(force_close); });
}

bool BrowserCloser::TryCloseBrowser() {
  if (!OnUiThread()) {
    LOG(ERROR) << "CefBrowserHost::TryCloseBrowser must be called on the UI "
                  "thread";
    return false;
  }
  CefRefPtr<BrowserImpl> self(browser_);
  Close(false);
  return !self->IsValid();
}

void BrowserCloser::Close(bool force) {
  if (!browser_->IsValid()) {
    return;
  }
  if (close_deferred_) {
    browser_->Destroy(!target_gone_);
    return;
  }
  if (closing_ || (!force && (asking_unload_ || AskUnload()))) {
    return;
  }
  asking_unload_ = false;
  closing_ = true;
  CefRefPtr<CefClient> client = browser_->client();
  CefRefPtr<CefLifeSpanHandler> life_span =
      client ? client->GetLifeSpanHandler() : nullptr;
  // Windowless: false destroys the browser now; true leaves the close to
  // the application's next close request.
  if (life_span && life_span->DoClose(browser_)) {
    close_deferred_ = true;
    return;
  }
  browser_->Destroy(true);
}

bool BrowserCloser::AskUnload() {
  if (!browser_->connection()->IsAttached()) {
    return false;
  }
  // A dialog holding the page would keep beforeunload from running.
  browser_->script_dialogs()->BeforeLeaving(false);
  asking_unload_ = true;
  SendUnloadRequest(++unload_request_);
  WatchUnload();
  return true;
}

void BrowserCloser::SendUnloadRequest(int request) {
  CefRefPtr<BrowserImpl> self(browser_);
  browser_->SendPageCommand(
      QStringLiteral("Page.close"), {},
      [self, this, request](const QJsonObject&, const QJsonObject& error) {
        if (!error.isEmpty() && asking_unload_ && unload_request_ == request) {
          Close(true);
        }
      });
  // Chromium drops a Page.close that comes while the page still settles a
  // beforeunload answered a moment ago; asking again is harmless, as it
  // joins one under way.
  PostUiTask(
      [self, this, request] {
        if (self->IsValid() && asking_unload_ && unload_request_ == request &&
            !self->script_dialogs()->waiting_for_unload_answer()) {
          SendUnloadRequest(request);
        }
      },
      kUnloadRetryMs);
}

void BrowserCloser::WatchUnload() {
  const int request = unload_request_;
  CefRefPtr<BrowserImpl> self(browser_);
  PostUiTask(
      [self, this, request] {
        if (!self->IsValid() || !asking_unload_ ||
            unload_request_ != request ||
            self->script_dialogs()->waiting_for_unload_answer()) {
          return;
        }
        LOG(WARNING) << "The page neither answered nor went when asked to "
                        "close: closing it without asking";
        Close(true);
      },
      kUnloadTimeoutMs);
}

void BrowserCloser::OnUnloadAnswered(bool allowed) {
  // Otherwise the dialog was a navigation's.
  if (!browser_->IsValid() || !asking_unload_) {
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

void BrowserCloser::OnTargetGone() {
  // Chromium tells both the detach and the end of the target.
  if (!browser_->IsValid() || target_gone_) {
    return;
  }
  target_gone_ = true;
  CefRefPtr<BrowserImpl> self(browser_);
  // The page allowed a close we asked for: DoClose may still leave the
  // browser to the next close request, though its page is gone.
  const bool asked = asking_unload_;
  asking_unload_ = false;
  closing_ = true;
  bool deferred = false;
  CefRefPtr<CefClient> client = browser_->client();
  if (CefRefPtr<CefLifeSpanHandler> life_span =
          client ? client->GetLifeSpanHandler() : nullptr) {
    deferred = life_span->DoClose(browser_);
  }
  if (asked && deferred) {
    close_deferred_ = true;
    return;
  }
  browser_->Destroy(false);
}

}  // namespace cefengine
