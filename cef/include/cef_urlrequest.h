// Requests made outside any browser. Declared as far as the engine needs
// the types.

#ifndef CEF_INCLUDE_CEF_URLREQUEST_H_
#define CEF_INCLUDE_CEF_URLREQUEST_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_request.h"

class CefURLRequestClient;

class CefURLRequest : public virtual CefBaseRefCounted {
 public:
  virtual CefRefPtr<CefRequest> GetRequest() = 0;
  virtual CefRefPtr<CefURLRequestClient> GetClient() = 0;
  // Stops the request; the client hears of the end.
  virtual void Cancel() = 0;
};

// Told of a request's progress, on the thread that made it.
class CefURLRequestClient : public virtual CefBaseRefCounted {
 public:
  virtual void OnRequestComplete(CefRefPtr<CefURLRequest> request) = 0;
};

#endif  // CEF_INCLUDE_CEF_URLREQUEST_H_
