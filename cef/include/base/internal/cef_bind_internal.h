// Machinery of base::BindOnce and base::BindRepeating.
// Do not include directly; include "include/base/cef_bind.h".

#ifndef CEF_INCLUDE_BASE_INTERNAL_CEF_BIND_INTERNAL_H_
#define CEF_INCLUDE_BASE_INTERNAL_CEF_BIND_INTERNAL_H_
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

#include "include/base/cef_scoped_refptr.h"
#include "include/base/internal/cef_callback_internal.h"

namespace base {
namespace cef_internal {

// True for types with AddRef() and Release(): CEF objects and base::RefCounted*.
template <typename T, typename = void>
struct IsRefCountedType : std::false_type {};
template <typename T>
struct IsRefCountedType<T,
                        std::void_t<decltype(std::declval<T*>()->AddRef()),
                                    decltype(std::declval<T*>()->Release())>>
    : std::true_type {};

template <typename T>
struct IsRawRefCountedPointer : std::false_type {};
template <typename T>
struct IsRawRefCountedPointer<T*> : IsRefCountedType<T> {};

// Wrappers that change how a bound argument is held.

template <typename T>
class UnretainedWrapper {
 public:
  explicit UnretainedWrapper(T* o) : ptr_(o) {}
  T* get() const { return ptr_; }

 private:
  T* ptr_;
};

template <typename T>
class RetainedRefWrapper {
 public:
  template <typename P>
  explicit RetainedRefWrapper(P&& o) : ref_(std::forward<P>(o)) {}
  T* get() const { return ref_.get(); }

 private:
  scoped_refptr<T> ref_;
};

template <typename T, typename Deleter = std::default_delete<T>>
class OwnedWrapper {
 public:
  explicit OwnedWrapper(T* o) : ptr_(o) {}
  explicit OwnedWrapper(std::unique_ptr<T, Deleter>&& ptr)
      : ptr_(std::move(ptr)) {}
  T* get() const { return ptr_.get(); }

 private:
  std::unique_ptr<T, Deleter> ptr_;
};

// A raw `this` of a reference-counted receiver: the callback keeps it alive.
template <typename T>
class RetainedReceiver {
 public:
  explicit RetainedReceiver(T* o) : ptr_(o) {
    if (ptr_) {
      ptr_->AddRef();
    }
  }
  RetainedReceiver(const RetainedReceiver& other)
      : RetainedReceiver(other.ptr_) {}
  RetainedReceiver(RetainedReceiver&& other) noexcept
      : ptr_(std::exchange(other.ptr_, nullptr)) {}
  RetainedReceiver& operator=(const RetainedReceiver&) = delete;
  RetainedReceiver& operator=(RetainedReceiver&&) = delete;
  ~RetainedReceiver() {
    if (ptr_) {
      ptr_->Release();
    }
  }
  T* get() const { return ptr_; }

