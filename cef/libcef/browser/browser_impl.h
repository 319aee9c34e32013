// A browser: one page target in a Chromium, seen through CEF's CefBrowser and
// CefBrowserHost (one object implements both, as in CEF itself). It holds
// its parts, each owning its own state, and hands CEF's calls to them.

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
#include "libcef/browser/page_connection.h"
#include "libcef/browser/request_context_impl.h"
#include "libcef/browser/script_runner.h"
#include "libcef/browser/unsupported_host_calls.h"

namespace cefengine {

class BrowserCloser;
class BrowserView;
class CaretReporter;
class ChromiumInstance;
class ContextMenus;
class DevToolsSession;
class DragSource;
class EventRouter;
class FileDialogs;
class FindInPage;
class FrameSessions;
class FrameTree;
class HangMonitor;
class Inspector;
class NavigationPolicy;
class PageAttacher;
class PageEvents;
class PageHooks;
class PageInput;
class PageNavigation;
class PageRecovery;
class PageZoom;
class PointerFeedback;
class Printing;
class RenderObserver;
class RenderSide;
class ScriptDialogs;

class BrowserImpl : public CefBrowser, public UnsupportedHostCalls {
 public:
  using CommandCallback = PageConnection::CommandCallback;

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
  // browser after OnAfterCreated; otherwise OnAfterCreated comes at once and
  // the page follows. Null (logged) when Chromium cannot serve it.
  static CefRefPtr<BrowserImpl> Create(CreateParams params, bool sync);
  // A popup Chromium opened and attached for |opener|'s page. Engine UI
  // thread.
  static void CreatePopup(CefRefPtr<BrowserImpl> opener,
                          CreateParams params,
                          const QString& target_id,
                          const QString& session_id);

  ~BrowserImpl() override;

  // --- For the off-screen renderer and other engine parts --------------

  // The Chromium session serving this page, and the page's flat session on
  // it. Null or empty before the page is attached and after it went. Engine
  // UI thread.
  DevToolsSession* devtools() const;
  QString session_id() const;
  // Chromium's target id, also the main frame's id. Engine UI thread.
  const QString& target_id() const;

  // Sends a command to this page's session, after everything sent before;
  // see PageConnection::Send. Any thread.
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
  const QString& event_session() const;
  // Emulation.setUserAgentOverride's parameters for this page's frames.
  QJsonObject UserAgentOverride() const;

  // The client and its render handler (null without one). Any thread.
  CefRefPtr<CefClient> client() const;
  CefRefPtr<CefRenderHandler> render_handler() const;
  // The render process's half, while the page is attached; else null. Engine
  // UI thread.
  RenderSide* render_side() const;
  CefRefPtr<CefDictionaryValue> extra_info() const { return extra_info_; }
  const CefBrowserSettings& settings() const { return settings_; }
  // The address the browser was created with. Any thread.
  const std::string& initial_url() const { return initial_url_; }
  // Its storage holds the scheme handler factories. Engine UI thread.
  CefRefPtr<RequestContextImpl> request_context() const {
    return request_context_;
  }

  // The view as last applied; see BrowserView. Any thread.
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
  bool after_created() const;

  // The Chromium serving this page. Any thread.
  ChromiumInstance* chromium() const { return chromium_.get(); }

  // --- Engine internals ------------------------------------------------

  // An event of the page's session (|session_id|), of one of its frames'
  // sessions, or a target event about it (no session). Engine UI thread.
  void OnProtocolEvent(const QString& method,
                       const QJsonObject& params,
                       const QString& session_id = QString());

