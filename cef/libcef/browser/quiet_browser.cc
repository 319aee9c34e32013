#include "libcef/browser/quiet_browser.h"

#include "libcef/browser/ui_task.h"

namespace cefengine {

void QuietBrowser::CloseDevTools() {}

void QuietBrowser::DragSourceEndedAt(int x, int y, DragOperationsMask op) {}

void QuietBrowser::DragSourceSystemDragEnded() {}

void QuietBrowser::DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                                          const CefMouseEvent& event,
                                          DragOperationsMask allowed_ops) {}

void QuietBrowser::DragTargetDragLeave() {}

void QuietBrowser::DragTargetDragOver(const CefMouseEvent& event,
                                         DragOperationsMask allowed_ops) {}

void QuietBrowser::DragTargetDrop(const CefMouseEvent& event) {}

void QuietBrowser::Find(const CefString& searchText,
                           bool forward,
                           bool matchCase,
                           bool findNext) {}

void QuietBrowser::GetNavigationEntries(
    CefRefPtr<CefNavigationEntryVisitor> visitor,
    bool current_only) {}

void QuietBrowser::GoBack() {}

void QuietBrowser::GoForward() {}

void QuietBrowser::ImeCancelComposition() {}

void QuietBrowser::ImeCommitText(const CefString& text,
                                    const CefRange& replacement_range,
                                    int relative_cursor_pos) {}

void QuietBrowser::ImeFinishComposingText(bool keep_selection) {}

void QuietBrowser::ImeSetComposition(
    const CefString& text,
    const std::vector<CefCompositionUnderline>& underlines,
    const CefRange& replacement_range,
    const CefRange& selection_range) {}

void QuietBrowser::Invalidate(PaintElementType type) {}

void QuietBrowser::NotifyScreenInfoChanged() {}

void QuietBrowser::Print() {}

void QuietBrowser::Reload() {}

void QuietBrowser::ReloadIgnoreCache() {}

void QuietBrowser::SendExternalBeginFrame() {}

void QuietBrowser::SendKeyEvent(const CefKeyEvent& event) {}

void QuietBrowser::SendMouseClickEvent(const CefMouseEvent& event,
                                          MouseButtonType type,
                                          bool mouseUp,
                                          int clickCount) {}

void QuietBrowser::SendMouseMoveEvent(const CefMouseEvent& event,
                                         bool mouseLeave) {}

void QuietBrowser::SendMouseWheelEvent(const CefMouseEvent& event,
                                          int deltaX,
                                          int deltaY) {}

void QuietBrowser::SendTouchEvent(const CefTouchEvent& event) {}

void QuietBrowser::SetFocus(bool focus) {}

void QuietBrowser::SetWindowlessFrameRate(int frame_rate) {}

void QuietBrowser::SetZoomLevel(double zoomLevel) {}

void QuietBrowser::ShowDevTools(const CefWindowInfo& windowInfo,
                                   CefRefPtr<CefClient> client,
                                   const CefBrowserSettings& settings,
                                   const CefPoint& inspect_element_at) {}

void QuietBrowser::StartDownload(const CefString& url) {}

void QuietBrowser::StopFinding(bool clearSelection) {}

void QuietBrowser::StopLoad() {}

void QuietBrowser::WasHidden(bool hidden) {}

void QuietBrowser::WasResized() {}

void QuietBrowser::Zoom(cef_zoom_command_t command) {}

bool QuietBrowser::CanGoBack() {
  return false;
}

bool QuietBrowser::CanGoForward() {
  return false;
}

bool QuietBrowser::CanZoom(cef_zoom_command_t command) {
  return false;
}

bool QuietBrowser::HasDevTools() {
  return false;
}

bool QuietBrowser::HasDocument() {
  return false;
}

bool QuietBrowser::IsLoading() {
  return false;
}

bool QuietBrowser::IsRenderProcessUnresponsive() {
  return false;
}

bool QuietBrowser::IsWindowRenderingDisabled() {
  return false;
}

CefRefPtr<CefFrame> QuietBrowser::GetFocusedFrame() {
  return nullptr;
}

CefRefPtr<CefFrame> QuietBrowser::GetFrameByIdentifier(
    const CefString& identifier) {
  return nullptr;
}

CefRefPtr<CefFrame> QuietBrowser::GetFrameByName(const CefString& name) {
  return nullptr;
}

CefRefPtr<CefFrame> QuietBrowser::GetMainFrame() {
  return nullptr;
}

CefRefPtr<CefRequestContext> QuietBrowser::GetRequestContext() {
  return nullptr;
}

CefRefPtr<CefNavigationEntry> QuietBrowser::GetVisibleNavigationEntry() {
  return nullptr;
}

double QuietBrowser::GetDefaultZoomLevel() {
  return 0;
}

size_t QuietBrowser::GetFrameCount() {
  return 0;
}

int QuietBrowser::GetWindowlessFrameRate() {
  return 0;
}

double QuietBrowser::GetZoomLevel() {
  return 0;
}

void QuietBrowser::GetFrameIdentifiers(std::vector<CefString>& identifiers) {
  identifiers.clear();
}

void QuietBrowser::GetFrameNames(std::vector<CefString>& names) {
  names.clear();
}

void QuietBrowser::PrintToPDF(const CefString& path,
                                 const CefPdfPrintSettings& settings,
                                 CefRefPtr<CefPdfPrintCallback> callback) {
  if (callback) {
    CefRefPtr<CefPdfPrintCallback> held = callback;
    const CefString file = path;
    PostUiTask([held, file] { held->OnPdfPrintFinished(file, false); });
  }
}

void QuietBrowser::RunFileDialog(
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

cef_runtime_style_t QuietBrowser::GetRuntimeStyle() {
  return CEF_RUNTIME_STYLE_ALLOY;
}

}  // namespace cefengine
