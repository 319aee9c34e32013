#include "libcef/browser/devtools_browser.h"

#include <utility>

#include "libcef/browser/browser_registry.h"
#include "libcef/browser/devtools_window.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

CefRefPtr<DevToolsBrowser> DevToolsBrowser::Open(
    std::shared_ptr<DevToolsSession> page_chromium,
    const QString& target_id,
    CefRefPtr<CefClient> client,
    ClosedCallback closed) {
  CefRefPtr<DevToolsBrowser> browser =
      new DevToolsBrowser(std::move(client), std::move(closed));
  // The window lives inside this object and never calls back once Close ran.
  DevToolsBrowser* raw = browser.get();
  browser->window_ = DevToolsWindow::Open(std::move(page_chromium), target_id,
                                          [raw] { raw->Finish(); });
  if (!browser->window_) {
    browser->closed_ = nullptr;
    browser->Close(false);
    return nullptr;
  }
  return browser;
}

DevToolsBrowser::DevToolsBrowser(CefRefPtr<CefClient> client,
                                 ClosedCallback closed)
    : id_(BrowserRegistry::Get().NextBrowserId()),
      closed_(std::move(closed)),
      client_(std::move(client)) {}

DevToolsBrowser::~DevToolsBrowser() = default;

CefRefPtr<CefLifeSpanHandler> DevToolsBrowser::LifeSpanHandler() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return client_ ? client_->GetLifeSpanHandler() : nullptr;
}

void DevToolsBrowser::NotifyCreated() {
  if (CefRefPtr<CefLifeSpanHandler> life_span = LifeSpanHandler()) {
    life_span->OnAfterCreated(this);
  }
}

void DevToolsBrowser::Finish() {
  CefRefPtr<DevToolsBrowser> keep(this);
  ClosedCallback closed = std::move(closed_);
  closed_ = nullptr;
  if (closed) {
    closed();
  }
  Close(true);
}

void DevToolsBrowser::Close(bool tell_client) {
  closed_ = nullptr;
  std::shared_ptr<DevToolsWindow> window = std::move(window_);
  if (window) {
    window->Close();
  }
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!valid_) {
      return;
    }
  }
  CefRefPtr<CefLifeSpanHandler> life_span =
      tell_client ? LifeSpanHandler() : nullptr;
  if (life_span) {
    // The window is the engine's, not the client's: there is no owner
    // window to hand the close to, so DoClose cannot hold it up.
    life_span->DoClose(this);
  }
  {
    std::lock_guard<std::mutex> lock(mutex_);
    valid_ = false;
  }
  if (life_span) {
    life_span->OnBeforeClose(this);
  }
  // As CEF does, a closed browser lets go of its client, which may well
  // hold this browser among its popups.
  CefRefPtr<CefClient> released;
  std::lock_guard<std::mutex> lock(mutex_);
  released.swap(client_);
}

// --- CefBrowser ----------------------------------------------------------

bool DevToolsBrowser::IsValid() {
  std::lock_guard<std::mutex> lock(mutex_);
  return valid_;
}

CefRefPtr<CefBrowserHost> DevToolsBrowser::GetHost() {
  return this;
}

bool DevToolsBrowser::CanGoBack() {
  return false;
}

void DevToolsBrowser::GoBack() {}

bool DevToolsBrowser::CanGoForward() {
  return false;
}

void DevToolsBrowser::GoForward() {}

bool DevToolsBrowser::IsLoading() {
  return false;
}

void DevToolsBrowser::Reload() {}

void DevToolsBrowser::ReloadIgnoreCache() {}

void DevToolsBrowser::StopLoad() {}

int DevToolsBrowser::GetIdentifier() {
  return id_;
}

bool DevToolsBrowser::IsSame(CefRefPtr<CefBrowser> that) {
  return that && that->GetIdentifier() == id_;
}

bool DevToolsBrowser::IsPopup() {
  return true;
}

bool DevToolsBrowser::HasDocument() {
  return false;
}

CefRefPtr<CefFrame> DevToolsBrowser::GetMainFrame() {
  return nullptr;
}

CefRefPtr<CefFrame> DevToolsBrowser::GetFocusedFrame() {
  return nullptr;
}

CefRefPtr<CefFrame> DevToolsBrowser::GetFrameByIdentifier(
    const CefString& identifier) {
  return nullptr;
}

CefRefPtr<CefFrame> DevToolsBrowser::GetFrameByName(const CefString& name) {
  return nullptr;
}

size_t DevToolsBrowser::GetFrameCount() {
  return 0;
}

void DevToolsBrowser::GetFrameIdentifiers(std::vector<CefString>& identifiers) {
  identifiers.clear();
}

void DevToolsBrowser::GetFrameNames(std::vector<CefString>& names) {
  names.clear();
}

// --- CefBrowserHost ------------------------------------------------------

CefRefPtr<CefBrowser> DevToolsBrowser::GetBrowser() {
  return this;
}

void DevToolsBrowser::CloseBrowser(bool force_close) {
  // The front end has no unload handlers to ask: forced or not, it closes.
  CefRefPtr<DevToolsBrowser> self(this);
  RunOnUiThread([self] {
    if (self->IsValid()) {
      self->Finish();
    }
  });
}