  // The browser's parts. Engine UI thread unless their own header says
  // otherwise.
  PageConnection* connection() const { return connection_.get(); }
  FrameTree* frames() const { return frames_.get(); }
  PageNavigation* navigation() const { return navigation_.get(); }
  // Scripts in the page's frames, and the page's editing commands.
  ScriptRunner* scripts() const { return scripts_.get(); }
  PageInput* input() const { return input_.get(); }
  BrowserView* view() const { return view_.get(); }
  BrowserCloser* closer() const { return closer_.get(); }
  PageAttacher* attacher() const { return attacher_.get(); }
  PageRecovery* recovery() const { return recovery_.get(); }
  PageHooks* hooks() const { return hooks_.get(); }
  PageEvents* page_events() const { return page_events_.get(); }
  FrameSessions* frame_sessions() const { return frame_sessions_.get(); }
  NavigationPolicy* navigation_policy() const;
  RenderObserver* render_observer() const;
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
  // The browser ends: OnBeforeClose, and Target.closeTarget with
  // |close_target|. Engine UI thread.
  void Destroy(bool close_target);
  // A beforeunload dialog ended: a non-forced close goes on or, denied,
  // is called off. Engine UI thread.
  void OnUnloadAnswered(bool allowed);
  // The page's target went away by itself. Engine UI thread.
  void OnTargetGone();

  // Chromium died: the page is reported terminated and the browser waits,
  // without a page, for Reload or LoadURL to bring it back in a new
  // Chromium. Engine UI thread.
  void OnChromiumGone(cef_termination_status_t status,
                      int error_code,
                      const std::string& description);

  // CefShutdown came with the browser open: lets go of the client and
  // everything else, without callbacks. After the engine threads ended.
  void ReleaseAfterShutdown();

  // --- CefBrowser and CefBrowserHost, by the part that serves them -----

  // The browser itself.
  CefRefPtr<CefBrowserHost> GetHost() override;
  CefRefPtr<CefBrowser> GetBrowser() override;
  bool IsValid() override;
  int GetIdentifier() override;
  bool IsSame(CefRefPtr<CefBrowser> that) override;
  bool IsPopup() override;
  CefRefPtr<CefClient> GetClient() override;
  CefRefPtr<CefRequestContext> GetRequestContext() override;
  bool IsWindowRenderingDisabled() override;
  cef_runtime_style_t GetRuntimeStyle() override;

  // Closing: BrowserCloser.
  void CloseBrowser(bool force_close) override;
  bool TryCloseBrowser() override;

  // Navigation and history: PageNavigation.
  bool CanGoBack() override;
  void GoBack() override;
  bool CanGoForward() override;
  void GoForward() override;
  bool IsLoading() override;
  void Reload() override;
  void ReloadIgnoreCache() override;
  void StopLoad() override;
  bool HasDocument() override;
  void GetNavigationEntries(CefRefPtr<CefNavigationEntryVisitor> visitor,
                            bool current_only) override;
  CefRefPtr<CefNavigationEntry> GetVisibleNavigationEntry() override;

  // Frames: FrameTree.
  CefRefPtr<CefFrame> GetMainFrame() override;
  CefRefPtr<CefFrame> GetFocusedFrame() override;
  CefRefPtr<CefFrame> GetFrameByIdentifier(const CefString& identifier) override;
  CefRefPtr<CefFrame> GetFrameByName(const CefString& name) override;
  size_t GetFrameCount() override;
  void GetFrameIdentifiers(std::vector<CefString>& identifiers) override;
  void GetFrameNames(std::vector<CefString>& names) override;

  // The view, its size, visibility and frame rate: BrowserView.
  void WasResized() override;
  void WasHidden(bool hidden) override;
  void NotifyScreenInfoChanged() override;
  void Invalidate(PaintElementType type) override;
  void SendExternalBeginFrame() override;
  int GetWindowlessFrameRate() override;
  void SetWindowlessFrameRate(int frame_rate) override;

  // Zoom: PageZoom.
  bool CanZoom(cef_zoom_command_t command) override;
  void Zoom(cef_zoom_command_t command) override;
  double GetDefaultZoomLevel() override;
  double GetZoomLevel() override;
  void SetZoomLevel(double zoomLevel) override;

  // Focus, keys and the input method: PageInput.
  void SetFocus(bool focus) override;
  void SendKeyEvent(const CefKeyEvent& event) override;
  void ImeSetComposition(const CefString& text,
                         const std::vector<CefCompositionUnderline>& underlines,
                         const CefRange& replacement_range,
                         const CefRange& selection_range) override;
  void ImeCommitText(const CefString& text,
                     const CefRange& replacement_range,
                     int relative_cursor_pos) override;
  void ImeFinishComposingText(bool keep_selection) override;
  void ImeCancelComposition() override;

