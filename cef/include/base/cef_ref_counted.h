// Base classes for reference counted objects used with scoped_refptr:
//   class Foo : public base::RefCounted<Foo> { ... };             // one thread
//   class Bar : public base::RefCountedThreadSafe<Bar> { ... };   // any thread
// Give such classes a private or protected destructor and befriend the base.

#ifndef CEF_INCLUDE_BASE_CEF_REF_COUNTED_H_
#define CEF_INCLUDE_BASE_CEF_REF_COUNTED_H_
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <utility>

#include "include/base/cef_atomic_ref_count.h"
#include "include/base/cef_build.h"
#include "include/base/cef_compiler_specific.h"
#include "include/base/cef_logging.h"
#include "include/base/cef_scoped_refptr.h"

namespace base {
namespace cef_subtle {

class RefCountedBase {
 public:
  bool HasOneRef() const { return ref_count_ == 1; }
  bool HasAtLeastOneRef() const { return ref_count_ >= 1; }

 protected:
  explicit RefCountedBase(StartRefCountFromZeroTag) {}
  explicit RefCountedBase(StartRefCountFromOneTag) : ref_count_(1) {
#if DCHECK_IS_ON()
    needs_adopt_ref_ = true;
#endif
  }
  RefCountedBase(const RefCountedBase&) = delete;
  RefCountedBase& operator=(const RefCountedBase&) = delete;

  ~RefCountedBase() {
#if DCHECK_IS_ON()
    DCHECK(in_dtor_) << "RefCounted object deleted without Release()";
#endif
  }

  void AddRef() const {
#if DCHECK_IS_ON()
    DCHECK(!in_dtor_);
    DCHECK(!needs_adopt_ref_)
        << "the first reference must come from AdoptRef or MakeRefCounted";
#endif
    ++ref_count_;
  }

  // Returns true when the last reference went away.
  bool Release() const {
    --ref_count_;
#if DCHECK_IS_ON()
    DCHECK(!in_dtor_);
    if (ref_count_ == 0) {
      in_dtor_ = true;
    }
#endif
    return ref_count_ == 0;
  }

 private:
  template <typename U>
  friend scoped_refptr<U> base::AdoptRef(U*);

  void Adopted() const {
#if DCHECK_IS_ON()
    DCHECK(needs_adopt_ref_);
    needs_adopt_ref_ = false;
#endif
  }

  mutable uint32_t ref_count_ = 0;
#if DCHECK_IS_ON()
  mutable bool needs_adopt_ref_ = false;
  mutable bool in_dtor_ = false;
#endif
};

class RefCountedThreadSafeBase {
 public:
  bool HasOneRef() const { return ref_count_.IsOne(); }
  bool HasAtLeastOneRef() const { return !ref_count_.IsZero(); }

 protected:
  explicit constexpr RefCountedThreadSafeBase(StartRefCountFromZeroTag) {}
  explicit constexpr RefCountedThreadSafeBase(StartRefCountFromOneTag)
      : ref_count_(1) {
#if DCHECK_IS_ON()
    needs_adopt_ref_ = true;
#endif
  }
  RefCountedThreadSafeBase(const RefCountedThreadSafeBase&) = delete;
  RefCountedThreadSafeBase& operator=(const RefCountedThreadSafeBase&) = delete;

  ~RefCountedThreadSafeBase() {
#if DCHECK_IS_ON()
    DCHECK(in_dtor_) << "RefCountedThreadSafe object deleted without Release()";
#endif
  }

  void AddRef() const {
#if DCHECK_IS_ON()
    DCHECK(!in_dtor_);
    DCHECK(!needs_adopt_ref_)
        << "the first reference must come from AdoptRef or MakeRefCounted";
#endif
    ref_count_.Increment();
  }

  // Like AddRef(), but also fails on an object already at zero.
  void AddRefWithCheck() const {
#if DCHECK_IS_ON()
    DCHECK(!in_dtor_);
    DCHECK(!needs_adopt_ref_)
        << "the first reference must come from AdoptRef or MakeRefCounted";
#endif
    CHECK(ref_count_.Increment() > 0);
  }

  // Returns true when the last reference went away.
  bool Release() const {
#if DCHECK_IS_ON()
    DCHECK(!in_dtor_);
    DCHECK(!ref_count_.IsZero());
#endif
    if (!ref_count_.Decrement()) {
#if DCHECK_IS_ON()
      in_dtor_ = true;
#endif
      return true;
    }
    return false;
  }

