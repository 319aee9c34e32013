// The deferred answers of a CefResourceHandler's Read and Skip, each run at
// most once; dropped unanswered, they report ERR_ABORTED.

#ifndef CEF_LIBCEF_NETWORK_RESOURCE_CALLBACKS_H_
#define CEF_LIBCEF_NETWORK_RESOURCE_CALLBACKS_H_

#include <cstdint>
#include <functional>
#include <mutex>

#include "include/cef_resource_handler.h"

namespace cefengine {

// Any thread; |done| runs on the thread that answers.
class ReadCallback : public CefResourceReadCallback {
 public:
  explicit ReadCallback(std::function<void(int bytes_read)> done);
  ~ReadCallback() override;
  // Forgets the function unrun: the handler answered at once.
  void Disarm();
  void Continue(int bytes_read) override;

 private:
  std::mutex mutex_;
  std::function<void(int)> done_;
  IMPLEMENT_REFCOUNTING(ReadCallback);
};

// Any thread; |done| runs on the thread that answers.
class SkipCallback : public CefResourceSkipCallback {
 public:
  explicit SkipCallback(std::function<void(int64_t bytes_skipped)> done);
  ~SkipCallback() override;
  // Forgets the function unrun: the handler answered at once.
  void Disarm();
  void Continue(int64_t bytes_skipped) override;

 private:
  std::mutex mutex_;
  std::function<void(int64_t)> done_;
  IMPLEMENT_REFCOUNTING(SkipCallback);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_RESOURCE_CALLBACKS_H_
