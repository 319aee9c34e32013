// A read-only block of shared memory attached to a process message.

#ifndef CEF_INCLUDE_CEF_SHARED_MEMORY_REGION_H_
#define CEF_INCLUDE_CEF_SHARED_MEMORY_REGION_H_
#pragma once

#include "include/cef_base.h"

class CefSharedMemoryRegion : public virtual CefBaseRefCounted {
 public:
  virtual bool IsValid() = 0;
  virtual size_t Size() = 0;
  virtual void* Memory() = 0;
};

#endif  // CEF_INCLUDE_CEF_SHARED_MEMORY_REGION_H_
