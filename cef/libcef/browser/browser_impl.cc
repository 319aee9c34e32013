#include "libcef/browser/browser_impl.h"

#include <utility>

#include "include/base/cef_logging.h"
#include "libcef/browser/browser_closer.h"
#include "libcef/browser/browser_registry.h"
#include "libcef/browser/browser_view.h"
#include "libcef/browser/caret_reporter.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/context_menus.h"
#include "libcef/browser/context_storage.h"
#include "libcef/browser/drag_source.h"
#include "libcef/browser/event_router.h"
#include "libcef/browser/file_dialogs.h"
#include "libcef/browser/find_in_page.h"
#include "libcef/browser/frame_impl.h"
#include "libcef/browser/frame_sessions.h"
#include "libcef/browser/frame_tree.h"
#include "libcef/browser/hang_monitor.h"
#include "libcef/browser/inspector.h"
#include "libcef/browser/page_attacher.h"
#include "libcef/browser/page_events.h"
#include "libcef/browser/page_hooks.h"
#include "libcef/browser/page_input.h"
#include "libcef/browser/page_navigation.h"
#include "libcef/browser/page_recovery.h"
#include "libcef/browser/page_zoom.h"
#include "libcef/browser/pointer_feedback.h"
#include "libcef/browser/printing.h"
#include "libcef/browser/script_dialogs.h"
#include "libcef/browser/ui_task.h"
#include "libcef/devtools/devtools_session.h"

namespace cefengine {

// --- Creation -------------------------------------------------------------

BrowserImpl::BrowserImpl(int id, CreateParams params)
    : id_(id),
      is_popup_(params.is_popup),
      settings_(params.settings),
      extra_info_(params.extra_info),
      initial_url_(params.url),
      request_context_(params.request_context),
      chromium_(params.request_context->storage()->chromium),
      connection_(std::make_unique<PageConnection>(this)),
      frames_(std::make_unique<FrameTree>(this)),
      navigation_(std::make_unique<PageNavigation>(this)),
      view_(std::make_unique<BrowserView>(this,
                                          params.settings.windowless_frame_rate,
                                          params.popup_size)),
      zoom_(std::make_unique<PageZoom>(this)),
      input_(std::make_unique<PageInput>(this)),
      scripts_(std::make_unique<ScriptRunner>(this)),
      closer_(std::make_unique<BrowserCloser>(this)),
      attacher_(std::make_unique<PageAttacher>(this)),
      recovery_(std::make_unique<PageRecovery>(this)),
      hooks_(std::make_unique<PageHooks>(this)),
      inspector_(std::make_unique<Inspector>(this)),
      page_events_(std::make_unique<PageEvents>(this)),
      script_dialogs_(std::make_unique<ScriptDialogs>(this)),
      file_dialogs_(std::make_unique<FileDialogs>(this)),
      printing_(std::make_unique<Printing>(this)),
      find_in_page_(std::make_unique<FindInPage>(this)),
      context_menus_(std::make_unique<ContextMenus>(this)),
      pointer_feedback_(std::make_unique<PointerFeedback>(this)),
      caret_reporter_(std::make_unique<CaretReporter>(this)),
      drag_source_(std::make_unique<DragSource>(this)),
      hang_monitor_(std::make_unique<HangMonitor>(this)),
      frame_sessions_(std::make_unique<FrameSessions>(this)),
      events_(std::make_unique<EventRouter>(this)),
      client_(params.client) {}

BrowserImpl::~BrowserImpl() = default;

CefRefPtr<BrowserImpl> BrowserImpl::Create(CreateParams params, bool sync) {
  CefRefPtr<BrowserImpl> browser =
      new BrowserImpl(BrowserRegistry::Get().NextBrowserId(), std::move(params));
  BrowserRegistry::Get().AddBrowser(browser);
  if (!browser->attacher_->Start(sync, browser->initial_url_)) {
    BrowserRegistry::Get().RemoveBrowser(browser->id_);
    return nullptr;
  }
  return browser;
}

void BrowserImpl::CreatePopup(CefRefPtr<BrowserImpl> opener,
                              CreateParams params,
                              const QString& target_id,
                              const QString& session_id) {
  CefRefPtr<BrowserImpl> popup =
      new BrowserImpl(BrowserRegistry::Get().NextBrowserId(), std::move(params));
  BrowserRegistry::Get().AddBrowser(popup);
  popup->attacher_->AttachPopup(target_id, session_id);
}

// --- Engine-side accessors ------------------------------------------------

DevToolsSession* BrowserImpl::devtools() const {
  return connection_->devtools();
}

QString BrowserImpl::session_id() const {
  return connection_->session_id();
}

const QString& BrowserImpl::target_id() const {
  return attacher_->target_id();
}

bool BrowserImpl::after_created() const {
  return attacher_->after_created();
}

QJsonObject BrowserImpl::UserAgentOverride() const {
  return attacher_->UserAgentOverride();
}

QString BrowserImpl::SessionForFrame(const QString& frame_id) const {
  return frame_sessions_->SessionFor(frame_id);
}

CefRefPtr<CefClient> BrowserImpl::client() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return client_;
}

