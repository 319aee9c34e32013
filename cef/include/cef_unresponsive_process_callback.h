// Decision about a render process that stopped responding.

#ifndef CEF_INCLUDE_CEF_UNRESPONSIVE_PROCESS_CALLBACK_H_
#define CEF_INCLUDE_CEF_UNRESPONSIVE_PROCESS_CALLBACK_H_
#pragma once

#include "include/cef_base.h"

class CefUnresponsiveProcessCallback : public virtual CefBaseRefCounted {
 public:
  // Give the process more time.
  virtual void Wait() = 0;
  // Kill the process.
  virtual void Terminate() = 0;
};

#endif  // CEF_INCLUDE_CEF_UNRESPONSIVE_PROCESS_CALLBACK_H_
