// A browser (one page with its frames and history) and its host, the
// browser-process side that creates, sizes, feeds input to and closes it.

#ifndef CEF_INCLUDE_CEF_BROWSER_H_
#define CEF_INCLUDE_CEF_BROWSER_H_
#pragma once

#include <vector>

#include "include/cef_base.h"
#include "include/cef_devtools_message_observer.h"
#include "include/cef_drag_data.h"
#include "include/cef_frame.h"
#include "include/cef_image.h"
#include "include/cef_navigation_entry.h"
#include "include/cef_registration.h"
#include "include/cef_request_context.h"

class CefBrowserHost;
class CefClient;

// Methods may be called on any thread of the browser process unless noted.
class CefBrowser : public virtual CefBaseRefCounted {
 public:
  // False once the browser has been closed.
  virtual bool IsValid() = 0;
  // Browser process only.
  virtual CefRefPtr<CefBrowserHost> GetHost() = 0;

  virtual bool CanGoBack() = 0;
  virtual void GoBack() = 0;
  virtual bool CanGoForward() = 0;
  virtual void GoForward() = 0;
  virtual bool IsLoading() = 0;
  virtual void Reload() = 0;
  virtual void ReloadIgnoreCache() = 0;
  virtual void StopLoad() = 0;

  // Unique within the process, stable for the browser's life.
  virtual int GetIdentifier() = 0;
  virtual bool IsSame(CefRefPtr<CefBrowser> that) = 0;
  virtual bool IsPopup() = 0;
  // True once a document has been loaded.
  virtual bool HasDocument() = 0;

  virtual CefRefPtr<CefFrame> GetMainFrame() = 0;
  virtual CefRefPtr<CefFrame> GetFocusedFrame() = 0;
  virtual CefRefPtr<CefFrame> GetFrameByIdentifier(
      const CefString& identifier) = 0;
  virtual CefRefPtr<CefFrame> GetFrameByName(const CefString& name) = 0;
  virtual size_t GetFrameCount() = 0;
  virtual void GetFrameIdentifiers(std::vector<CefString>& identifiers) = 0;
  virtual void GetFrameNames(std::vector<CefString>& names) = 0;
};

// Result of CefBrowserHost::RunFileDialog. Called on the UI thread.
class CefRunFileDialogCallback : public virtual CefBaseRefCounted {
 public:
  // The chosen paths; empty if the dialog was cancelled.
  virtual void OnFileDialogDismissed(
      const std::vector<CefString>& file_paths) = 0;
};

// Walks the navigation history. Called on the UI thread.
class CefNavigationEntryVisitor : public virtual CefBaseRefCounted {
 public:
  // Return false to stop the walk. |entry| is valid only during the call.
  virtual bool Visit(CefRefPtr<CefNavigationEntry> entry,
                     bool current,
                     int index,
                     int total) = 0;
};

// Result of CefBrowserHost::PrintToPDF. Called on the UI thread.
class CefPdfPrintCallback : public virtual CefBaseRefCounted {
 public:
  virtual void OnPdfPrintFinished(const CefString& path, bool ok) = 0;
};

// Result of CefBrowserHost::DownloadImage. Called on the UI thread.
class CefDownloadImageCallback : public virtual CefBaseRefCounted {
 public:
  // |image| is null when the download or the decoding failed.
  virtual void OnDownloadImageFinished(const CefString& image_url,
                                       int http_status_code,
                                       CefRefPtr<CefImage> image) = 0;
};

// Browser-process only. Methods may be called on any thread unless noted.
class CefBrowserHost : public virtual CefBaseRefCounted {
 public:
  typedef cef_drag_operations_mask_t DragOperationsMask;
  typedef cef_file_dialog_mode_t FileDialogMode;
  typedef cef_mouse_button_type_t MouseButtonType;
  typedef cef_paint_element_type_t PaintElementType;

