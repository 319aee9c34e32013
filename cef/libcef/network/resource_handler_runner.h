// Serves one request through a client's CefResourceHandler, calling it as
// CEF does: Open (or ProcessRequest when Open declines to decide), Skip for
// a Range request, GetResponseHeaders, Read (or ReadResponse) until the body
// ends, and Cancel once it is over, whatever the outcome.

#ifndef CEF_LIBCEF_NETWORK_RESOURCE_HANDLER_RUNNER_H_
#define CEF_LIBCEF_NETWORK_RESOURCE_HANDLER_RUNNER_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include <QByteArray>

#include "include/cef_request.h"
#include "include/cef_resource_handler.h"
#include "include/cef_response.h"

namespace cefengine {

// What became of the request.
struct ServedResponse {
  enum class Outcome {
    kServed,    // status, headers and body below
    kDeclined,  // Open or ProcessRequest refused the request
    kFailed,    // |error| says why
  };
  Outcome outcome = Outcome::kFailed;
  cef_errorcode_t error = ERR_FAILED;
  int status = 0;
  CefResponse::HeaderMap headers;  // Content-Type and Location included
  QByteArray body;
};

// Lives until the request is over. Engine IO thread; the handler's deferred
// answers may come on any thread.
class ResourceHandlerRunner
    : public std::enable_shared_from_this<ResourceHandlerRunner> {
 public:
  using Done = std::function<void(ServedResponse response)>;
  // False once nobody wants the answer (the page is gone).
  using StillWanted = std::function<bool()>;

  // Starts serving |request| (read-only); |done| runs once, on the engine
  // IO thread.
  static void Start(CefRefPtr<CefResourceHandler> handler,
                    CefRefPtr<CefRequest> request,
                    StillWanted still_wanted,
                    Done done);

  ResourceHandlerRunner(CefRefPtr<CefResourceHandler> handler,
                        CefRefPtr<CefRequest> request,
                        StillWanted still_wanted,
                        Done done);

 private:
  // Steps, on the engine IO thread, in order.
  void Open();
  void OnOpened(bool proceed);
  void SkipToRange();
  void OnSkipped(int64_t bytes_skipped);
  void ReadHeaders();
  void ReadBody();
  void OnRead(int bytes_read);
  void ReadOldStyle();
  void OnOldStyleReady(bool proceed);
  // Takes |count| bytes of the buffer; false when the body is complete.
  bool Append(int count);
  void Finish(ServedResponse::Outcome outcome, cef_errorcode_t error);

  // A deferred answer of the handler: |step| runs with it on the IO thread
  // unless the request has ended. The function holds the runner, so a
  // handler keeps it alive until it answers or lets go of the callback.
  template <typename Arg>
  std::function<void(Arg)> Deferred(void (ResourceHandlerRunner::*step)(Arg)) {
    std::shared_ptr<ResourceHandlerRunner> self = shared_from_this();
    return [self, step](Arg value) {
      self->Post([self, step, value] { ((*self).*step)(value); });
    };
  }
  // Runs |step| later on the IO thread unless the request has ended.
  void Post(std::function<void()> step);

  const CefRefPtr<CefResourceHandler> handler_;
  const CefRefPtr<CefRequest> request_;
  const StillWanted still_wanted_;
  Done done_;
  bool finished_ = false;
  int64_t range_start_ = 0;
  int64_t range_skipped_ = 0;
  int64_t length_ = -1;  // bytes wanted; -1: until the handler ends it
  std::vector<char> buffer_;
  ServedResponse response_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_RESOURCE_HANDLER_RUNNER_H_