CefRefPtr<CefRenderHandler> BrowserImpl::render_handler() const {
  CefRefPtr<CefClient> client = this->client();
  return client ? client->GetRenderHandler() : nullptr;
}

RenderSide* BrowserImpl::render_side() const {
  return hooks_->render_side();
}

NavigationPolicy* BrowserImpl::navigation_policy() const {
  return hooks_->navigation_policy();
}

RenderObserver* BrowserImpl::render_observer() const {
  return hooks_->render_observer();
}

CefSize BrowserImpl::view_size() const {
  return view_->view_size();
}

float BrowserImpl::device_scale_factor() const {
  return view_->device_scale_factor();
}

float BrowserImpl::chromium_scale_factor() const {
  return view_->chromium_scale_factor();
}

bool BrowserImpl::is_hidden() const {
  return view_->is_hidden();
}

int BrowserImpl::windowless_frame_rate() const {
  return view_->frame_rate();
}

double BrowserImpl::css_to_view_scale() {
  return zoom_->applied_factor();
}

CefPoint BrowserImpl::last_mouse_point() const {
  return input_->last_mouse_point();
}

void BrowserImpl::SendPageCommand(const QString& method,
                                  const QJsonObject& params,
                                  CommandCallback callback) {
  connection_->Send(QString(), method, params, std::move(callback));
}

void BrowserImpl::SendSessionCommand(const QString& session_id,
                                     const QString& method,
                                     const QJsonObject& params,
                                     CommandCallback callback) {
  connection_->Send(session_id, method, params, std::move(callback));
}

// --- Events ---------------------------------------------------------------

void BrowserImpl::OnProtocolEvent(const QString& method,
                                  const QJsonObject& params,
                                  const QString& session_id) {
  events_->OnProtocolEvent(method, params, session_id);
}

const QString& BrowserImpl::event_session() const {
  return events_->event_session();
}

// --- The page's end and the browser's -------------------------------------

void BrowserImpl::OnChromiumGone(cef_termination_status_t status,
                                 int error_code,
                                 const std::string& description) {
  recovery_->OnChromiumGone(status, error_code, description);
}

void BrowserImpl::DropPage() {
  recovery_->DropPage();
}

void BrowserImpl::OnUnloadAnswered(bool allowed) {
  closer_->OnUnloadAnswered(allowed);
}

void BrowserImpl::OnTargetGone() {
  closer_->OnTargetGone();
}