 private:
  T* ptr_;
};

// Turns a stored argument into what the functor receives.
template <typename Stored>
struct Unwrapper {
  template <typename U>
  static U&& Unwrap(U&& o) {
    return std::forward<U>(o);
  }
};
template <typename T>
struct Unwrapper<UnretainedWrapper<T>> {
  static T* Unwrap(const UnretainedWrapper<T>& o) { return o.get(); }
};
template <typename T>
struct Unwrapper<RetainedRefWrapper<T>> {
  static T* Unwrap(const RetainedRefWrapper<T>& o) { return o.get(); }
};
template <typename T, typename D>
struct Unwrapper<OwnedWrapper<T, D>> {
  static T* Unwrap(const OwnedWrapper<T, D>& o) { return o.get(); }
};
template <typename T>
struct Unwrapper<RetainedReceiver<T>> {
  static T* Unwrap(const RetainedReceiver<T>& o) { return o.get(); }
};

template <typename T>
struct IsOnceCallback : std::false_type {};
template <typename Signature>
struct IsOnceCallback<OnceCallback<Signature>> : std::true_type {};

template <typename T>
struct IsRepeatingCallback : std::false_type {};
template <typename Signature>
struct IsRepeatingCallback<RepeatingCallback<Signature>> : std::true_type {};

// The run type of what can be bound: plain functions, methods (the receiver
// becomes the first parameter), captureless lambdas and callbacks.
template <typename Functor, typename = void>
struct FunctorTraits {
  static constexpr bool is_supported = false;
};

template <typename R, typename... Args>
struct FunctorTraits<R (*)(Args...)> {
  static constexpr bool is_supported = true;
  static constexpr bool is_method = false;
  using RunType = R(Args...);
};
template <typename R, typename... Args>
struct FunctorTraits<R (*)(Args...) noexcept> : FunctorTraits<R (*)(Args...)> {
};

template <typename R, typename C, typename... Args>
struct FunctorTraits<R (C::*)(Args...)> {
  static constexpr bool is_supported = true;
  static constexpr bool is_method = true;
  using RunType = R(C*, Args...);
  using LambdaRunType = R(Args...);
};
template <typename R, typename C, typename... Args>
struct FunctorTraits<R (C::*)(Args...) const> {
  static constexpr bool is_supported = true;
  static constexpr bool is_method = true;
  using RunType = R(const C*, Args...);
  using LambdaRunType = R(Args...);
};
template <typename R, typename C, typename... Args>
struct FunctorTraits<R (C::*)(Args...) noexcept>
    : FunctorTraits<R (C::*)(Args...)> {};
template <typename R, typename C, typename... Args>
struct FunctorTraits<R (C::*)(Args...) const noexcept>
    : FunctorTraits<R (C::*)(Args...) const> {};

// Lambdas with captures are refused: bind the values instead.
template <typename Lambda>
struct FunctorTraits<
    Lambda,
    std::enable_if_t<std::is_class<Lambda>::value &&
                         std::is_empty<Lambda>::value,
                     std::void_t<decltype(&Lambda::operator())>>> {
  static constexpr bool is_supported = true;
  static constexpr bool is_method = false;
  using RunType =
      typename FunctorTraits<decltype(&Lambda::operator())>::LambdaRunType;
};

template <typename R, typename... Args>
struct FunctorTraits<OnceCallback<R(Args...)>> {
  static constexpr bool is_supported = true;
  static constexpr bool is_method = false;
  using RunType = R(Args...);
};
template <typename R, typename... Args>
struct FunctorTraits<RepeatingCallback<R(Args...)>> {
  static constexpr bool is_supported = true;
  static constexpr bool is_method = false;
  using RunType = R(Args...);
};

// R(A0, ..., An) without its first `count` parameters.
template <std::size_t count, typename Signature>
struct DropParams;
template <std::size_t count, typename R, typename... Args>
struct DropParams<count, R(Args...)> {
  static_assert(count <= sizeof...(Args),
                "More arguments bound than the functor takes.");

  template <std::size_t... I>
  static auto Make(std::index_sequence<I...>)
      -> R (*)(std::tuple_element_t<count + I, std::tuple<Args...>>...);

