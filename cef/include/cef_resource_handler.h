// Serves one request from the client instead of the network.

#ifndef CEF_INCLUDE_CEF_RESOURCE_HANDLER_H_
#define CEF_INCLUDE_CEF_RESOURCE_HANDLER_H_
#pragma once

#include <cstdint>

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_callback.h"
#include "include/cef_cookie.h"
#include "include/cef_request.h"
#include "include/cef_response.h"

// Finishes a Skip that was deferred: the bytes skipped, or a negative
// error code.
class CefResourceSkipCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(int64_t bytes_skipped) = 0;
};

// Finishes a Read that was deferred: the bytes written to the buffer, 0 at
// the end of the body, or a negative error code.
class CefResourceReadCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(int bytes_read) = 0;
};

// One handler serves one request. Methods are called one after another but
// not always on the same thread (IO thread or a worker).
class CefResourceHandler : public virtual CefBaseRefCounted {
 public:
  // Starts the request. |handle_request| true: return true to serve it now,
  // false to cancel it now. |handle_request| false and true returned: decide
  // later through |callback|. Both false (the default): the engine falls
  // back to ProcessRequest.
  virtual bool Open(CefRefPtr<CefRequest> request,
                    bool& handle_request,
                    CefRefPtr<CefCallback> callback) {
    handle_request = false;
    return false;
  }

  // Deprecated form of Open: true takes the request and continues
  // |callback| once the headers are known; false cancels it.
  virtual bool ProcessRequest(CefRefPtr<CefRequest> request,
                              CefRefPtr<CefCallback> callback) {
    return false;
  }

  // Fills |response| (status, MIME type, headers; SetError on failure) and
  // sets |response_length| to the body size, or -1 when unknown (then the
  // body ends when Read says so). A non-empty |redirectUrl|, absolute or
  // relative, redirects the request.
  virtual void GetResponseHeaders(CefRefPtr<CefResponse> response,
                                  int64_t& response_length,
                                  CefString& redirectUrl) = 0;

  // Drops |bytes_to_skip| bytes of the body, for Range requests. Return true
  // with the count in |bytes_skipped|, or true with 0 and finish through
  // |callback| later, or false with a negative error code
  // (e.g. -2, ERR_FAILED).
  virtual bool Skip(int64_t bytes_to_skip,
                    int64_t& bytes_skipped,
                    CefRefPtr<CefResourceSkipCallback> callback) {
    bytes_skipped = -2;
    return false;
  }

  // Copies up to |bytes_to_read| bytes into |data_out|. Return true with the
  // count in |bytes_read|; or true with 0, keeping |data_out| (valid until
  // the callback runs), and finish through |callback| later; false with 0 at
  // the end of the body; false with a negative error code on failure. False
  // with -1 (the default) falls back to ReadResponse.
  virtual bool Read(void* data_out,
                    int bytes_to_read,
                    int& bytes_read,
                    CefRefPtr<CefResourceReadCallback> callback) {
    bytes_read = -1;
    return false;
  }

  // Deprecated form of Read: true with the count in |bytes_read| (0: later,
  // continuing |callback|), false at the end of the body.
  virtual bool ReadResponse(void* data_out,
                            int bytes_to_read,
                            int& bytes_read,
                            CefRefPtr<CefCallback> callback) {
    bytes_read = -2;
    return false;
  }

  // The request was cancelled.
  virtual void Cancel() = 0;
};

#endif  // CEF_INCLUDE_CEF_RESOURCE_HANDLER_H_