void BrowserImpl::Destroy(bool close_target) {
  if (!connection_->Close()) {
    return;
  }
  CefRefPtr<BrowserImpl> self(this);
  frames_->Close();
  closer_->OnDestroyed();
  hang_monitor_->Reset();
  frame_sessions_->Clear();
  inspector_->CloseNow();
  script_dialogs_->OnPageLeft();
  file_dialogs_->OnBrowserClosed();
  printing_->Release();
  context_menus_->Release();
  page_events_->Clear();
  hooks_->Detach();
  const QString& target = target_id();
  if (close_target && !target.isEmpty()) {
    if (std::shared_ptr<DevToolsSession> session = chromium_->session()) {
      session->sendCommand(QStringLiteral("Target.closeTarget"),
                           QJsonObject{{"targetId", target}}, QString(), {});
    }
  }
  chromium_->RemoveBrowser(this);
  CefRefPtr<CefClient> client = this->client();
  if (CefRefPtr<CefLifeSpanHandler> life_span =
          client ? client->GetLifeSpanHandler() : nullptr) {
    life_span->OnBeforeClose(this);
  }
  BrowserRegistry::Get().RemoveBrowser(id_);
  // As CEF does: a closed browser lets go of its client, which may hold
  // callbacks that hold the browser (a menu never answered).
  CefRefPtr<CefClient> released;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    released.swap(client_);
  }
}

void BrowserImpl::ReleaseAfterShutdown() {
  CefRefPtr<CefClient> client;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    client.swap(client_);
  }
  connection_->Release();
  frames_->Release();
  input_->Release();
  inspector_->CloseNow(false);
  page_events_->Clear();
  script_dialogs_->Release();
  file_dialogs_->Release();
  printing_->Release();
  context_menus_->Release();
  hooks_->Release();
}

// --- CefBrowser -----------------------------------------------------------

bool BrowserImpl::IsValid() {
  return connection_->IsOpen();
}

CefRefPtr<CefBrowserHost> BrowserImpl::GetHost() {
  return this;
}

bool BrowserImpl::CanGoBack() {
  return navigation_->CanGoBack();
}

bool BrowserImpl::CanGoForward() {
  return navigation_->CanGoForward();
}

void BrowserImpl::GoBack() {
  navigation_->GoToOffset(-1);
}

void BrowserImpl::GoForward() {
  navigation_->GoToOffset(1);
}

bool BrowserImpl::IsLoading() {
  return navigation_->IsLoading();
}

void BrowserImpl::Reload() {
  navigation_->Reload(false);
}

void BrowserImpl::ReloadIgnoreCache() {
  navigation_->Reload(true);
}

void BrowserImpl::StopLoad() {
  navigation_->StopLoad();
}

int BrowserImpl::GetIdentifier() {
  return id_;
}

bool BrowserImpl::IsSame(CefRefPtr<CefBrowser> that) {
  return that && that->GetIdentifier() == id_;
}

bool BrowserImpl::IsPopup() {
  return is_popup_;
}

bool BrowserImpl::HasDocument() {
  return navigation_->HasDocument();
}

CefRefPtr<CefFrame> BrowserImpl::GetMainFrame() {
  return frames_->Main().get();
}

CefRefPtr<CefFrame> BrowserImpl::GetFocusedFrame() {
  return GetMainFrame();
}

CefRefPtr<CefFrame> BrowserImpl::GetFrameByIdentifier(
    const CefString& identifier) {
  return frames_->Find(QString::fromStdString(identifier.ToString())).get();
}

CefRefPtr<CefFrame> BrowserImpl::GetFrameByName(const CefString& name) {
  return frames_->FindByName(name).get();
}

size_t BrowserImpl::GetFrameCount() {
  return frames_->Count();
}

void BrowserImpl::GetFrameIdentifiers(std::vector<CefString>& identifiers) {
  identifiers = frames_->Identifiers();
}

void BrowserImpl::GetFrameNames(std::vector<CefString>& names) {
  names = frames_->Names();
}

// --- CefBrowserHost -------------------------------------------------------

