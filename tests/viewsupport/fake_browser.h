// A browser whose host records the input it is sent.

#pragma once

#include <cstdlib>
#include <vector>

#include "include/cef_browser.h"

struct MouseClick {
  CefMouseEvent event;
  CefBrowserHost::MouseButtonType button;
  bool mouseUp;
  int clickCount;
};

struct MouseMove {
  CefMouseEvent event;
  bool mouseLeave;
};

struct MouseWheel {
  CefMouseEvent event;
  int deltaX;
  int deltaY;
};

struct ImeCall {
  enum Kind { Commit, Compose, Cancel } kind;
  CefString text;
  CefRange selection;
  std::vector<CefCompositionUnderline> underlines;
};

struct DragCall {
  enum Kind { Enter, Over, Leave, Drop } kind;
  CefMouseEvent event;
  CefBrowserHost::DragOperationsMask allowedOps;
  CefRefPtr<CefDragData> data;
};

class FakeBrowserHost : public CefBrowserHost {
 public:
  std::vector<CefKeyEvent> keys;
  std::vector<MouseClick> clicks;
  std::vector<MouseMove> moves;
  std::vector<MouseWheel> wheels;
  std::vector<ImeCall> ime;
  std::vector<DragCall> drags;

  void SendKeyEvent(const CefKeyEvent& event) override { keys.push_back(event); }
  void SendMouseClickEvent(const CefMouseEvent& event, MouseButtonType type,
                           bool mouseUp, int clickCount) override {
    clicks.push_back({event, type, mouseUp, clickCount});
  }
  void SendMouseMoveEvent(const CefMouseEvent& event, bool mouseLeave) override {
    moves.push_back({event, mouseLeave});
  }
  void SendMouseWheelEvent(const CefMouseEvent& event, int deltaX,
                           int deltaY) override {
    wheels.push_back({event, deltaX, deltaY});
  }
  void ImeSetComposition(const CefString& text,
                         const std::vector<CefCompositionUnderline>& underlines,
                         const CefRange&, const CefRange& selection) override {
    ime.push_back({ImeCall::Compose, text, selection, underlines});
  }
  void ImeCommitText(const CefString& text, const CefRange&, int) override {
    ime.push_back({ImeCall::Commit, text, CefRange(), {}});
  }
  void ImeFinishComposingText(bool) override {}
  void ImeCancelComposition() override {
    ime.push_back({ImeCall::Cancel, CefString(), CefRange(), {}});
  }
  void DragTargetDragEnter(CefRefPtr<CefDragData> data,
                           const CefMouseEvent& event,
                           DragOperationsMask ops) override {
    drags.push_back({DragCall::Enter, event, ops, data});
  }
  void DragTargetDragOver(const CefMouseEvent& event,
                          DragOperationsMask ops) override {
    drags.push_back({DragCall::Over, event, ops, nullptr});
  }
  void DragTargetDragLeave() override {
    drags.push_back({DragCall::Leave, CefMouseEvent(), DRAG_OPERATION_NONE,
                     nullptr});
  }
  void DragTargetDrop(const CefMouseEvent& event) override {
    drags.push_back({DragCall::Drop, event, DRAG_OPERATION_NONE, nullptr});
  }

