// base::BindOnce and base::BindRepeating make callbacks from a function, a method
// or a captureless lambda plus leading arguments; the rest come at Run().
//
// Receivers of methods: a CefRefPtr / scoped_refptr, a raw pointer to a
// reference-counted object (the callback then holds a reference), or
// base::Unretained(p) when the caller guarantees p outlives the callback.
// Other arguments are copied or moved in; base::Owned(p) hands a heap object
// to the callback, base::RetainedRef(p) keeps a reference and passes p raw.

#ifndef CEF_INCLUDE_BASE_CEF_BIND_H_
#define CEF_INCLUDE_BASE_CEF_BIND_H_
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "include/base/cef_logging.h"
#include "include/base/internal/cef_bind_internal.h"

namespace base {

template <typename Functor, typename... Args>
inline OnceCallback<cef_internal::MakeUnboundRunType<Functor, Args...>>
BindOnce(Functor&& functor, Args&&... args) {
  static_assert(!cef_internal::IsOnceCallback<std::decay_t<Functor>>::value ||
                    (std::is_rvalue_reference<Functor&&>::value &&
                     !std::is_const<std::remove_reference_t<Functor>>::value),
                "Bind a OnceCallback by std::move(callback).");
  return cef_internal::BindImpl<OnceCallback>(std::forward<Functor>(functor),
                                              std::forward<Args>(args)...);
}

template <typename Functor, typename... Args>
inline RepeatingCallback<cef_internal::MakeUnboundRunType<Functor, Args...>>
BindRepeating(Functor&& functor, Args&&... args) {
  static_assert(!cef_internal::IsOnceCallback<std::decay_t<Functor>>::value,
                "A OnceCallback cannot become repeating; use BindOnce.");
  return cef_internal::BindImpl<RepeatingCallback>(
      std::forward<Functor>(functor), std::forward<Args>(args)...);
}

// Binding a callback without arguments returns it unchanged.
template <typename Signature>
OnceCallback<Signature> BindOnce(OnceCallback<Signature> callback) {
  CHECK(callback);
  return callback;
}

template <typename Signature>
OnceCallback<Signature> BindOnce(RepeatingCallback<Signature> callback) {
  CHECK(callback);
  return callback;
}

template <typename Signature>
RepeatingCallback<Signature> BindRepeating(
    RepeatingCallback<Signature> callback) {
  CHECK(callback);
  return callback;
}

template <typename T>
inline cef_internal::UnretainedWrapper<T> Unretained(T* o) {
  return cef_internal::UnretainedWrapper<T>(o);
}

template <typename T>
inline cef_internal::RetainedRefWrapper<T> RetainedRef(T* o) {
  return cef_internal::RetainedRefWrapper<T>(o);
}

template <typename T>
inline cef_internal::RetainedRefWrapper<T> RetainedRef(scoped_refptr<T> o) {
  return cef_internal::RetainedRefWrapper<T>(std::move(o));
}

template <typename T>
inline cef_internal::OwnedWrapper<T> Owned(T* o) {
  return cef_internal::OwnedWrapper<T>(o);
}

template <typename T, typename Deleter>
inline cef_internal::OwnedWrapper<T, Deleter> Owned(
    std::unique_ptr<T, Deleter>&& ptr) {
  return cef_internal::OwnedWrapper<T, Deleter>(std::move(ptr));
}

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_BIND_H_
