// The CefBrowserHost calls a windowless browser over the DevTools protocol
// has nothing behind: each gives the quiet answer CEF gives where a feature
// is absent. BrowserImpl and the inspector's DevToolsBrowser derive from
// this and implement the rest.

#ifndef CEF_LIBCEF_BROWSER_UNSUPPORTED_HOST_CALLS_H_
#define CEF_LIBCEF_BROWSER_UNSUPPORTED_HOST_CALLS_H_

#include <atomic>

#include "include/cef_browser.h"

namespace cefengine {

// Any thread.
class UnsupportedHostCalls : public CefBrowserHost {
 public:
  // No native windows: the page is painted off screen only.
  CefWindowHandle GetWindowHandle() override;
  CefWindowHandle GetOpenerWindowHandle() override;
  bool HasView() override;
  void NotifyMoveOrResizeStarted() override;
  void SendCaptureLostEvent() override;
  void SetAutoResizeEnabled(bool enabled,
                            const CefSize& min_size,
                            const CefSize& max_size) override;
  bool IsFullscreen() override;
  void ExitFullscreen(bool will_cause_resize) override;
  // Answers at once, without an image.
  void DownloadImage(const CefString& image_url,
                     bool is_favicon,
                     uint32_t max_image_size,
                     bool bypass_cache,
                     CefRefPtr<CefDownloadImageCallback> callback) override;
  // The client's own DevTools messages: the engine's session is its own.
  bool SendDevToolsMessage(const void* message, size_t message_size) override;
  int ExecuteDevToolsMethod(int message_id,
                            const CefString& method,
                            CefRefPtr<CefDictionaryValue> params) override;
  CefRefPtr<CefRegistration> AddDevToolsMessageObserver(
      CefRefPtr<CefDevToolsMessageObserver> observer) override;
  // No spelling service.
  void ReplaceMisspelling(const CefString& word) override;
  void AddWordToDictionary(const CefString& word) override;
  void SetAccessibilityState(cef_state_t accessibility_state) override;
  // Chromium runs muted (--mute-audio); the flag is only remembered.
  void SetAudioMuted(bool mute) override;
  bool IsAudioMuted() override;
  // No Chrome browser window, hence no Chrome commands.
  bool CanExecuteChromeCommand(int command_id) override;
  void ExecuteChromeCommand(int command_id,
                            cef_window_open_disposition_t disposition) override;

 private:
  std::atomic<bool> audio_muted_{false};
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_UNSUPPORTED_HOST_CALLS_H_
