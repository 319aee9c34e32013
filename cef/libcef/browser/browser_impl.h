// A browser: one page target in a Chromium, seen through CEF's CefBrowser and
// CefBrowserHost (one object implements both, as in CEF itself).

#ifndef CEF_LIBCEF_BROWSER_BROWSER_IMPL_H_
#define CEF_LIBCEF_BROWSER_BROWSER_IMPL_H_

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "libcef/browser/navigation_policy.h"
#include "libcef/browser/render_side.h"
#include "libcef/browser/render_observer.h"
#include "libcef/browser/request_context_impl.h"

namespace cefengine {

class CaretReporter;
class ChromiumInstance;
class ContextMenus;
class DevToolsBrowser;
class DevToolsSession;
class DragSource;
class EngineWorld;
class FileDialogs;
class FindInPage;
class FrameSessions;
class FrameImpl;
class HangMonitor;
class PageEvents;
class PointerFeedback;
class Printing;
class ScriptDialogs;

class BrowserImpl : public CefBrowser, public CefBrowserHost {
 public:
  using CommandCallback =
      std::function<void(const QJsonObject& result, const QJsonObject& error)>;
  // A script's value (returned by value), or an error text.
  using EvaluateCallback =
      std::function<void(const QJsonValue& value, const QString& error)>;

  struct CreateParams {
    CefRefPtr<CefClient> client;
    CefRefPtr<RequestContextImpl> request_context;
    CefBrowserSettings settings;
    CefRefPtr<CefDictionaryValue> extra_info;
    std::string url;
    bool is_popup = false;
    // A popup's size when its client has no render handler.
    CefSize popup_size;
  };

  // CefBrowserHost::CreateBrowser and CreateBrowserSync. Engine UI thread.
  // With |sync| it blocks until the page target exists and returns the
  // browser after OnAfterCreated; otherwise OnAfterCreated follows once the
  // page is attached. Null (logged) when Chromium cannot serve it.
  static CefRefPtr<BrowserImpl> Create(CreateParams params, bool sync);

  ~BrowserImpl() override;

  // --- For the off-screen renderer and other engine parts --------------

  // The Chromium session serving this page, and the page's flat session on
  // it. Null or empty before the page is attached and after it went. Engine
  // UI thread.
  DevToolsSession* devtools() const;
  QString session_id() const;
  // Chromium's target id, also the main frame's id. Engine UI thread.
  const QString& target_id() const { return target_id_; }

  // Sends a command to this page's session, after everything sent before.
  // Commands sent before the page is attached wait for it. The callback (may
  // be empty) runs on the engine UI thread, with an error once the browser
  // is closed or its Chromium gone, when the reply misses its deadline
  // (HangMonitor::CommandDeadline), or at once when too many are under way
  // for a page that does not answer. Any thread.
  void SendPageCommand(const QString& method,
                       const QJsonObject& params,
                       CommandCallback callback = {});
  // As SendPageCommand, to the session of an out-of-process frame (the
  // page's own when empty). Any thread.
  void SendSessionCommand(const QString& session_id,
                          const QString& method,
                          const QJsonObject& params,
                          CommandCallback callback = {});
  // The session serving |frame_id|: an out-of-process frame's, else empty
  // for the page's own. Engine UI thread.
  QString SessionForFrame(const QString& frame_id) const;
  // The frame session whose event is being handled, empty for the page's
  // own. Engine UI thread, inside OnProtocolEvent.
  const QString& event_session() const { return event_session_; }
  // Emulation.setUserAgentOverride's parameters for this page's frames.
  QJsonObject UserAgentOverride() const;

  // The client and its render handler (null without one). Any thread.
  CefRefPtr<CefClient> client() const;
  CefRefPtr<CefRenderHandler> render_handler() const;
  // The render process's half, while the page is attached; else null. Engine
  // UI thread.
  RenderSide* render_side() const { return render_side_.get(); }
  CefRefPtr<CefDictionaryValue> extra_info() const { return extra_info_; }
  // Its storage holds the scheme handler factories. Engine UI thread.
  CefRefPtr<RequestContextImpl> request_context() const {
    return request_context_;
  }

