#include "libcef/browser/frame_impl.h"

#include <atomic>
#include <utility>

#include "include/base/cef_logging.h"
#include "include/cef_request.h"
#include "include/cef_urlrequest.h"
#include "include/cef_v8.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/page_hooks.h"
#include "libcef/browser/page_input.h"
#include "libcef/browser/page_navigation.h"
#include "libcef/browser/render_side.h"
#include "libcef/browser/script_runner.h"
#include "libcef/browser/ui_task.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

// Messages the render side is taking on this thread.
thread_local int tls_render_side_deliveries = 0;

}  // namespace

FrameImpl::FrameImpl(CefRefPtr<BrowserImpl> browser,
                     const QString& id,
                     const QString& parent_id)
    : parent_id_(parent_id), browser_(std::move(browser)), id_(id) {}

QString FrameImpl::id() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return id_;
}

void FrameImpl::TakeId(const QString& id) {
  std::lock_guard<std::mutex> lock(mutex_);
  id_ = id;
}

void FrameImpl::SetCommitted(const std::string& url, const std::string& name) {
  std::lock_guard<std::mutex> lock(mutex_);
  url_ = url;
  name_ = name;
}

void FrameImpl::SetUrl(const std::string& url) {
  std::lock_guard<std::mutex> lock(mutex_);
  url_ = url;
}

void FrameImpl::Invalidate() {
  std::lock_guard<std::mutex> lock(mutex_);
  valid_ = false;
}

bool FrameImpl::IsValid() {
  std::lock_guard<std::mutex> lock(mutex_);
  return valid_;
}

void FrameImpl::Edit(const char* command) {
  if (IsValid()) {
    browser_->input()->RunEditCommand(command);
  }
}

void FrameImpl::Undo() {
  Edit("undo");
}

void FrameImpl::Redo() {
  Edit("redo");
}

void FrameImpl::Cut() {
  Edit("cut");
}

void FrameImpl::Copy() {
  Edit("copy");
}

void FrameImpl::Paste() {
  Edit("paste");
}

void FrameImpl::Delete() {
  Edit("delete");
}

void FrameImpl::SelectAll() {
  Edit("selectAll");
}

void FrameImpl::ViewSource() {}

void FrameImpl::Visit(const char* script_file,
                      CefRefPtr<CefStringVisitor> visitor) {
  if (!visitor) {
    return;
  }
  // A frame that cannot answer still visits, with nothing.
  browser_->scripts()->Evaluate(id(), ScriptSource(script_file),
                     [visitor](const QJsonValue& value, const QString& error) {
                       visitor->Visit(value.toString().toStdString());
                     });
}

void FrameImpl::GetSource(CefRefPtr<CefStringVisitor> visitor) {
  Visit("frame_source.js", visitor);
}

void FrameImpl::GetText(CefRefPtr<CefStringVisitor> visitor) {
  Visit("frame_text.js", visitor);
}

void FrameImpl::LoadRequest(CefRefPtr<CefRequest> request) {
  if (!request) {
    return;
  }
  const std::string method = request->GetMethod().ToString();
  if (!method.empty() && method != "GET") {
    LOG(WARNING) << "CefFrame::LoadRequest: only GET requests are supported; "
                 << method << " " << request->GetURL().ToString()
                 << " is loaded as a GET";
  }
  LoadURL(request->GetURL());
}

void FrameImpl::LoadURL(const CefString& url) {
  if (IsValid()) {
    browser_->navigation()->Navigate(IsMain() ? QString() : id(),
                                     url.ToString());
  }
}

void FrameImpl::ExecuteJavaScript(const CefString& code,
                                  const CefString& script_url,
                                  int start_line) {
  if (IsValid()) {
    browser_->scripts()->ExecuteJavaScript(
        id(), QString::fromStdString(code.ToString()),
        QString::fromStdString(script_url.ToString()), start_line);
  }
}

bool FrameImpl::IsMain() {
  return parent_id_.isEmpty();
}

bool FrameImpl::IsFocused() {
  // Focus inside the page is not tracked: the main frame stands for it.
  return IsMain();
}

CefString FrameImpl::GetName() {
  std::lock_guard<std::mutex> lock(mutex_);
  return name_;
}

CefString FrameImpl::GetIdentifier() {
  return id().toStdString();
}

CefRefPtr<CefFrame> FrameImpl::GetParent() {
  if (IsMain()) {
    return nullptr;
  }
  return browser_->GetFrameByIdentifier(parent_id_.toStdString());
}

CefString FrameImpl::GetURL() {
  std::lock_guard<std::mutex> lock(mutex_);
  return url_;
}

CefRefPtr<CefBrowser> FrameImpl::GetBrowser() {
  return browser_.get();
}

CefRefPtr<CefV8Context> FrameImpl::GetV8Context() {
  return {};
}

void FrameImpl::VisitDOM(CefRefPtr<CefDOMVisitor> visitor) {}

CefRefPtr<CefURLRequest> FrameImpl::CreateURLRequest(
    CefRefPtr<CefRequest> request,
    CefRefPtr<CefURLRequestClient> client) {
  return {};
}

void FrameImpl::SendProcessMessage(CefProcessId target_process,
                                   CefRefPtr<CefProcessMessage> message) {
  if (!message || !message->IsValid()) {
    return;
  }
  CefRefPtr<FrameImpl> self(this);
  if (target_process == PID_BROWSER) {
    // The render side answering.
    SendToBrowserProcess(browser_, self, message);
    return;
  }
  auto deliver = [self, message] {
    if (!self->browser_->IsValid()) {
      return;
    }
    self->browser_->hooks()->ToRenderSide(
        [self, message](RenderSide* render_side) {
          ++tls_render_side_deliveries;
          render_side->OnProcessMessage(self->browser_.get(), self, message);
          --tls_render_side_deliveries;
        });
  };
  // The render side only ever answers later, from the page: on the engine UI
  // thread it takes the message at once, which spares a script a turn of the
  // queue. Elsewhere, or from inside the render side, it is queued.
  if (tls_render_side_deliveries == 0 && OnUiThread()) {
    deliver();
  } else {
    PostUiTask(std::move(deliver));
  }
}

}  // namespace cefengine
