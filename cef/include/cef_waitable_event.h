// An event that threads can wait on. Waiting blocks the calling thread, so
// it is not allowed on the engine's UI and IO threads.

#ifndef CEF_INCLUDE_CEF_WAITABLE_EVENT_H_
#define CEF_INCLUDE_CEF_WAITABLE_EVENT_H_
#pragma once

#include <cstdint>

#include "include/cef_base.h"

class CefWaitableEvent : public CefBaseRefCounted {
 public:
  // With |automatic_reset| a successful wait resets the event; otherwise
  // only Reset() does.
  static CefRefPtr<CefWaitableEvent> CreateWaitableEvent(
      bool automatic_reset,
      bool initially_signaled);

  virtual void Reset() = 0;
  // Wakes the waiters (one of them with automatic reset).
  virtual void Signal() = 0;
  // Checks without blocking; resets an automatic-reset event it finds set.
  virtual bool IsSignaled() = 0;

  // Blocks until signaled.
  virtual void Wait() = 0;
  // Blocks up to |max_ms| milliseconds; true if signaled in that time.
  virtual bool TimedWait(int64_t max_ms) = 0;
};

#endif  // CEF_INCLUDE_CEF_WAITABLE_EVENT_H_