 private:
  template <typename U>
  friend scoped_refptr<U> base::AdoptRef(U*);

  void Adopted() const {
#if DCHECK_IS_ON()
    DCHECK(needs_adopt_ref_);
    needs_adopt_ref_ = false;
#endif
  }

  mutable AtomicRefCount ref_count_{0};
#if DCHECK_IS_ON()
  mutable bool needs_adopt_ref_ = false;
  mutable bool in_dtor_ = false;
#endif
};

}  // namespace cef_subtle

// Put in a class body to make its count start at one; the first reference
// must then be taken with base::AdoptRef or base::MakeRefCounted.
#define REQUIRE_ADOPTION_FOR_REFCOUNTED_TYPE()                 \
  static constexpr ::base::cef_subtle::StartRefCountFromOneTag \
      kRefCountPreference = ::base::cef_subtle::kStartRefCountFromOneTag

template <class T, typename Traits>
class RefCounted;

template <typename T>
struct DefaultRefCountedTraits {
  static void Destruct(const T* x) {
    RefCounted<T, DefaultRefCountedTraits>::DeleteInternal(x);
  }
};

template <class T, typename Traits = DefaultRefCountedTraits<T>>
class RefCounted : public cef_subtle::RefCountedBase {
 public:
  static constexpr cef_subtle::StartRefCountFromZeroTag kRefCountPreference =
      cef_subtle::kStartRefCountFromZeroTag;

  RefCounted() : cef_subtle::RefCountedBase(T::kRefCountPreference) {}
  RefCounted(const RefCounted&) = delete;
  RefCounted& operator=(const RefCounted&) = delete;

  void AddRef() const { cef_subtle::RefCountedBase::AddRef(); }

  void Release() const {
    if (cef_subtle::RefCountedBase::Release()) {
      Traits::Destruct(static_cast<const T*>(this));
    }
  }

 protected:
  ~RefCounted() = default;

 private:
  friend struct DefaultRefCountedTraits<T>;
  template <typename U>
  static void DeleteInternal(const U* x) {
    delete x;
  }
};

template <class T, typename Traits>
class RefCountedThreadSafe;

template <typename T>
struct DefaultRefCountedThreadSafeTraits {
  static void Destruct(const T* x) {
    RefCountedThreadSafe<T, DefaultRefCountedThreadSafeTraits>::DeleteInternal(
        x);
  }
};

template <class T, typename Traits = DefaultRefCountedThreadSafeTraits<T>>
class RefCountedThreadSafe : public cef_subtle::RefCountedThreadSafeBase {
 public:
  static constexpr cef_subtle::StartRefCountFromZeroTag kRefCountPreference =
      cef_subtle::kStartRefCountFromZeroTag;

  explicit RefCountedThreadSafe()
      : cef_subtle::RefCountedThreadSafeBase(T::kRefCountPreference) {}
  RefCountedThreadSafe(const RefCountedThreadSafe&) = delete;
  RefCountedThreadSafe& operator=(const RefCountedThreadSafe&) = delete;

  void AddRef() const { AddRefImpl(T::kRefCountPreference); }

  void Release() const {
    if (cef_subtle::RefCountedThreadSafeBase::Release()) {
      Traits::Destruct(static_cast<const T*>(this));
    }
  }

 protected:
  ~RefCountedThreadSafe() = default;

 private:
  friend struct DefaultRefCountedThreadSafeTraits<T>;
  template <typename U>
  static void DeleteInternal(const U* x) {
    delete x;
  }

  void AddRefImpl(cef_subtle::StartRefCountFromZeroTag) const {
    cef_subtle::RefCountedThreadSafeBase::AddRef();
  }
  void AddRefImpl(cef_subtle::StartRefCountFromOneTag) const {
    cef_subtle::RefCountedThreadSafeBase::AddRefWithCheck();
  }
};

// A thread-safe reference counted holder of one value.
template <typename T>
class RefCountedData
    : public base::RefCountedThreadSafe<base::RefCountedData<T>> {
 public:
  RefCountedData() : data() {}
  RefCountedData(const T& in_value) : data(in_value) {}
  RefCountedData(T&& in_value) : data(std::move(in_value)) {}
  template <typename... Args>
  explicit RefCountedData(std::in_place_t, Args&&... args)
      : data(std::forward<Args>(args)...) {}

  T data;

 private:
  friend class base::RefCountedThreadSafe<base::RefCountedData<T>>;
  ~RefCountedData() = default;
};

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_REF_COUNTED_H_
