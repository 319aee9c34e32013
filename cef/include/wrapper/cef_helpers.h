// Thread assertions and helpers for reference-counted classes that must be
// destroyed on a particular engine thread.

#ifndef CEF_INCLUDE_WRAPPER_CEF_HELPERS_H_
#define CEF_INCLUDE_WRAPPER_CEF_HELPERS_H_
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "include/base/cef_bind.h"
#include "include/base/cef_logging.h"
#include "include/cef_task.h"

// Debug-build assertions that the caller runs on the named thread.
#define CEF_REQUIRE_UI_THREAD() DCHECK(CefCurrentlyOn(TID_UI));
#define CEF_REQUIRE_IO_THREAD() DCHECK(CefCurrentlyOn(TID_IO));
#define CEF_REQUIRE_FILE_BACKGROUND_THREAD() \
  DCHECK(CefCurrentlyOn(TID_FILE_BACKGROUND));
#define CEF_REQUIRE_FILE_USER_VISIBLE_THREAD() \
  DCHECK(CefCurrentlyOn(TID_FILE_USER_VISIBLE));
#define CEF_REQUIRE_FILE_USER_BLOCKING_THREAD() \
  DCHECK(CefCurrentlyOn(TID_FILE_USER_BLOCKING));
#define CEF_REQUIRE_RENDERER_THREAD() DCHECK(CefCurrentlyOn(TID_RENDERER));

// Deletes an object on |thread|: at once when already there, else by a posted
// task. Needs "include/base/cef_callback.h" and
// "include/wrapper/cef_closure_task.h" where it is instantiated.
template <CefThreadId thread>
struct CefDeleteOnThread {
  template <typename T>
  static void Destruct(const T* x) {
    if (CefCurrentlyOn(thread)) {
      delete x;
    } else {
      CefPostTask(thread,
                  base::BindOnce(&CefDeleteOnThread<thread>::Destruct<T>,
                                 base::Unretained(x)));
    }
  }
};

struct CefDeleteOnUIThread : public CefDeleteOnThread<TID_UI> {};
struct CefDeleteOnIOThread : public CefDeleteOnThread<TID_IO> {};
struct CefDeleteOnFileBackgroundThread
    : public CefDeleteOnThread<TID_FILE_BACKGROUND> {};
struct CefDeleteOnFileUserVisibleThread
    : public CefDeleteOnThread<TID_FILE_USER_VISIBLE> {};
struct CefDeleteOnFileUserBlockingThread
    : public CefDeleteOnThread<TID_FILE_USER_BLOCKING> {};
struct CefDeleteOnRendererThread : public CefDeleteOnThread<TID_RENDERER> {};

// Like IMPLEMENT_REFCOUNTING, with the final delete done by |Destructor|.
#define IMPLEMENT_REFCOUNTING_EX(ClassName, Destructor) \
 public:                                                \
  void AddRef() const override {                        \
    ref_count_.AddRef();                                \
  }                                                     \
  bool Release() const override {                       \
    if (ref_count_.Release()) {                         \
      Destructor::Destruct(this);                       \
      return true;                                      \
    }                                                   \
    return false;                                       \
  }                                                     \
  bool HasOneRef() const override {                     \
    return ref_count_.HasOneRef();                      \
  }                                                     \
  bool HasAtLeastOneRef() const override {              \
    return ref_count_.HasAtLeastOneRef();               \
  }                                                     \
                                                        \
 private:                                               \
  CefRefCount ref_count_

#define IMPLEMENT_REFCOUNTING_DELETE_ON_UIT(ClassName) \
  IMPLEMENT_REFCOUNTING_EX(ClassName, CefDeleteOnUIThread)

#define IMPLEMENT_REFCOUNTING_DELETE_ON_IOT(ClassName) \
  IMPLEMENT_REFCOUNTING_EX(ClassName, CefDeleteOnIOThread)

// An argv copy whose strings live as long as the object: CefMainArgs keeps
// only the pointers.
class CefScopedArgArray {
 public:
  CefScopedArgArray(int argc, char* argv[]) : values_(argv, argv + argc) {
    array_.reserve(values_.size() + 1);
    for (std::string& value : values_) {
      array_.push_back(value.data());
    }
    array_.push_back(nullptr);
  }
  CefScopedArgArray(const CefScopedArgArray&) = delete;
  CefScopedArgArray& operator=(const CefScopedArgArray&) = delete;

  char** array() const { return const_cast<char**>(array_.data()); }

 private:
  std::vector<std::string> values_;
  std::vector<char*> array_;
};

#endif  // CEF_INCLUDE_WRAPPER_CEF_HELPERS_H_
