// base::Lock, a non-recursive mutex, with the scoped helpers AutoLock and
// AutoUnlock. Acquire() blocks the calling thread until the lock is free.

#ifndef CEF_INCLUDE_BASE_CEF_LOCK_H_
#define CEF_INCLUDE_BASE_CEF_LOCK_H_
#pragma once

#include <atomic>
#include <mutex>
#include <thread>

#include "include/base/cef_logging.h"

namespace base {
namespace cef_internal {

class Lock {
 public:
  Lock() = default;
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  void Acquire() {
    mutex_.lock();
    MarkHeld();
  }
  void Release() {
    MarkReleased();
    mutex_.unlock();
  }
  // Takes the lock only if it is free; returns whether it did.
  bool Try() {
    if (!mutex_.try_lock()) {
      return false;
    }
    MarkHeld();
    return true;
  }

  // In debug builds, fails unless the calling thread holds the lock.
  void AssertAcquired() const {
#if DCHECK_IS_ON()
    DCHECK(owner_.load(std::memory_order_relaxed) ==
           std::this_thread::get_id()) << "lock not held";
#endif
  }

 private:
#if DCHECK_IS_ON()
  void MarkHeld() {
    DCHECK(owner_.load(std::memory_order_relaxed) == std::thread::id()) << "lock already held";
    owner_.store(std::this_thread::get_id(), std::memory_order_relaxed);
  }
  void MarkReleased() {
    AssertAcquired();
    owner_.store(std::thread::id(), std::memory_order_relaxed);
  }
  // Written only by the thread holding |mutex_|; read by any for checks.
  std::atomic<std::thread::id> owner_{std::thread::id()};
#else
  void MarkHeld() {}
  void MarkReleased() {}
#endif

  std::mutex mutex_;
};

// Holds a Lock for the lifetime of the scope.
class AutoLock {
 public:
  struct AlreadyAcquired {};

  explicit AutoLock(Lock& lock) : lock_(lock) { lock_.Acquire(); }
  // Adopts a lock the caller already holds.
  AutoLock(Lock& lock, const AlreadyAcquired&) : lock_(lock) {
    lock_.AssertAcquired();
  }
  AutoLock(const AutoLock&) = delete;
  AutoLock& operator=(const AutoLock&) = delete;
  ~AutoLock() {
    lock_.AssertAcquired();
    lock_.Release();
  }

 private:
  Lock& lock_;
};

// Releases a held Lock for the lifetime of the scope.
class AutoUnlock {
 public:
  explicit AutoUnlock(Lock& lock) : lock_(lock) {
    lock_.AssertAcquired();
    lock_.Release();
  }
  AutoUnlock(const AutoUnlock&) = delete;
  AutoUnlock& operator=(const AutoUnlock&) = delete;
  ~AutoUnlock() { lock_.Acquire(); }

 private:
  Lock& lock_;
};

}  // namespace cef_internal

using cef_internal::AutoLock;
using cef_internal::AutoUnlock;
using cef_internal::Lock;

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_LOCK_H_
