// A thread-safe reference counter.

#ifndef CEF_INCLUDE_BASE_CEF_ATOMIC_REF_COUNT_H_
#define CEF_INCLUDE_BASE_CEF_ATOMIC_REF_COUNT_H_
#pragma once

#include <atomic>

namespace base {

class AtomicRefCount {
 public:
  constexpr AtomicRefCount() : ref_count_(0) {}
  explicit constexpr AtomicRefCount(int initial_value)
      : ref_count_(initial_value) {}

  // Returns the count before the increment.
  int Increment() { return Increment(1); }
  int Increment(int increment) {
    return ref_count_.fetch_add(increment, std::memory_order_relaxed);
  }

  // Returns false once the count has dropped to zero. The acquire-release
  // order makes every write done under a reference visible to the deleter.
  bool Decrement() {
    return ref_count_.fetch_sub(1, std::memory_order_acq_rel) != 1;
  }

  bool IsOne() const { return ref_count_.load(std::memory_order_acquire) == 1; }
  bool IsZero() const {
    return ref_count_.load(std::memory_order_acquire) == 0;
  }

  int SubtleRefCountForDebug() const {
    return ref_count_.load(std::memory_order_relaxed);
  }

 private:
  std::atomic_int ref_count_;
};

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_ATOMIC_REF_COUNT_H_
