// Tasks and task runners of the engine's named threads.

#ifndef CEF_INCLUDE_CEF_TASK_H_
#define CEF_INCLUDE_CEF_TASK_H_
#pragma once

#include <cstdint>

#include "include/cef_base.h"

typedef cef_thread_id_t CefThreadId;

// A unit of work posted to a thread. Released on the thread that ran it, or
// by the poster when the post is refused.
class CefTask : public virtual CefBaseRefCounted {
 public:
  virtual void Execute() = 0;
};

// Posts tasks to one thread. Tasks run in posting order; delayed tasks once
// their delay has passed. Every method may be called on any thread.
class CefTaskRunner : public virtual CefBaseRefCounted {
 public:
  // The runner of the engine thread this is called on, or null elsewhere.
  static CefRefPtr<CefTaskRunner> GetForCurrentThread();

  // The runner of |threadId|, or null if that thread does not exist (yet).
  static CefRefPtr<CefTaskRunner> GetForThread(CefThreadId threadId);

  virtual bool IsSame(CefRefPtr<CefTaskRunner> that) = 0;
  virtual bool BelongsToCurrentThread() = 0;
  virtual bool BelongsToThread(CefThreadId threadId) = 0;

  // False if the thread no longer (or not yet) accepts tasks.
  virtual bool PostTask(CefRefPtr<CefTask> task) = 0;
  virtual bool PostDelayedTask(CefRefPtr<CefTask> task, int64_t delay_ms) = 0;
};

// True on the thread that serves |threadId|.
bool CefCurrentlyOn(CefThreadId threadId);

// False if |threadId| does not accept tasks: before CefInitialize, after
// CefShutdown, and always for TID_RENDERER in the browser process.
bool CefPostTask(CefThreadId threadId, CefRefPtr<CefTask> task);

bool CefPostDelayedTask(CefThreadId threadId,
                        CefRefPtr<CefTask> task,
                        int64_t delay_ms);

#endif  // CEF_INCLUDE_CEF_TASK_H_
