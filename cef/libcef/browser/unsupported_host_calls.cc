#include "libcef/browser/unsupported_host_calls.h"

#include "libcef/browser/ui_task.h"

namespace cefengine {

CefWindowHandle UnsupportedHostCalls::GetWindowHandle() {
  return kNullWindowHandle;
}

CefWindowHandle UnsupportedHostCalls::GetOpenerWindowHandle() {
  return kNullWindowHandle;
}

bool UnsupportedHostCalls::HasView() {
  return false;
}

void UnsupportedHostCalls::NotifyMoveOrResizeStarted() {}

void UnsupportedHostCalls::SendCaptureLostEvent() {}

void UnsupportedHostCalls::SetAutoResizeEnabled(bool enabled,
                                                const CefSize& min_size,
                                                const CefSize& max_size) {}

bool UnsupportedHostCalls::IsFullscreen() {
  return false;
}

void UnsupportedHostCalls::ExitFullscreen(bool will_cause_resize) {}

void UnsupportedHostCalls::DownloadImage(
    const CefString& image_url,
    bool is_favicon,
    uint32_t max_image_size,
    bool bypass_cache,
    CefRefPtr<CefDownloadImageCallback> callback) {
  if (callback) {
    const CefString url = image_url;
    PostUiTask(
        [callback, url] { callback->OnDownloadImageFinished(url, 0, nullptr); });
  }
}

bool UnsupportedHostCalls::SendDevToolsMessage(const void* message,
                                               size_t message_size) {
  return false;
}

int UnsupportedHostCalls::ExecuteDevToolsMethod(
    int message_id,
    const CefString& method,
    CefRefPtr<CefDictionaryValue> params) {
  return 0;
}

CefRefPtr<CefRegistration> UnsupportedHostCalls::AddDevToolsMessageObserver(
    CefRefPtr<CefDevToolsMessageObserver> observer) {
  return nullptr;
}

void UnsupportedHostCalls::ReplaceMisspelling(const CefString& word) {}

void UnsupportedHostCalls::AddWordToDictionary(const CefString& word) {}

void UnsupportedHostCalls::SetAccessibilityState(
    cef_state_t accessibility_state) {}

void UnsupportedHostCalls::SetAudioMuted(bool mute) {
  audio_muted_ = mute;
}

bool UnsupportedHostCalls::IsAudioMuted() {
  return audio_muted_;
}

bool UnsupportedHostCalls::CanExecuteChromeCommand(int command_id) {
  return false;
}

void UnsupportedHostCalls::ExecuteChromeCommand(
    int command_id,
    cef_window_open_disposition_t disposition) {}

}  // namespace cefengine
