#include "libcef/browser/profile_start_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "include/base/cef_logging.h"

namespace cefengine {

ProfileStartLock::ProfileStartLock(const std::string& profile_dir,
                                   std::chrono::milliseconds patience) {
  // Close-on-exec: Chromium must not inherit it, or the lock would live on
  // with Chromium.
  const std::string path = profile_dir + "/BroviaStartLock";
  const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (fd < 0) {
    LOG(WARNING) << "Cannot open " << path << ": Chromium starts unlocked";
    return;
  }
  const auto deadline = std::chrono::steady_clock::now() + patience;
  // flock has no timeout of its own; the other start takes about a second.
  while (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) {
      ::close(fd);
      return;
    }
    if (std::chrono::steady_clock::now() >= deadline) {
      LOG(WARNING) << "Another Chromium still starts on " << profile_dir
                   << "; this one starts anyway";
      ::close(fd);
      return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  fd_ = fd;
}

ProfileStartLock::~ProfileStartLock() {
  if (fd_ >= 0) {
    ::close(fd_);  // releases the lock
  }
}

}  // namespace cefengine