  // Mouse and touch: PageInput.
  void SendMouseMoveEvent(const CefMouseEvent& event, bool mouseLeave) override;
  void SendMouseClickEvent(const CefMouseEvent& event,
                           MouseButtonType type,
                           bool mouseUp,
                           int clickCount) override;
  void SendMouseWheelEvent(const CefMouseEvent& event,
                           int deltaX,
                           int deltaY) override;
  void SendTouchEvent(const CefTouchEvent& event) override;

  // Drags into the page and out of it: PageInput.
  void DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                           const CefMouseEvent& event,
                           DragOperationsMask allowed_ops) override;
  void DragTargetDragOver(const CefMouseEvent& event,
                          DragOperationsMask allowed_ops) override;
  void DragTargetDragLeave() override;
  void DragTargetDrop(const CefMouseEvent& event) override;
  void DragSourceEndedAt(int x, int y, DragOperationsMask op) override;
  void DragSourceSystemDragEnded() override;

  // File dialogs, printing, find, downloads: FileDialogs, Printing, FindInPage, ScriptRunner.
  void RunFileDialog(FileDialogMode mode,
                     const CefString& title,
                     const CefString& default_file_path,
                     const std::vector<CefString>& accept_filters,
                     CefRefPtr<CefRunFileDialogCallback> callback) override;
  void Print() override;
  void PrintToPDF(const CefString& path,
                  const CefPdfPrintSettings& settings,
                  CefRefPtr<CefPdfPrintCallback> callback) override;
  void Find(const CefString& searchText,
            bool forward,
            bool matchCase,
            bool findNext) override;
  void StopFinding(bool clearSelection) override;
  void StartDownload(const CefString& url) override;

  // The inspector: Inspector.
  void ShowDevTools(const CefWindowInfo& windowInfo,
                    CefRefPtr<CefClient> client,
                    const CefBrowserSettings& settings,
                    const CefPoint& inspect_element_at) override;
  void CloseDevTools() override;
  bool HasDevTools() override;

  // Whether the page answers: HangMonitor.
  bool IsRenderProcessUnresponsive() override;

 private:
  BrowserImpl(int id, CreateParams params);

  const int id_;
  const bool is_popup_;
  const CefBrowserSettings settings_;
  const CefRefPtr<CefDictionaryValue> extra_info_;
  const std::string initial_url_;
  const CefRefPtr<RequestContextImpl> request_context_;
  const std::shared_ptr<ChromiumInstance> chromium_;

  // The parts, each with its own state.
  const std::unique_ptr<PageConnection> connection_;
  const std::unique_ptr<FrameTree> frames_;
  const std::unique_ptr<PageNavigation> navigation_;
  const std::unique_ptr<BrowserView> view_;
  const std::unique_ptr<PageZoom> zoom_;
  const std::unique_ptr<PageInput> input_;
  const std::unique_ptr<ScriptRunner> scripts_;
  const std::unique_ptr<BrowserCloser> closer_;
  const std::unique_ptr<PageAttacher> attacher_;
  const std::unique_ptr<PageRecovery> recovery_;
  const std::unique_ptr<PageHooks> hooks_;
  const std::unique_ptr<Inspector> inspector_;
  const std::unique_ptr<PageEvents> page_events_;
  const std::unique_ptr<ScriptDialogs> script_dialogs_;
  const std::unique_ptr<FileDialogs> file_dialogs_;
  const std::unique_ptr<Printing> printing_;
  const std::unique_ptr<FindInPage> find_in_page_;
  const std::unique_ptr<ContextMenus> context_menus_;
  const std::unique_ptr<PointerFeedback> pointer_feedback_;
  const std::unique_ptr<CaretReporter> caret_reporter_;
  const std::unique_ptr<DragSource> drag_source_;
  const std::unique_ptr<HangMonitor> hang_monitor_;
  const std::unique_ptr<FrameSessions> frame_sessions_;
  const std::unique_ptr<EventRouter> events_;

  mutable std::mutex mutex_;
  CefRefPtr<CefClient> client_;  // guarded by |mutex_|

  IMPLEMENT_REFCOUNTING(BrowserImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_BROWSER_IMPL_H_