CefRefPtr<CefBrowser> BrowserImpl::GetBrowser() {
  return this;
}

void BrowserImpl::CloseBrowser(bool force_close) {
  closer_->CloseBrowser(force_close);
}

bool BrowserImpl::TryCloseBrowser() {
  return closer_->TryCloseBrowser();
}

void BrowserImpl::SetFocus(bool focus) {
  input_->SetFocus(focus);
}

CefRefPtr<CefClient> BrowserImpl::GetClient() {
  return client();
}

CefRefPtr<CefRequestContext> BrowserImpl::GetRequestContext() {
  return request_context_.get();
}

bool BrowserImpl::CanZoom(cef_zoom_command_t command) {
  return zoom_->CanZoom(command);
}

void BrowserImpl::Zoom(cef_zoom_command_t command) {
  zoom_->Zoom(command);
}

double BrowserImpl::GetDefaultZoomLevel() {
  return 0.0;
}

double BrowserImpl::GetZoomLevel() {
  return zoom_->level();
}

void BrowserImpl::SetZoomLevel(double zoomLevel) {
  zoom_->SetLevel(zoomLevel);
}

void BrowserImpl::RunFileDialog(FileDialogMode mode,
                                const CefString& title,
                                const CefString& default_file_path,
                                const std::vector<CefString>& accept_filters,
                                CefRefPtr<CefRunFileDialogCallback> callback) {
  if (!callback) {
    LOG(ERROR) << "CefBrowserHost::RunFileDialog: no callback";
    return;
  }
  CefRefPtr<BrowserImpl> self(this);
  const CefString dialog_title = title;
  const CefString path = default_file_path;
  // Later even on the UI thread: CEF starts the dialog asynchronously.
  PostUiTask([self, mode, dialog_title, path, accept_filters, callback] {
    self->file_dialogs_->Run(mode, dialog_title, path, accept_filters,
                             callback);
  });
}

void BrowserImpl::StartDownload(const CefString& url) {
  scripts_->StartDownload(QString::fromStdString(url.ToString()));
}

void BrowserImpl::Print() {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread([self] { self->printing_->Start(); });
}

void BrowserImpl::PrintToPDF(const CefString& path,
                             const CefPdfPrintSettings& settings,
                             CefRefPtr<CefPdfPrintCallback> callback) {
  CefRefPtr<BrowserImpl> self(this);
  const QString file = QString::fromStdString(path.ToString());
  // CefPdfPrintSettings owns its strings: copied for the UI thread.
  auto copy = std::make_shared<CefPdfPrintSettings>(settings);
  RunOnUiThread([self, file, copy, callback] {
    self->printing_->PrintToPDF(file, *copy, callback);
  });
}

void BrowserImpl::Find(const CefString& searchText,
                       bool forward,
                       bool matchCase,
                       bool findNext) {
  CefRefPtr<BrowserImpl> self(this);
  const QString text = QString::fromStdString(searchText.ToString());
  RunOnUiThread([self, text, forward, matchCase, findNext] {
    self->find_in_page_->Find(text, forward, matchCase, findNext);
  });
}

void BrowserImpl::StopFinding(bool clearSelection) {
  CefRefPtr<BrowserImpl> self(this);
  RunOnUiThread(
      [self, clearSelection] { self->find_in_page_->Stop(clearSelection); });
}

void BrowserImpl::ShowDevTools(const CefWindowInfo& windowInfo,
                               CefRefPtr<CefClient> client,
                               const CefBrowserSettings& settings,
                               const CefPoint& inspect_element_at) {
  inspector_->Show(client);
}

void BrowserImpl::CloseDevTools() {
  inspector_->Close();
}

bool BrowserImpl::HasDevTools() {
  return inspector_->IsOpen();
}

void BrowserImpl::GetNavigationEntries(
    CefRefPtr<CefNavigationEntryVisitor> visitor,
    bool current_only) {
  navigation_->VisitEntries(visitor, current_only);
}

