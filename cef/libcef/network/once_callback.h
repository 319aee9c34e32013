// A CefCallback that runs a function once: with true on Continue(), with
// false on Cancel() or when the last reference goes without either.

#ifndef CEF_LIBCEF_NETWORK_ONCE_CALLBACK_H_
#define CEF_LIBCEF_NETWORK_ONCE_CALLBACK_H_

#include <functional>
#include <mutex>

#include "include/cef_callback.h"

namespace cefengine {

// Any thread; |done| runs on the thread that decides, so it posts its work
// where it belongs.
class OnceCallback : public CefCallback {
 public:
  explicit OnceCallback(std::function<void(bool proceed)> done);
  ~OnceCallback() override;

  // Forgets the function unrun: the answer came another way.
  void Disarm();

  void Continue() override;
  void Cancel() override;

 private:
  void Run(bool proceed);

  std::mutex mutex_;
  std::function<void(bool)> done_;
  IMPLEMENT_REFCOUNTING(OnceCallback);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_ONCE_CALLBACK_H_
