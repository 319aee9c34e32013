// base::OnceCallback runs at most once and is move-only; base::RepeatingCallback
// may run any number of times and copies cheaply (copies share their bound state).
//
//   base::OnceClosure task = base::BindOnce(&Foo::Bar, foo, 42);
//   std::move(task).Run();   // task is null afterwards
//
// Bound values are destroyed with the last callback that holds them, on the
// thread where that happens.

#ifndef CEF_INCLUDE_BASE_CEF_CALLBACK_H_
#define CEF_INCLUDE_BASE_CEF_CALLBACK_H_
#pragma once

#include <cstddef>
#include <utility>

#include "include/base/cef_bind.h"
#include "include/base/cef_callback_forward.h"
#include "include/base/cef_logging.h"
#include "include/base/internal/cef_callback_internal.h"

namespace base {

template <typename R, typename... Args>
class OnceCallback<R(Args...)> : public cef_internal::CallbackBase {
 public:
  using ResultType = R;
  using RunType = R(Args...);

  constexpr OnceCallback() = default;
  OnceCallback(std::nullptr_t) = delete;

  // Adopts a freshly made state; used by BindOnce.
  explicit OnceCallback(cef_internal::BindStateBase* state)
      : cef_internal::CallbackBase(state) {}

  OnceCallback(const OnceCallback&) = delete;
  OnceCallback& operator=(const OnceCallback&) = delete;
  OnceCallback(OnceCallback&&) noexcept = default;
  OnceCallback& operator=(OnceCallback&&) noexcept = default;

  OnceCallback(RepeatingCallback<RunType> other)
      : cef_internal::CallbackBase(std::move(other)) {}
  OnceCallback& operator=(RepeatingCallback<RunType> other) {
    static_cast<cef_internal::CallbackBase&>(*this) = std::move(other);
    return *this;
  }

  // A once callback is consumed by running it: std::move(cb).Run(...).
  R Run(Args... args) const& = delete;
  R Run(Args... args) && {
    OnceCallback consumed = std::move(*this);
    CHECK(consumed) << "Run() of a null OnceCallback";
    return consumed.template state<RunType>()->Invoke(
        std::forward<Args>(args)...);
  }
};

template <typename R, typename... Args>
class RepeatingCallback<R(Args...)>
    : public cef_internal::CallbackBaseCopyable {
 public:
  using ResultType = R;
  using RunType = R(Args...);

  constexpr RepeatingCallback() = default;
  RepeatingCallback(std::nullptr_t) = delete;

  // Adopts a freshly made state; used by BindRepeating.
  explicit RepeatingCallback(cef_internal::BindStateBase* state)
      : cef_internal::CallbackBaseCopyable(state) {}

  RepeatingCallback(const RepeatingCallback&) = default;
  RepeatingCallback& operator=(const RepeatingCallback&) = default;
  RepeatingCallback(RepeatingCallback&&) noexcept = default;
  RepeatingCallback& operator=(RepeatingCallback&&) noexcept = default;

  bool operator==(const RepeatingCallback& other) const {
    return EqualsInternal(other);
  }
  bool operator!=(const RepeatingCallback& other) const {
    return !operator==(other);
  }

  R Run(Args... args) const& {
    CHECK(*this) << "Run() of a null RepeatingCallback";
    return this->template state<RunType>()->Invoke(std::forward<Args>(args)...);
  }
  // Running an rvalue leaves it null, as for a once callback.
  R Run(Args... args) && {
    RepeatingCallback consumed = std::move(*this);
    return consumed.Run(std::forward<Args>(args)...);
  }
};

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_CALLBACK_H_