CefRefPtr<CefNavigationEntry> BrowserImpl::GetVisibleNavigationEntry() {
  return navigation_->VisibleEntry();
}

bool BrowserImpl::IsWindowRenderingDisabled() {
  return true;
}

// --- View -----------------------------------------------------------------

void BrowserImpl::WasResized() {
  view_->WasResized();
}

void BrowserImpl::NotifyScreenInfoChanged() {
  view_->WasResized();
}

void BrowserImpl::WasHidden(bool hidden) {
  view_->WasHidden(hidden);
}

void BrowserImpl::Invalidate(PaintElementType type) {
  view_->Invalidate(type);
}

void BrowserImpl::SendExternalBeginFrame() {
  view_->SendExternalBeginFrame();
}

int BrowserImpl::GetWindowlessFrameRate() {
  return view_->frame_rate();
}

void BrowserImpl::SetWindowlessFrameRate(int frame_rate) {
  view_->SetFrameRate(frame_rate);
}

// --- Input ----------------------------------------------------------------

void BrowserImpl::SendKeyEvent(const CefKeyEvent& event) {
  input_->SendKeyEvent(event);
}

void BrowserImpl::SendMouseClickEvent(const CefMouseEvent& event,
                                      MouseButtonType type,
                                      bool mouseUp,
                                      int clickCount) {
  input_->SendMouseClickEvent(event, type, mouseUp, clickCount);
}

void BrowserImpl::SendMouseMoveEvent(const CefMouseEvent& event,
                                     bool mouseLeave) {
  input_->SendMouseMoveEvent(event, mouseLeave);
}

void BrowserImpl::SendMouseWheelEvent(const CefMouseEvent& event,
                                      int deltaX,
                                      int deltaY) {
  input_->SendMouseWheelEvent(event, deltaX, deltaY);
}

void BrowserImpl::SendTouchEvent(const CefTouchEvent& event) {
  input_->SendTouchEvent(event);
}

void BrowserImpl::ImeSetComposition(
    const CefString& text,
    const std::vector<CefCompositionUnderline>& underlines,
    const CefRange& replacement_range,
    const CefRange& selection_range) {
  input_->ImeSetComposition(text, replacement_range, selection_range);
}

void BrowserImpl::ImeCommitText(const CefString& text,
                                const CefRange& replacement_range,
                                int relative_cursor_pos) {
  input_->ImeCommitText(text, replacement_range);
}

void BrowserImpl::ImeFinishComposingText(bool keep_selection) {
  input_->ImeFinishComposingText();
}

void BrowserImpl::ImeCancelComposition() {
  input_->ImeCancelComposition();
}

void BrowserImpl::DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                                      const CefMouseEvent& event,
                                      DragOperationsMask allowed_ops) {
  input_->DragTargetDragEnter(drag_data, event, allowed_ops);
}

void BrowserImpl::DragTargetDragOver(const CefMouseEvent& event,
                                     DragOperationsMask allowed_ops) {
  input_->DragTargetDragOver(event, allowed_ops);
}

void BrowserImpl::DragTargetDragLeave() {
  input_->DragTargetDragLeave();
}

void BrowserImpl::DragTargetDrop(const CefMouseEvent& event) {
  input_->DragTargetDrop(event);
}

void BrowserImpl::DragSourceEndedAt(int x, int y, DragOperationsMask op) {
  input_->DragSourceEndedAt(x, y, op);
}

void BrowserImpl::DragSourceSystemDragEnded() {
  input_->DragSourceSystemDragEnded();
}

// --- The rest -------------------------------------------------------------

bool BrowserImpl::IsRenderProcessUnresponsive() {
  return hang_monitor_->unresponsive();
}

cef_runtime_style_t BrowserImpl::GetRuntimeStyle() {
  return CEF_RUNTIME_STYLE_ALLOY;
}

}  // namespace cefengine