  // The view as last applied: logical size from GetViewRect and the scale
  // from GetScreenInfo (1 when the handler gives none). Any thread.
  CefSize view_size() const;
  float device_scale_factor() const;
  // The scale Chromium paints at (--force-device-scale-factor of its
  // process). A page whose own factor differs is zoomed by the ratio, so
  // that frames still arrive at view_size() times device_scale_factor().
  // Any thread.
  float chromium_scale_factor() const;
  bool is_hidden() const;
  int windowless_frame_rate() const;
  // View pixels per CSS pixel of the page: its zoom. Any thread.
  double css_to_view_scale();

  // OnAfterCreated was called. Engine UI thread.
  bool after_created() const { return after_created_; }

  // The Chromium serving this page. Any thread.
  ChromiumInstance* chromium() const { return chromium_.get(); }

  // --- Engine internals ------------------------------------------------

  // An event of the page's session (|session_id|), of one of its frames'
  // sessions, or a target event about it (no session). Engine UI thread.
  void OnProtocolEvent(const QString& method,
                       const QJsonObject& params,
                       const QString& session_id = QString());

  // The page's script dialogs. Engine UI thread.
  ScriptDialogs* script_dialogs() const { return script_dialogs_.get(); }
  // The page's file choosers and RunFileDialog's. Engine UI thread.
  FileDialogs* file_dialogs() const { return file_dialogs_.get(); }
  // Printing, find in page and context menus. Engine UI thread.
  Printing* printing() const { return printing_.get(); }
  ContextMenus* context_menus() const { return context_menus_.get(); }
  HangMonitor* hang_monitor() const { return hang_monitor_.get(); }
  // Cursor, tooltip and the input method's caret. Engine UI thread.
  PointerFeedback* pointer_feedback() const { return pointer_feedback_.get(); }
  CaretReporter* caret_reporter() const { return caret_reporter_.get(); }
  // Drags the page starts. Engine UI thread.
  DragSource* drag_source() const { return drag_source_.get(); }
  // Where the last mouse event was sent, in view coordinates. Any thread.
  CefPoint last_mouse_point() const;
  // Closes a page whose renderer cannot even be crashed, reports it killed,
  // and leaves the browser for Reload or LoadURL to give a new page.
  // Engine UI thread.
  void DropPage();
  // A beforeunload dialog ended: a non-forced close goes on or, denied,
  // is called off. Engine UI thread.
  void OnUnloadAnswered(bool allowed);

  // Chromium died: the page is reported terminated and the browser waits,
  // without a page, for Reload or LoadURL to bring it back in a new
  // Chromium. Engine UI thread.
  void OnChromiumGone(cef_termination_status_t status,
                      int error_code,
                      const std::string& description);

  // Page.navigate in |frame_id| (empty: the main frame). Any thread.
  void Navigate(const QString& frame_id, const std::string& url);
  // Runtime.evaluate in the main world of |frame_id|; |callback| runs on the
  // engine UI thread. Any thread.
  void Evaluate(const QString& frame_id,
                const QString& expression,
                EvaluateCallback callback);
  // Runs |code| without waiting; exceptions become console messages
  // labelled with |script_url| and |start_line|. Any thread.
  void ExecuteJavaScript(const QString& frame_id,
                         const QString& code,
                         const QString& script_url,
                         int start_line);
  // An editing command ("copy", "selectAll", ...) on the focused element.
  // Any thread.
  void RunEditCommand(const char* command);

  // CefShutdown came with the browser open: lets go of the client and
  // everything else, without callbacks. After the engine threads ended.
  void ReleaseAfterShutdown();

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
  friend class FrameSessions;
  friend class PageEvents;