  // Everything below is not used by the input events.
  CefRefPtr<CefBrowser> GetBrowser() override { return nullptr; }
  void CloseBrowser(bool) override {}
  bool TryCloseBrowser() override { return true; }
  void SetFocus(bool) override {}
  CefWindowHandle GetWindowHandle() override { return kNullWindowHandle; }
  CefWindowHandle GetOpenerWindowHandle() override { return kNullWindowHandle; }
  bool HasView() override { return false; }
  // CefClient is incomplete here, so no CefRefPtr of it can be returned; the
  // input events never ask for it.
  CefRefPtr<CefClient> GetClient() override { std::abort(); }
  CefRefPtr<CefRequestContext> GetRequestContext() override { return nullptr; }
  bool CanZoom(cef_zoom_command_t) override { return false; }
  void Zoom(cef_zoom_command_t) override {}
  double GetDefaultZoomLevel() override { return 0; }
  double GetZoomLevel() override { return 0; }
  void SetZoomLevel(double) override {}
  void RunFileDialog(FileDialogMode, const CefString&, const CefString&,
                     const std::vector<CefString>&,
                     CefRefPtr<CefRunFileDialogCallback>) override {}
  void StartDownload(const CefString&) override {}
  void DownloadImage(const CefString&, bool, uint32_t, bool,
                     CefRefPtr<CefDownloadImageCallback>) override {}
  void Print() override {}
  void PrintToPDF(const CefString&, const CefPdfPrintSettings&,
                  CefRefPtr<CefPdfPrintCallback>) override {}
  void Find(const CefString&, bool, bool, bool) override {}
  void StopFinding(bool) override {}
  void ShowDevTools(const CefWindowInfo&, CefRefPtr<CefClient>,
                    const CefBrowserSettings&, const CefPoint&) override {}
  void CloseDevTools() override {}
  bool HasDevTools() override { return false; }
  bool SendDevToolsMessage(const void*, size_t) override { return false; }
  int ExecuteDevToolsMethod(int, const CefString&,
                            CefRefPtr<CefDictionaryValue>) override {
    return 0;
  }
  CefRefPtr<CefRegistration> AddDevToolsMessageObserver(
      CefRefPtr<CefDevToolsMessageObserver>) override {
    return nullptr;
  }
  void GetNavigationEntries(CefRefPtr<CefNavigationEntryVisitor>,
                            bool) override {}
  void ReplaceMisspelling(const CefString&) override {}
  void AddWordToDictionary(const CefString&) override {}
  bool IsWindowRenderingDisabled() override { return true; }
  void WasResized() override {}
  void WasHidden(bool) override {}
  void NotifyScreenInfoChanged() override {}
  void Invalidate(PaintElementType) override {}
  void SendExternalBeginFrame() override {}
  void SendTouchEvent(const CefTouchEvent&) override {}
  void SendCaptureLostEvent() override {}
  void NotifyMoveOrResizeStarted() override {}
  int GetWindowlessFrameRate() override { return 30; }
  void SetWindowlessFrameRate(int) override {}
  void DragSourceEndedAt(int, int, DragOperationsMask) override {}
  void DragSourceSystemDragEnded() override {}
  CefRefPtr<CefNavigationEntry> GetVisibleNavigationEntry() override {
    return nullptr;
  }
  void SetAccessibilityState(cef_state_t) override {}
  void SetAutoResizeEnabled(bool, const CefSize&, const CefSize&) override {}
  void SetAudioMuted(bool) override {}
  bool IsAudioMuted() override { return false; }
  bool IsFullscreen() override { return false; }
  void ExitFullscreen(bool) override {}
  bool CanExecuteChromeCommand(int) override { return false; }
  void ExecuteChromeCommand(int, cef_window_open_disposition_t) override {}
  bool IsRenderProcessUnresponsive() override { return false; }
  cef_runtime_style_t GetRuntimeStyle() override {
    return CEF_RUNTIME_STYLE_ALLOY;
  }

 private:
  IMPLEMENT_REFCOUNTING(FakeBrowserHost);
};

class FakeBrowser : public CefBrowser {
 public:
  CefRefPtr<FakeBrowserHost> host = new FakeBrowserHost();

  CefRefPtr<CefBrowserHost> GetHost() override { return host.get(); }

  bool IsValid() override { return true; }
  bool CanGoBack() override { return false; }
  void GoBack() override {}
  bool CanGoForward() override { return false; }
  void GoForward() override {}
  bool IsLoading() override { return false; }
  void Reload() override {}
  void ReloadIgnoreCache() override {}
  void StopLoad() override {}
  int GetIdentifier() override { return 1; }
  bool IsSame(CefRefPtr<CefBrowser> that) override { return that.get() == this; }
  bool IsPopup() override { return false; }
  bool HasDocument() override { return false; }
  CefRefPtr<CefFrame> GetMainFrame() override { return nullptr; }
  CefRefPtr<CefFrame> GetFocusedFrame() override { return nullptr; }
  CefRefPtr<CefFrame> GetFrameByIdentifier(const CefString&) override {
    return nullptr;
  }
  CefRefPtr<CefFrame> GetFrameByName(const CefString&) override {
    return nullptr;
  }
  size_t GetFrameCount() override { return 0; }
  void GetFrameIdentifiers(std::vector<CefString>&) override {}
  void GetFrameNames(std::vector<CefString>&) override {}

 private:
  IMPLEMENT_REFCOUNTING(FakeBrowser);
};
