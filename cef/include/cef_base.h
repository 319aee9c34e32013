// Roots of the engine's class hierarchy:
// - CefBaseRefCounted: objects shared between the engine and the client and
//   kept alive by CefRefPtr. Implementations add IMPLEMENT_REFCOUNTING.
// - CefBaseScoped: objects with a single owner (CefOwnPtr) or none.

#ifndef CEF_INCLUDE_CEF_BASE_H_
#define CEF_INCLUDE_CEF_BASE_H_
#pragma once

#include "include/base/cef_atomic_ref_count.h"
#include "include/base/cef_build.h"
#include "include/base/cef_macros.h"

#include "include/internal/cef_ptr.h"
#include "include/internal/cef_string.h"
#include "include/internal/cef_time_wrappers.h"
#include "include/internal/cef_types_wrappers.h"
#if defined(OS_LINUX)
#include "include/internal/cef_linux.h"
#endif

class CefBaseRefCounted {
 public:
  // Adds a reference. Safe on any thread.
  virtual void AddRef() const = 0;

  // Drops a reference; returns true if that deleted the object.
  virtual bool Release() const = 0;

  virtual bool HasOneRef() const = 0;

  virtual bool HasAtLeastOneRef() const = 0;

 protected:
  virtual ~CefBaseRefCounted() {}
};

class CefBaseScoped {
 public:
  virtual ~CefBaseScoped() {}
};

// The counter behind IMPLEMENT_REFCOUNTING.
class CefRefCount {
 public:
  CefRefCount() = default;
  CefRefCount(const CefRefCount&) = delete;
  CefRefCount& operator=(const CefRefCount&) = delete;

  void AddRef() const { ref_count_.Increment(); }

  // Returns true when the last reference went away.
  bool Release() const { return !ref_count_.Decrement(); }

  bool HasOneRef() const { return ref_count_.IsOne(); }

  bool HasAtLeastOneRef() const { return !ref_count_.IsZero(); }

 private:
  mutable base::AtomicRefCount ref_count_{0};
};

// Implements the CefBaseRefCounted methods in class |ClassName|, which is
// deleted when its last reference is released. Leaves the class body in
// private access.
#define IMPLEMENT_REFCOUNTING(ClassName)          \
 public:                                          \
  void AddRef() const override {                  \
    ref_count_.AddRef();                          \
  }                                               \
  bool Release() const override {                 \
    if (ref_count_.Release()) {                   \
      delete static_cast<const ClassName*>(this); \
      return true;                                \
    }                                             \
    return false;                                 \
  }                                               \
  bool HasOneRef() const override {               \
    return ref_count_.HasOneRef();                \
  }                                               \
  bool HasAtLeastOneRef() const override {        \
    return ref_count_.HasAtLeastOneRef();         \
  }                                               \
                                                  \
 private:                                         \
  CefRefCount ref_count_

#endif  // CEF_INCLUDE_CEF_BASE_H_