bool DevToolsBrowser::TryCloseBrowser() {
  CloseBrowser(false);
  return true;
}

void DevToolsBrowser::SetFocus(bool focus) {}

CefRefPtr<CefClient> DevToolsBrowser::GetClient() {
  std::lock_guard<std::mutex> lock(mutex_);
  return client_;
}

CefRefPtr<CefRequestContext> DevToolsBrowser::GetRequestContext() {
  return nullptr;
}

bool DevToolsBrowser::CanZoom(cef_zoom_command_t command) {
  return false;
}

void DevToolsBrowser::Zoom(cef_zoom_command_t command) {}

double DevToolsBrowser::GetDefaultZoomLevel() {
  return 0;
}

double DevToolsBrowser::GetZoomLevel() {
  return 0;
}

void DevToolsBrowser::SetZoomLevel(double zoomLevel) {}

void DevToolsBrowser::RunFileDialog(
    FileDialogMode mode,
    const CefString& title,
    const CefString& default_file_path,
    const std::vector<CefString>& accept_filters,
    CefRefPtr<CefRunFileDialogCallback> callback) {
  // As for a dialog the user dismissed.
  if (callback) {
    CefRefPtr<CefRunFileDialogCallback> held = callback;
    PostUiTask([held] { held->OnFileDialogDismissed({}); });
  }
}

void DevToolsBrowser::StartDownload(const CefString& url) {}

void DevToolsBrowser::Print() {}

void DevToolsBrowser::PrintToPDF(const CefString& path,
                                 const CefPdfPrintSettings& settings,
                                 CefRefPtr<CefPdfPrintCallback> callback) {
  if (callback) {
    CefRefPtr<CefPdfPrintCallback> held = callback;
    const CefString file = path;
    PostUiTask([held, file] { held->OnPdfPrintFinished(file, false); });
  }
}

void DevToolsBrowser::Find(const CefString& searchText,
                           bool forward,
                           bool matchCase,
                           bool findNext) {}

void DevToolsBrowser::StopFinding(bool clearSelection) {}

void DevToolsBrowser::ShowDevTools(const CefWindowInfo& windowInfo,
                                   CefRefPtr<CefClient> client,
                                   const CefBrowserSettings& settings,
                                   const CefPoint& inspect_element_at) {}

void DevToolsBrowser::CloseDevTools() {}

bool DevToolsBrowser::HasDevTools() {
  return false;
}

void DevToolsBrowser::GetNavigationEntries(
    CefRefPtr<CefNavigationEntryVisitor> visitor,
    bool current_only) {}

bool DevToolsBrowser::IsWindowRenderingDisabled() {
  return false;
}

void DevToolsBrowser::WasResized() {}

void DevToolsBrowser::WasHidden(bool hidden) {}

void DevToolsBrowser::NotifyScreenInfoChanged() {}

void DevToolsBrowser::Invalidate(PaintElementType type) {}

void DevToolsBrowser::SendExternalBeginFrame() {}

void DevToolsBrowser::SendKeyEvent(const CefKeyEvent& event) {}

void DevToolsBrowser::SendMouseClickEvent(const CefMouseEvent& event,
                                          MouseButtonType type,
                                          bool mouseUp,
                                          int clickCount) {}

void DevToolsBrowser::SendMouseMoveEvent(const CefMouseEvent& event,
                                         bool mouseLeave) {}

void DevToolsBrowser::SendMouseWheelEvent(const CefMouseEvent& event,
                                          int deltaX,
                                          int deltaY) {}

void DevToolsBrowser::SendTouchEvent(const CefTouchEvent& event) {}

int DevToolsBrowser::GetWindowlessFrameRate() {
  return 0;
}

void DevToolsBrowser::SetWindowlessFrameRate(int frame_rate) {}

void DevToolsBrowser::ImeSetComposition(
    const CefString& text,
    const std::vector<CefCompositionUnderline>& underlines,
    const CefRange& replacement_range,
    const CefRange& selection_range) {}

void DevToolsBrowser::ImeCommitText(const CefString& text,
                                    const CefRange& replacement_range,
                                    int relative_cursor_pos) {}

void DevToolsBrowser::ImeFinishComposingText(bool keep_selection) {}

void DevToolsBrowser::ImeCancelComposition() {}

void DevToolsBrowser::DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                                          const CefMouseEvent& event,
                                          DragOperationsMask allowed_ops) {}

void DevToolsBrowser::DragTargetDragOver(const CefMouseEvent& event,
                                         DragOperationsMask allowed_ops) {}

void DevToolsBrowser::DragTargetDragLeave() {}

void DevToolsBrowser::DragTargetDrop(const CefMouseEvent& event) {}

void DevToolsBrowser::DragSourceEndedAt(int x, int y, DragOperationsMask op) {}

void DevToolsBrowser::DragSourceSystemDragEnded() {}

CefRefPtr<CefNavigationEntry> DevToolsBrowser::GetVisibleNavigationEntry() {
  return nullptr;
}

bool DevToolsBrowser::IsRenderProcessUnresponsive() {
  return false;
}

cef_runtime_style_t DevToolsBrowser::GetRuntimeStyle() {
  return CEF_RUNTIME_STYLE_ALLOY;
}

}  // namespace cefengine
