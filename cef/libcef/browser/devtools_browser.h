// The inspector as the client sees it: a popup browser whose window is a
// DevToolsWindow on the host's display. Closing it works; everything else
// of CefBrowser and CefBrowserHost answers quietly, as for a browser with
// no page of its own to offer, since the front end lives in another
// Chromium that the engine does not drive.

#ifndef CEF_LIBCEF_BROWSER_DEVTOOLS_BROWSER_H_
#define CEF_LIBCEF_BROWSER_DEVTOOLS_BROWSER_H_

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include <QString>

#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "libcef/browser/unsupported_host_calls.h"

namespace cefengine {

class DevToolsSession;
class DevToolsWindow;

class DevToolsBrowser : public CefBrowser, public UnsupportedHostCalls {
 public:
  // Told once when the inspector goes by itself or through CloseBrowser, so
  // that the inspected browser lets go of it; not when it is closed by
  // Close(). Engine UI thread.
  using ClosedCallback = std::function<void()>;

  // Opens the inspector of |target_id| in |page_chromium|, on behalf of
  // |client|. Null, with the reason logged, when no window can be opened.
  // The client hears of it from NotifyCreated. Engine UI thread.
  static CefRefPtr<DevToolsBrowser> Open(
      std::shared_ptr<DevToolsSession> page_chromium,
      const QString& target_id,
      CefRefPtr<CefClient> client,
      ClosedCallback closed);

  ~DevToolsBrowser() override;

  // OnAfterCreated to the client's life span handler. Engine UI thread.
  void NotifyCreated();

  // Closes the window. With |tell_client| the client's life span handler
  // hears DoClose and OnBeforeClose first; without, nothing is called (for
  // CefShutdown, after the engine threads ended). Either way the client is
  // let go of. Blocks while the window's Chromium exits. Engine UI thread.
  void Close(bool tell_client);

  // --- CefBrowser ------------------------------------------------------
  bool IsValid() override;
  CefRefPtr<CefBrowserHost> GetHost() override;
  bool CanGoBack() override;
  void GoBack() override;
  bool CanGoForward() override;
  void GoForward() override;
  bool IsLoading() override;
  void Reload() override;
  void ReloadIgnoreCache() override;
  void StopLoad() override;
  int GetIdentifier() override;
  bool IsSame(CefRefPtr<CefBrowser> that) override;
  bool IsPopup() override;
  bool HasDocument() override;
  CefRefPtr<CefFrame> GetMainFrame() override;
  CefRefPtr<CefFrame> GetFocusedFrame() override;
  CefRefPtr<CefFrame> GetFrameByIdentifier(const CefString& identifier) override;
  CefRefPtr<CefFrame> GetFrameByName(const CefString& name) override;
  size_t GetFrameCount() override;
  void GetFrameIdentifiers(std::vector<CefString>& identifiers) override;
  void GetFrameNames(std::vector<CefString>& names) override;

  // --- CefBrowserHost --------------------------------------------------
  CefRefPtr<CefBrowser> GetBrowser() override;
  void CloseBrowser(bool force_close) override;
  bool TryCloseBrowser() override;
  void SetFocus(bool focus) override;
  CefRefPtr<CefClient> GetClient() override;
  CefRefPtr<CefRequestContext> GetRequestContext() override;
  bool CanZoom(cef_zoom_command_t command) override;
  void Zoom(cef_zoom_command_t command) override;
  double GetDefaultZoomLevel() override;
  double GetZoomLevel() override;
  void SetZoomLevel(double zoomLevel) override;
  void RunFileDialog(FileDialogMode mode,
                     const CefString& title,
                     const CefString& default_file_path,
                     const std::vector<CefString>& accept_filters,
                     CefRefPtr<CefRunFileDialogCallback> callback) override;
  void StartDownload(const CefString& url) override;
  void Print() override;
  void PrintToPDF(const CefString& path,
                  const CefPdfPrintSettings& settings,
                  CefRefPtr<CefPdfPrintCallback> callback) override;
  void Find(const CefString& searchText,
            bool forward,
            bool matchCase,
            bool findNext) override;
  void StopFinding(bool clearSelection) override;
  void ShowDevTools(const CefWindowInfo& windowInfo,
                    CefRefPtr<CefClient> client,
                    const CefBrowserSettings& settings,
                    const CefPoint& inspect_element_at) override;
  void CloseDevTools() override;
  bool HasDevTools() override;
  void GetNavigationEntries(CefRefPtr<CefNavigationEntryVisitor> visitor,
                            bool current_only) override;
  bool IsWindowRenderingDisabled() override;
  void WasResized() override;
  void WasHidden(bool hidden) override;
  void NotifyScreenInfoChanged() override;
  void Invalidate(PaintElementType type) override;
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
  int GetWindowlessFrameRate() override;
  void SetWindowlessFrameRate(int frame_rate) override;
  void ImeSetComposition(const CefString& text,
                         const std::vector<CefCompositionUnderline>& underlines,
                         const CefRange& replacement_range,
                         const CefRange& selection_range) override;
  void ImeCommitText(const CefString& text,
                     const CefRange& replacement_range,
                     int relative_cursor_pos) override;
  void ImeFinishComposingText(bool keep_selection) override;
  void ImeCancelComposition() override;
  void DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                           const CefMouseEvent& event,
                           DragOperationsMask allowed_ops) override;
  void DragTargetDragOver(const CefMouseEvent& event,
                          DragOperationsMask allowed_ops) override;
  void DragTargetDragLeave() override;
  void DragTargetDrop(const CefMouseEvent& event) override;
  void DragSourceEndedAt(int x, int y, DragOperationsMask op) override;
  void DragSourceSystemDragEnded() override;
  CefRefPtr<CefNavigationEntry> GetVisibleNavigationEntry() override;
  bool IsRenderProcessUnresponsive() override;
  cef_runtime_style_t GetRuntimeStyle() override;

 private:
  DevToolsBrowser(CefRefPtr<CefClient> client, ClosedCallback closed);

  // The window went, or CloseBrowser came: the inspected browser lets go,
  // then the client hears of the close. Engine UI thread.
  void Finish();
  CefRefPtr<CefLifeSpanHandler> LifeSpanHandler() const;

  const int id_;
  // Engine UI thread, but for |valid_| and |client_|, guarded for the
  // client's calls from any thread.
  ClosedCallback closed_;
  std::shared_ptr<DevToolsWindow> window_;
  mutable std::mutex mutex_;
  bool valid_ = true;
  CefRefPtr<CefClient> client_;

  IMPLEMENT_REFCOUNTING(DevToolsBrowser);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_DEVTOOLS_BROWSER_H_