  // Starts creating a browser; the client's life span handler hears when it
  // exists. A null |request_context| means the global context. Any thread.
  static bool CreateBrowser(const CefWindowInfo& windowInfo,
                            CefRefPtr<CefClient> client,
                            const CefString& url,
                            const CefBrowserSettings& settings,
                            CefRefPtr<CefDictionaryValue> extra_info,
                            CefRefPtr<CefRequestContext> request_context);

  // Creates a browser and returns it. UI thread only.
  static CefRefPtr<CefBrowser> CreateBrowserSync(
      const CefWindowInfo& windowInfo,
      CefRefPtr<CefClient> client,
      const CefString& url,
      const CefBrowserSettings& settings,
      CefRefPtr<CefDictionaryValue> extra_info,
      CefRefPtr<CefRequestContext> request_context);

  virtual CefRefPtr<CefBrowser> GetBrowser() = 0;

  // Asks the page (unload handlers) and then closes, or closes at once when
  // |force_close|.
  virtual void CloseBrowser(bool force_close) = 0;
  // Like CloseBrowser(false) but answers whether closing may go on now. UI
  // thread only.
  virtual bool TryCloseBrowser() = 0;

  virtual void SetFocus(bool focus) = 0;
  virtual CefWindowHandle GetWindowHandle() = 0;
  virtual CefWindowHandle GetOpenerWindowHandle() = 0;
  // True for a browser hosted in a Views window.
  virtual bool HasView() = 0;
  virtual CefRefPtr<CefClient> GetClient() = 0;
  virtual CefRefPtr<CefRequestContext> GetRequestContext() = 0;

  // Zoom. The level is logarithmic: 0.0 is 100 %. Getters on the UI thread.
  virtual bool CanZoom(cef_zoom_command_t command) = 0;
  virtual void Zoom(cef_zoom_command_t command) = 0;
  virtual double GetDefaultZoomLevel() = 0;
  virtual double GetZoomLevel() = 0;
  virtual void SetZoomLevel(double zoomLevel) = 0;

  // Shows a file chooser; the result comes to |callback| on the UI thread.
  virtual void RunFileDialog(FileDialogMode mode,
                             const CefString& title,
                             const CefString& default_file_path,
                             const std::vector<CefString>& accept_filters,
                             CefRefPtr<CefRunFileDialogCallback> callback) = 0;

  virtual void StartDownload(const CefString& url) = 0;
  // Downloads and decodes an image; |max_image_size| 0 means no limit.
  virtual void DownloadImage(const CefString& image_url,
                             bool is_favicon,
                             uint32_t max_image_size,
                             bool bypass_cache,
                             CefRefPtr<CefDownloadImageCallback> callback) = 0;

  virtual void Print() = 0;
  virtual void PrintToPDF(const CefString& path,
                          const CefPdfPrintSettings& settings,
                          CefRefPtr<CefPdfPrintCallback> callback) = 0;

  // Searches the page; results go to the client's find handler.
  virtual void Find(const CefString& searchText,
                    bool forward,
                    bool matchCase,
                    bool findNext) = 0;
  virtual void StopFinding(bool clearSelection) = 0;

  // Developer tools in a window of their own, or through the protocol.
  virtual void ShowDevTools(const CefWindowInfo& windowInfo,
                            CefRefPtr<CefClient> client,
                            const CefBrowserSettings& settings,
                            const CefPoint& inspect_element_at) = 0;
  virtual void CloseDevTools() = 0;
  virtual bool HasDevTools() = 0;
  // |message| is UTF-8 JSON of one protocol command.
  virtual bool SendDevToolsMessage(const void* message,
                                   size_t message_size) = 0;
  // Returns the id used, or 0 on failure; |message_id| 0 picks one.
  virtual int ExecuteDevToolsMethod(int message_id,
                                    const CefString& method,
                                    CefRefPtr<CefDictionaryValue> params) = 0;
  virtual CefRefPtr<CefRegistration> AddDevToolsMessageObserver(
      CefRefPtr<CefDevToolsMessageObserver> observer) = 0;

