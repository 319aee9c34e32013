// A browser: one page target in a Chromium, seen through CEF's CefBrowser and
// CefBrowserHost (one object implements both, as in CEF itself).

#ifndef CEF_LIBCEF_BROWSER_BROWSER_IMPL_H_
#define CEF_LIBCEF_BROWSER_BROWSER_IMPL_H_

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <QJsonObject>
#include <QString>

#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "libcef/browser/render_observer.h"

namespace cefengine {

class ChromiumInstance;
class DevToolsSession;
class FrameImpl;
class PageEvents;
class RequestContextImpl;

class BrowserImpl : public CefBrowser, public CefBrowserHost {
 public:
  struct CreateParams {
    CefRefPtr<CefClient> client;
    CefRefPtr<RequestContextImpl> request_context;
    std::string url;
    // Popups only: the opener, and the target Chromium already made.
    CefRefPtr<BrowserImpl> opener;
    QString popup_target_id;
  };

  // Engine UI thread. Not yet attached; Create() follows.
  BrowserImpl(int id, CreateParams params);
  ~BrowserImpl() override;

  // --- For the off-screen renderer and other engine parts --------------

  // The Chromium serving this page, and the page's flat session on it. Null
  // or empty before OnAttached and after OnDetached. Engine UI thread.
  DevToolsSession* devtools() const;
  const QString& session_id() const { return session_id_; }
  const QString& target_id() const { return target_id_; }

  // Sends a command to this page's session; the callback runs on the engine
  // UI thread (with a "not attached" error when there is no page). Any
  // thread.
  void SendPageCommand(const QString& method,
                       const QJsonObject& params,
                       std::function<void(const QJsonObject& result,
                                          const QJsonObject& error)> callback);

  // The client and its render handler (null without one). Any thread.
  CefRefPtr<CefClient> client() const { return client_; }
  CefRefPtr<CefRenderHandler> render_handler() const;

  // The view as last applied: logical size from GetViewRect and the scale
  // from GetScreenInfo (1 when the handler gives none). Any thread.
  CefSize view_size() const;
  float device_scale_factor() const;
  // The scale Chromium paints at (--force-device-scale-factor of its
  // process): frames arrive at view_size() times this. Any thread.
  float chromium_scale_factor() const;
  bool is_hidden() const;
  int windowless_frame_rate() const;

  // --- Engine internals ------------------------------------------------

  // Attaches to a new page target (or the popup's one) and navigates.
  // Engine UI thread. With |sync| it blocks until OnAfterCreated ran and
  // returns whether the browser exists; otherwise returns true and reports
  // through the client later.
  bool Create(bool sync);

  // Chromium died: report the browser terminated and close it. Engine UI
  // thread.
  void OnChromiumGone(cef_termination_status_t status,
                      int exit_code,
                      const std::string& description);

  // Target-level events about this page (title, crash, popups), routed by
  // the Chromium instance. Engine UI thread.
  void OnTargetInfoChanged(const QJsonObject& target_info);
  void OnPopupTargetCreated(const QJsonObject& target_info);

  FrameImpl* frame_impl(const QString& frame_id);
  // Page.navigate in |frame_id| ("" = main frame). Any thread.
  void Navigate(const QString& frame_id, const std::string& url);
  // Runtime.evaluate in |frame_id|'s main world; |callback| (may be empty)
  // gets the result value or an error text. Any thread.
  void Evaluate(const QString& frame_id,
                const QString& expression,
                std::function<void(const QJsonObject& value,
                                   const QString& error)> callback);

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
  CefWindowHandle GetWindowHandle() override;
  CefWindowHandle GetOpenerWindowHandle() override;
  bool HasView() override;
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
  void DownloadImage(const CefString& image_url,
                     bool is_favicon,
                     uint32_t max_image_size,
                     bool bypass_cache,
                     CefRefPtr<CefDownloadImageCallback> callback) override;
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
  bool SendDevToolsMessage(const void* message, size_t message_size) override;
  int ExecuteDevToolsMethod(int message_id,
                            const CefString& method,
                            CefRefPtr<CefDictionaryValue> params) override;
  CefRefPtr<CefRegistration> AddDevToolsMessageObserver(
      CefRefPtr<CefDevToolsMessageObserver> observer) override;
  void GetNavigationEntries(CefRefPtr<CefNavigationEntryVisitor> visitor,
                            bool current_only) override;
  void ReplaceMisspelling(const CefString& word) override;
  void AddWordToDictionary(const CefString& word) override;
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
  void SendCaptureLostEvent() override;
  void NotifyMoveOrResizeStarted() override;
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
  void SetAccessibilityState(cef_state_t accessibility_state) override;
  void SetAutoResizeEnabled(bool enabled,
                            const CefSize& min_size,
                            const CefSize& max_size) override;
  void SetAudioMuted(bool mute) override;
  bool IsAudioMuted() override;
  bool IsFullscreen() override;
  void ExitFullscreen(bool will_cause_resize) override;
  bool CanExecuteChromeCommand(int command_id) override;
  void ExecuteChromeCommand(int command_id,
                            cef_window_open_disposition_t disposition) override;
  bool IsRenderProcessUnresponsive() override;
  cef_runtime_style_t GetRuntimeStyle() override;

 private:
  friend class PageEvents;
  IMPLEMENT_REFCOUNTING(BrowserImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_BROWSER_IMPL_H_
