// Debian's Xvfb as the engine's private X server: started by the calling
// thread, which it dies with (so with the host, even on SIGKILL), in a
// process group of its own.

#ifndef CEF_LIBCEF_OSR_XVFB_PROCESS_H_
#define CEF_LIBCEF_OSR_XVFB_PROCESS_H_

#include <sys/types.h>

#include <string>

namespace cefengine {

struct XvfbProcess {
  pid_t pid = -1;
  // A pidfd of |pid|, readable once Xvfb ended; -1 if the kernel has none.
  int pid_fd = -1;
  // ":N", the display it picked.
  std::string display_name;

  // Blocks until Xvfb accepts connections or gave up (10 s at most). On
  // failure |out| may still name a process that runs and must be ended.
  static bool Spawn(const std::string& xvfb,
                    XvfbProcess* out,
                    std::string* error);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_XVFB_PROCESS_H_
