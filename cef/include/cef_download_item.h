// A snapshot of one download's state.

#ifndef CEF_INCLUDE_CEF_DOWNLOAD_ITEM_H_
#define CEF_INCLUDE_CEF_DOWNLOAD_ITEM_H_
#pragma once

#include <cstdint>

#include "include/cef_base.h"

// UI thread; valid only during the handler call that received it.
class CefDownloadItem : public virtual CefBaseRefCounted {
 public:
  virtual bool IsValid() = 0;

  virtual bool IsInProgress() = 0;
  virtual bool IsComplete() = 0;
  virtual bool IsCanceled() = 0;
  virtual bool IsInterrupted() = 0;
  virtual cef_download_interrupt_reason_t GetInterruptReason() = 0;

  // Bytes per second.
  virtual int64_t GetCurrentSpeed() = 0;
  // -1 when the total size is unknown.
  virtual int GetPercentComplete() = 0;
  virtual int64_t GetTotalBytes() = 0;
  virtual int64_t GetReceivedBytes() = 0;

  virtual CefBaseTime GetStartTime() = 0;
  virtual CefBaseTime GetEndTime() = 0;

  // Where the file is being written.
  virtual CefString GetFullPath() = 0;
  // Unique within the session.
  virtual uint32_t GetId() = 0;
  // The URL after redirects, and the one first asked for.
  virtual CefString GetURL() = 0;
  virtual CefString GetOriginalUrl() = 0;
  virtual CefString GetSuggestedFileName() = 0;
  virtual CefString GetContentDisposition() = 0;
  virtual CefString GetMimeType() = 0;
};

#endif  // CEF_INCLUDE_CEF_DOWNLOAD_ITEM_H_
