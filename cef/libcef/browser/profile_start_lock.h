// Keeps two full Chromiums that start on one profile apart. A full Chromium
// hands itself over to another one on the same profile and quits (its
// process singleton); the engine clears that singleton before each start, so
// that profiles are shared as the headless shell shares them. Two hosts that
// start at the same moment could still meet half-way: this lock, held from
// the clearing until the new Chromium answers, makes the starts take turns.

#ifndef CEF_LIBCEF_BROWSER_PROFILE_START_LOCK_H_
#define CEF_LIBCEF_BROWSER_PROFILE_START_LOCK_H_

#include <chrono>
#include <string>

namespace cefengine {

class ProfileStartLock {
 public:
  // Blocks the calling thread until no other process starts a Chromium on
  // |profile_dir|, or until |patience| ran out (then it goes on unlocked).
  ProfileStartLock(const std::string& profile_dir,
                   std::chrono::milliseconds patience);
  ~ProfileStartLock();

  ProfileStartLock(const ProfileStartLock&) = delete;
  ProfileStartLock& operator=(const ProfileStartLock&) = delete;

  bool held() const { return fd_ >= 0; }

 private:
  int fd_ = -1;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PROFILE_START_LOCK_H_
