// A named message with a list of arguments, sent between the browser and
// render processes (CefFrame::SendProcessMessage and the
// OnProcessMessageReceived handlers).

#ifndef CEF_INCLUDE_CEF_MESSAGE_H_
#define CEF_INCLUDE_CEF_MESSAGE_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_shared_memory_region.h"
#include "include/cef_values.h"

typedef cef_process_id_t CefProcessId;

class CefProcessMessage : public virtual CefBaseRefCounted {
 public:
  static CefRefPtr<CefProcessMessage> Create(const CefString& name);

  virtual bool IsValid() = 0;
  // Received messages are read-only.
  virtual bool IsReadOnly() = 0;
  // A writable deep copy.
  virtual CefRefPtr<CefProcessMessage> Copy() = 0;

  virtual CefString GetName() = 0;

  // The arguments, owned by the message (writable unless the message is
  // read-only). Null for a message created from a shared memory region.
  virtual CefRefPtr<CefListValue> GetArgumentList() = 0;

  // Null unless the message carries a shared memory region.
  virtual CefRefPtr<CefSharedMemoryRegion> GetSharedMemoryRegion() = 0;
};

#endif  // CEF_INCLUDE_CEF_MESSAGE_H_