  struct QueuedCommand {
    QString session_id;  // empty: the page's
    QString method;
    QJsonObject params;
    CommandCallback callback;
  };

  BrowserImpl(int id, CreateParams params);

  // A popup Chromium opened and attached for this browser's page. Engine UI
  // thread.
  static void CreatePopup(CefRefPtr<BrowserImpl> opener,
                          CreateParams params,
                          const QString& target_id,
                          const QString& session_id);

  // Engine UI thread from here on.
  // An event, after the frame sessions had their look.
  void DispatchEvent(const QString& method, const QJsonObject& params);
  // Makes the page target, in a Chromium started if need be, and loads
  // |url| (none when empty) once it is attached.
  bool Start(bool sync, const std::string& url);
  // Once Chromium runs: asks it for the page. False if it cannot.
  bool CreateTarget(bool sync, const std::string& url);
  // Lets go of a page whose Chromium is gone, or that was dropped; the
  // browser stays.
  void Detach();
  // The navigation policy, render side and render observer let go of the
  // page that goes.
  void DropPageHooks();
  // A new page for a browser whose Chromium went, showing |url|.
  void Revive(const std::string& url);
  // Chromium went and nothing brought the page back yet. Any thread.
  bool IsGone() const;
  // Revive at the main frame's last address; false unless gone.
  bool ReviveAtCurrentUrl();
  // A page command ended: counted off, and a missed deadline looked into.
  void OnPageCommandDone(const QJsonObject& error);
  // The page target is this browser's: routes and the main frame.
  void RegisterTarget(const QString& target_id);
  // A target of our own making: waits for Chromium to attach it.
  void OnTargetCreated(const QString& target_id);
  void Attach(const QString& session_id);
  // Every domain answered: sends what waited and tells the client.
  void FinishAttach();
  void NotifyAfterCreated();
  // Asks the render handler for the view again; true if it changed.
  bool UpdateViewFromClient();
  // The two commands that apply view_size(), device_scale_factor() and the
  // zoom level to the page: Emulation.setDeviceMetricsOverride, then
  // Emulation.setVisibleSize. Engine UI thread.
  QJsonObject MetricsOverride();
  QJsonObject VisibleSize() const;
  // |params| of an input event with its point ("x", "y") in view
  // coordinates, moved to the page's zoomed view. Any thread.
  QJsonObject ToPagePoint(QJsonObject params) const;
  // A non-forced close first asks the page's beforeunload handlers.
  void CloseOnUiThread(bool force);
  // Page.close, which runs them and closes the target if they allow it;
  // false when the page cannot be asked.
  bool AskUnload();
  // Sends Page.close for |request| until the page answers.
  void SendUnloadRequest(int request);
  // Closes anyway when the page neither answers nor goes in time, unless
  // the client is still deciding.
  void WatchUnload();
  // The page's target went away by itself (window.close(), closed outside).
  void OnTargetGone();
  void Destroy(bool close_target);
  // Closes the inspector if one is open, telling its client unless the
  // engine threads ended. Engine UI thread.
  void CloseInspector(bool tell_client = true);
  void NavigateHistory(int offset);
  void SetFocusOnUiThread(bool focus);

  CefRefPtr<FrameImpl> FindFrame(const QString& id) const;
  CefRefPtr<FrameImpl> AddFrame(const QString& id, const QString& parent_id);
  void RemoveFrame(const QString& id);
  void SetLoadState(bool loading);
  void SetHistory(const QJsonArray& entries, int current_index);
  bool HistoryState(bool* can_go_back, bool* can_go_forward) const;
  void SetDocumentStatus(int http_status);

  // Input.dispatchMouseEvent with |params|, then |after|; with a full
  // Chromium the renderer may route it to an open drop-down instead. Any
  // thread.
  void SendMouseInput(const CefMouseEvent& event,
                      int button,
                      bool up,
                      int wheel_x,
                      int wheel_y,
                      QJsonObject params,
                      std::function<void()> after);

