// A browser with no page of its own: every call of CefBrowser and
// CefBrowserHost that needs one answers quietly, as CEF does where nothing
// is behind it (false, null, zero, nothing done). What makes a browser one
// (its identity, host, client and closing) is left to the class deriving
// from this.

#ifndef CEF_LIBCEF_BROWSER_QUIET_BROWSER_H_
#define CEF_LIBCEF_BROWSER_QUIET_BROWSER_H_

#include <vector>

#include "include/cef_browser.h"
#include "libcef/browser/unsupported_host_calls.h"

namespace cefengine {

// Any thread.
class QuietBrowser : public CefBrowser, public UnsupportedHostCalls {
 public:
  // Nothing happens.
  void CloseDevTools() override;
  void DragSourceEndedAt(int x, int y, DragOperationsMask op) override;
  void DragSourceSystemDragEnded() override;
  void DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                           const CefMouseEvent& event,
                           DragOperationsMask allowed_ops) override;
  void DragTargetDragLeave() override;
  void DragTargetDragOver(const CefMouseEvent& event,
                          DragOperationsMask allowed_ops) override;
  void DragTargetDrop(const CefMouseEvent& event) override;
  void Find(const CefString& searchText,
            bool forward,
            bool matchCase,
            bool findNext) override;
  void GetNavigationEntries(CefRefPtr<CefNavigationEntryVisitor> visitor,
                            bool current_only) override;
  void GoBack() override;
  void GoForward() override;
  void ImeCancelComposition() override;
  void ImeCommitText(const CefString& text,
                     const CefRange& replacement_range,
                     int relative_cursor_pos) override;
  void ImeFinishComposingText(bool keep_selection) override;
  void ImeSetComposition(const CefString& text,
                         const std::vector<CefCompositionUnderline>& underlines,
                         const CefRange& replacement_range,
                         const CefRange& selection_range) override;
  void Invalidate(PaintElementType type) override;
  void NotifyScreenInfoChanged() override;
  void Print() override;
  void Reload() override;
  void ReloadIgnoreCache() override;
  void SendExternalBeginFrame() override;
  void SendKeyEvent(const CefKeyEvent& event) override;
  void SendMouseClickEvent(const CefMouseEvent& event,
                           MouseButtonType type,
                           bool mouseUp,
                           int clickCount) override;
  void SendMouseMoveEvent(const CefMouseEvent& event, bool mouseLeave) override;
  void SendMouseWheelEvent(const CefMouseEvent& event,
                           int deltaX,
                           int deltaY) override;
  void SendTouchEvent(const CefTouchEvent& event) override;
  void SetFocus(bool focus) override;
  void SetWindowlessFrameRate(int frame_rate) override;
  void SetZoomLevel(double zoomLevel) override;
  void ShowDevTools(const CefWindowInfo& windowInfo,
                    CefRefPtr<CefClient> client,
                    const CefBrowserSettings& settings,
                    const CefPoint& inspect_element_at) override;
  void StartDownload(const CefString& url) override;
  void StopFinding(bool clearSelection) override;
  void StopLoad() override;
  void WasHidden(bool hidden) override;
  void WasResized() override;
  void Zoom(cef_zoom_command_t command) override;

  // False.
  bool CanGoBack() override;
  bool CanGoForward() override;
  bool CanZoom(cef_zoom_command_t command) override;
  bool HasDevTools() override;
  bool HasDocument() override;
  bool IsLoading() override;
  bool IsRenderProcessUnresponsive() override;
  bool IsWindowRenderingDisabled() override;

  // Null.
  CefRefPtr<CefFrame> GetFocusedFrame() override;
  CefRefPtr<CefFrame> GetFrameByIdentifier(const CefString& identifier) override;
  CefRefPtr<CefFrame> GetFrameByName(const CefString& name) override;
  CefRefPtr<CefFrame> GetMainFrame() override;
  CefRefPtr<CefRequestContext> GetRequestContext() override;
  CefRefPtr<CefNavigationEntry> GetVisibleNavigationEntry() override;

  // Zero, or an empty list.
  double GetDefaultZoomLevel() override;
  size_t GetFrameCount() override;
  int GetWindowlessFrameRate() override;
  double GetZoomLevel() override;
  void GetFrameIdentifiers(std::vector<CefString>& identifiers) override;
  void GetFrameNames(std::vector<CefString>& names) override;

  // Answered later, on the engine UI thread, as a dialog the user dismissed
  // and a PDF that could not be written.
  void PrintToPDF(const CefString& path,
                  const CefPdfPrintSettings& settings,
                  CefRefPtr<CefPdfPrintCallback> callback) override;
  void RunFileDialog(FileDialogMode mode,
                     const CefString& title,
                     const CefString& default_file_path,
                     const std::vector<CefString>& accept_filters,
                     CefRefPtr<CefRunFileDialogCallback> callback) override;

  // Alloy, as for any windowless browser.
  cef_runtime_style_t GetRuntimeStyle() override;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_QUIET_BROWSER_H_
