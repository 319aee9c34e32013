// A download as CefDownloadHandler sees it: a snapshot, made anew for each
// callback, as CEF's own items are valid only during the call.

#ifndef CEF_LIBCEF_BROWSER_DOWNLOAD_ITEM_IMPL_H_
#define CEF_LIBCEF_BROWSER_DOWNLOAD_ITEM_IMPL_H_

#include <cstdint>
#include <string>

#include "include/cef_download_item.h"
#include "include/internal/cef_time_wrappers.h"

namespace cefengine {

struct DownloadState {
  uint32_t id = 0;
  std::string url;
  std::string suggested_name;
  std::string mime_type;
  std::string full_path;
  int64_t total_bytes = -1;
  int64_t received_bytes = 0;
  int64_t speed = 0;
  bool complete = false;
  bool canceled = false;
  bool interrupted = false;
  CefBaseTime start_time;
  CefBaseTime end_time;
};

// Any thread; immutable.
class DownloadItemImpl : public CefDownloadItem {
 public:
  explicit DownloadItemImpl(DownloadState state) : state_(std::move(state)) {}

  bool IsValid() override { return true; }
  bool IsInProgress() override {
    return !state_.complete && !state_.canceled && !state_.interrupted;
  }
  bool IsComplete() override { return state_.complete; }
  bool IsCanceled() override { return state_.canceled; }
  bool IsInterrupted() override { return state_.interrupted; }
  cef_download_interrupt_reason_t GetInterruptReason() override {
    return state_.interrupted ? CEF_DOWNLOAD_INTERRUPT_REASON_FILE_FAILED
                              : CEF_DOWNLOAD_INTERRUPT_REASON_NONE;
  }
  int64_t GetCurrentSpeed() override { return state_.speed; }
  int GetPercentComplete() override {
    if (state_.total_bytes <= 0) {
      return state_.complete ? 100 : -1;
    }
    return static_cast<int>(state_.received_bytes * 100 / state_.total_bytes);
  }
  int64_t GetTotalBytes() override { return state_.total_bytes; }
  int64_t GetReceivedBytes() override { return state_.received_bytes; }
  CefBaseTime GetStartTime() override { return state_.start_time; }
  CefBaseTime GetEndTime() override { return state_.end_time; }
  CefString GetFullPath() override { return state_.full_path; }
  uint32_t GetId() override { return state_.id; }
  CefString GetURL() override { return state_.url; }
  CefString GetOriginalUrl() override { return state_.url; }
  CefString GetSuggestedFileName() override { return state_.suggested_name; }
  CefString GetContentDisposition() override { return CefString(); }
  CefString GetMimeType() override { return state_.mime_type; }

 private:
  const DownloadState state_;
  IMPLEMENT_REFCOUNTING(DownloadItemImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_DOWNLOAD_ITEM_IMPL_H_