  // Touch points held down, for Input.dispatchTouchEvent's full lists.
  QJsonArray TouchPoints() const;

  const int id_;
  const bool is_popup_;
  const CefBrowserSettings settings_;
  const CefRefPtr<CefDictionaryValue> extra_info_;
  const std::string initial_url_;
  const CefSize popup_size_;

  // Engine UI thread.
  CefRefPtr<RequestContextImpl> request_context_;
  std::shared_ptr<ChromiumInstance> chromium_;
  QString target_id_;
  std::unique_ptr<PageEvents> page_events_;
  std::unique_ptr<ScriptDialogs> script_dialogs_;
  std::unique_ptr<FileDialogs> file_dialogs_;
  std::unique_ptr<Printing> printing_;
  std::unique_ptr<FindInPage> find_in_page_;
  std::unique_ptr<ContextMenus> context_menus_;
  std::unique_ptr<PointerFeedback> pointer_feedback_;
  std::unique_ptr<CaretReporter> caret_reporter_;
  std::unique_ptr<DragSource> drag_source_;
  // StartDownload's links, out of the page's reach; made at first use.
  std::unique_ptr<EngineWorld> download_world_;
  std::unique_ptr<RenderObserver> render_observer_;
  std::unique_ptr<HangMonitor> hang_monitor_;
  std::unique_ptr<FrameSessions> frame_sessions_;
  QString event_session_;
  std::unique_ptr<NavigationPolicy> navigation_policy_;
  std::unique_ptr<RenderSide> render_side_;
  CefRefPtr<DevToolsBrowser> devtools_browser_;
  bool after_created_ = false;
  bool closing_ = false;
  // DoClose answered true: the next close request finishes the job.
  bool close_deferred_ = false;
  // Page.close was sent and the page's verdict is awaited; the number tells
  // one request's timeout from the next.
  bool asking_unload_ = false;
  int unload_request_ = 0;
  bool target_gone_ = false;

  // Whether |devtools_browser_| is there, for any thread.
  std::atomic<bool> has_devtools_{false};

  mutable std::mutex mutex_;
  // Guarded by |mutex_|: what any thread may read or send.
  CefRefPtr<CefClient> client_;
  std::shared_ptr<DevToolsSession> devtools_;
  QString session_id_;
  bool attached_ = false;
  bool destroyed_ = false;
  // Chromium went and no new page was asked for yet.
  bool gone_ = false;
  std::vector<QueuedCommand> queued_;
  // Frame sessions that paused a request, by its Fetch id: the answer goes
  // there.
  std::map<QString, QString> fetch_sessions_;
  // Page commands queued or sent and not ended yet.
  int commands_in_flight_ = 0;
  bool warned_command_limit_ = false;
  CefRefPtr<FrameImpl> main_frame_;
  std::map<QString, CefRefPtr<FrameImpl>> frames_;
  bool loading_ = false;
  bool has_document_ = false;
  int document_status_ = 0;
  QJsonArray history_;
  int history_index_ = -1;
  CefSize view_size_{800, 600};
  float device_scale_factor_ = 1;
  float chromium_scale_factor_ = 1;
  // The page was once told it paints softer than its Chromium could.
  bool warned_soft_scale_ = false;
  bool hidden_ = false;
  int frame_rate_ = 30;
  double zoom_level_ = 0;
  bool audio_muted_ = false;
  QString composition_;
  std::map<int, QJsonObject> touch_points_;
  CefRefPtr<CefDragData> drag_data_;
  // What the drag over the page last allowed: the drop may take no more.
  DragOperationsMask drag_allowed_ops_ = DRAG_OPERATION_EVERY;
  CefPoint last_mouse_point_;

  IMPLEMENT_REFCOUNTING(BrowserImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_BROWSER_IMPL_H_