  using Type = std::remove_pointer_t<decltype(Make(
      std::make_index_sequence<sizeof...(Args) - count>()))>;
};

template <typename Functor, typename... BoundArgs>
using MakeUnboundRunType = typename DropParams<
    sizeof...(BoundArgs),
    typename FunctorTraits<std::decay_t<Functor>>::RunType>::Type;

// How a bound argument is stored.
template <typename Arg>
struct ArgStorage {
  using Type = std::decay_t<Arg>;
  static_assert(!IsRawRefCountedPointer<Type>::value,
                "A reference-counted argument must be bound as CefRefPtr or "
                "scoped_refptr, or wrapped in base::Unretained.");
};

template <typename Receiver>
struct ReceiverStorage {
  using Decayed = std::decay_t<Receiver>;
  static_assert(!std::is_pointer<Decayed>::value ||
                    IsRefCountedType<std::remove_pointer_t<Decayed>>::value,
                "A raw pointer receiver must be reference-counted; otherwise "
                "wrap it in base::Unretained and make sure it outlives the "
                "callback.");
  using Type = std::conditional_t<
      std::is_pointer<Decayed>::value,
      RetainedReceiver<std::remove_pointer_t<Decayed>>, Decayed>;
};

template <typename F, typename... Args>
decltype(auto) CallFunctor(F&& functor, Args&&... args) {
  using Decayed = std::decay_t<F>;
  if constexpr (IsOnceCallback<Decayed>::value) {
    return std::move(functor).Run(std::forward<Args>(args)...);
  } else if constexpr (IsRepeatingCallback<Decayed>::value) {
    return functor.Run(std::forward<Args>(args)...);
  } else {
    return std::invoke(std::forward<F>(functor), std::forward<Args>(args)...);
  }
}

// A once state hands its bound values over by move; a repeating state lends
// them as const lvalues, since it may run again.
template <bool is_once, typename UnboundRunType, typename Functor,
          typename... Stored>
class BindState;

template <bool is_once, typename R, typename... Args, typename Functor,
          typename... Stored>
class BindState<is_once, R(Args...), Functor, Stored...> final
    : public InvokableState<R(Args...)> {
 public:
  template <typename F, typename... Bound>
  explicit BindState(F&& functor, Bound&&... bound)
      : functor_(std::forward<F>(functor)), bound_(std::forward<Bound>(bound)...) {}

  R Invoke(Args&&... args) override {
    return InvokeWith(std::index_sequence_for<Stored...>(),
                      std::forward<Args>(args)...);
  }

 private:
  template <std::size_t... I>
  R InvokeWith(std::index_sequence<I...>, Args&&... args) {
    if constexpr (is_once) {
      return CallFunctor(
          std::move(functor_),
          Unwrapper<Stored>::Unwrap(std::move(std::get<I>(bound_)))...,
          std::forward<Args>(args)...);
    } else {
      return CallFunctor(std::as_const(functor_),
                         Unwrapper<Stored>::Unwrap(std::as_const(std::get<I>(bound_)))...,
                         std::forward<Args>(args)...);
    }
  }

  Functor functor_;
  std::tuple<Stored...> bound_;
};

template <bool is_once, typename UnboundRunType, typename Functor,
          bool is_method, typename... BoundArgs>
struct BindStateFor {
  using Type = BindState<is_once, UnboundRunType, Functor,
                         typename ArgStorage<BoundArgs>::Type...>;
};
template <bool is_once, typename UnboundRunType, typename Functor,
          typename Receiver, typename... BoundArgs>
struct BindStateFor<is_once, UnboundRunType, Functor, true, Receiver,
                    BoundArgs...> {
  using Type = BindState<is_once, UnboundRunType, Functor,
                         typename ReceiverStorage<Receiver>::Type,
                         typename ArgStorage<BoundArgs>::Type...>;
};

template <template <typename> class CallbackT>
struct IsOnceTemplate : std::false_type {};
template <>
struct IsOnceTemplate<OnceCallback> : std::true_type {};

template <template <typename> class CallbackT, typename Functor,
          typename... BoundArgs>
CallbackT<MakeUnboundRunType<Functor, BoundArgs...>> BindImpl(
    Functor&& functor,
    BoundArgs&&... bound) {
  using Traits = FunctorTraits<std::decay_t<Functor>>;
  static_assert(Traits::is_supported,
                "Only functions, methods, captureless lambdas and callbacks "
                "can be bound.");
  static_assert(!Traits::is_method || sizeof...(BoundArgs) > 0,
                "A method needs its receiver as the first bound argument.");
  using UnboundRunType = MakeUnboundRunType<Functor, BoundArgs...>;
  using State = typename BindStateFor<IsOnceTemplate<CallbackT>::value,
                                      UnboundRunType, std::decay_t<Functor>,
                                      Traits::is_method, BoundArgs...>::Type;
  return CallbackT<UnboundRunType>(
      new State(std::forward<Functor>(functor), std::forward<BoundArgs>(bound)...));
}

}  // namespace cef_internal
}  // namespace base

#endif  // CEF_INCLUDE_BASE_INTERNAL_CEF_BIND_INTERNAL_H_
