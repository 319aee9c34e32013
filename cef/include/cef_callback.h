// Generic callbacks for asynchronous handlers.

#ifndef CEF_INCLUDE_CEF_CALLBACK_H_
#define CEF_INCLUDE_CEF_CALLBACK_H_
#pragma once

#include "include/cef_base.h"

// Lets a handler finish a request later: Continue() goes on, Cancel() stops.
class CefCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue() = 0;
  virtual void Cancel() = 0;
};

// Told when an asynchronous operation has finished.
class CefCompletionCallback : public virtual CefBaseRefCounted {
 public:
  virtual void OnComplete() = 0;
};

#endif  // CEF_INCLUDE_CEF_CALLBACK_H_