  virtual void GetNavigationEntries(
      CefRefPtr<CefNavigationEntryVisitor> visitor,
      bool current_only) = 0;

  // Spell checking of the focused editable field.
  virtual void ReplaceMisspelling(const CefString& word) = 0;
  virtual void AddWordToDictionary(const CefString& word) = 0;

  // Off-screen rendering.
  virtual bool IsWindowRenderingDisabled() = 0;
  // Makes the engine ask the render handler for the view rectangle again.
  virtual void WasResized() = 0;
  virtual void WasHidden(bool hidden) = 0;
  // Makes the engine ask the render handler for the screen info again.
  virtual void NotifyScreenInfoChanged() = 0;
  virtual void Invalidate(PaintElementType type) = 0;
  virtual void SendExternalBeginFrame() = 0;

  // Input. Coordinates are view coordinates in logical pixels.
  virtual void SendKeyEvent(const CefKeyEvent& event) = 0;
  virtual void SendMouseClickEvent(const CefMouseEvent& event,
                                   MouseButtonType type,
                                   bool mouseUp,
                                   int clickCount) = 0;
  virtual void SendMouseMoveEvent(const CefMouseEvent& event,
                                  bool mouseLeave) = 0;
  virtual void SendMouseWheelEvent(const CefMouseEvent& event,
                                   int deltaX,
                                   int deltaY) = 0;
  virtual void SendTouchEvent(const CefTouchEvent& event) = 0;
  virtual void SendCaptureLostEvent() = 0;
  virtual void NotifyMoveOrResizeStarted() = 0;

  virtual int GetWindowlessFrameRate() = 0;
  virtual void SetWindowlessFrameRate(int frame_rate) = 0;

  // Input method composition. UI thread only.
  virtual void ImeSetComposition(
      const CefString& text,
      const std::vector<CefCompositionUnderline>& underlines,
      const CefRange& replacement_range,
      const CefRange& selection_range) = 0;
  virtual void ImeCommitText(const CefString& text,
                             const CefRange& replacement_range,
                             int relative_cursor_pos) = 0;
  virtual void ImeFinishComposingText(bool keep_selection) = 0;
  virtual void ImeCancelComposition() = 0;

  // The view as drop target.
  virtual void DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                                   const CefMouseEvent& event,
                                   DragOperationsMask allowed_ops) = 0;
  virtual void DragTargetDragOver(const CefMouseEvent& event,
                                  DragOperationsMask allowed_ops) = 0;
  virtual void DragTargetDragLeave() = 0;
  virtual void DragTargetDrop(const CefMouseEvent& event) = 0;
  // The view as drag source: where and how a drag that it started ended.
  virtual void DragSourceEndedAt(int x, int y, DragOperationsMask op) = 0;
  virtual void DragSourceSystemDragEnded() = 0;

  // UI thread only.
  virtual CefRefPtr<CefNavigationEntry> GetVisibleNavigationEntry() = 0;

  virtual void SetAccessibilityState(cef_state_t accessibility_state) = 0;
  virtual void SetAutoResizeEnabled(bool enabled,
                                    const CefSize& min_size,
                                    const CefSize& max_size) = 0;

  virtual void SetAudioMuted(bool mute) = 0;
  virtual bool IsAudioMuted() = 0;

  virtual bool IsFullscreen() = 0;
  virtual void ExitFullscreen(bool will_cause_resize) = 0;

  // Chrome-style browsers only.
  virtual bool CanExecuteChromeCommand(int command_id) = 0;
  virtual void ExecuteChromeCommand(
      int command_id,
      cef_window_open_disposition_t disposition) = 0;

  virtual bool IsRenderProcessUnresponsive() = 0;
  virtual cef_runtime_style_t GetRuntimeStyle() = 0;
};

#endif  // CEF_INCLUDE_CEF_BROWSER_H_
