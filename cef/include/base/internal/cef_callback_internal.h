// Type-erased state behind base::OnceCallback and base::RepeatingCallback.
// Do not include directly; include "include/base/cef_callback.h".

#ifndef CEF_INCLUDE_BASE_INTERNAL_CEF_CALLBACK_INTERNAL_H_
#define CEF_INCLUDE_BASE_INTERNAL_CEF_CALLBACK_INTERNAL_H_
#pragma once

#include <atomic>
#include <utility>

#include "include/base/cef_callback_forward.h"

namespace base {
namespace cef_internal {

// The functor and its bound arguments. Shared by copies of a repeating callback,
// so the count is atomic: copies may be run and dropped on different threads.
class BindStateBase {
 public:
  BindStateBase(const BindStateBase&) = delete;
  BindStateBase& operator=(const BindStateBase&) = delete;

  void AddRef() const { ref_count_.fetch_add(1, std::memory_order_relaxed); }
  void Release() const {
    if (ref_count_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
      delete this;
    }
  }

 protected:
  BindStateBase() = default;
  virtual ~BindStateBase() = default;

 private:
  mutable std::atomic<int> ref_count_{0};
};

// A state that can be run with the arguments left unbound.
template <typename Signature>
class InvokableState;

template <typename R, typename... Args>
class InvokableState<R(Args...)> : public BindStateBase {
 public:
  virtual R Invoke(Args&&... args) = 0;
};

// Holds one reference to a state; the null state is the null callback.
class CallbackBase {
 public:
  CallbackBase(CallbackBase&& other) noexcept
      : state_(std::exchange(other.state_, nullptr)) {}
  CallbackBase& operator=(CallbackBase&& other) noexcept {
    if (this != &other) {
      Reset();
      state_ = std::exchange(other.state_, nullptr);
    }
    return *this;
  }

  bool is_null() const { return state_ == nullptr; }
  explicit operator bool() const { return !is_null(); }

  // Without weak receivers a callback is never cancelled behind its back.
  bool IsCancelled() const { return false; }
  bool MaybeValid() const { return true; }

  void Reset() {
    if (BindStateBase* state = std::exchange(state_, nullptr)) {
      state->Release();
    }
  }

 protected:
  constexpr CallbackBase() = default;
  explicit CallbackBase(BindStateBase* state) : state_(state) {
    if (state_) {
      state_->AddRef();
    }
  }
  CallbackBase(const CallbackBase& other) : CallbackBase(other.state_) {}
  CallbackBase& operator=(const CallbackBase& other) {
    if (state_ != other.state_) {
      CallbackBase copy(other);
      *this = std::move(copy);
    }
    return *this;
  }
  ~CallbackBase() { Reset(); }

  bool EqualsInternal(const CallbackBase& other) const {
    return state_ == other.state_;
  }

  template <typename Signature>
  InvokableState<Signature>* state() const {
    return static_cast<InvokableState<Signature>*>(state_);
  }

 private:
  BindStateBase* state_ = nullptr;
};

// The copyable base of repeating callbacks.
class CallbackBaseCopyable : public CallbackBase {
 public:
  CallbackBaseCopyable(const CallbackBaseCopyable& other) = default;
  CallbackBaseCopyable(CallbackBaseCopyable&& other) noexcept = default;
  CallbackBaseCopyable& operator=(const CallbackBaseCopyable& other) = default;
  CallbackBaseCopyable& operator=(CallbackBaseCopyable&& other) noexcept =
      default;

 protected:
  constexpr CallbackBaseCopyable() = default;
  explicit CallbackBaseCopyable(BindStateBase* state) : CallbackBase(state) {}
  ~CallbackBaseCopyable() = default;
};

}  // namespace cef_internal
}  // namespace base

#endif  // CEF_INCLUDE_BASE_INTERNAL_CEF_CALLBACK_INTERNAL_H_
