// Pointer aliases of the engine's API: CefRefPtr holds a reference to a
// reference counted object, CefOwnPtr owns a scoped object, CefRawPtr borrows.

#ifndef CEF_INCLUDE_INTERNAL_CEF_PTR_H_
#define CEF_INCLUDE_INTERNAL_CEF_PTR_H_
#pragma once

#include <memory>

#include "include/base/cef_build.h"
#include "include/base/cef_ref_counted.h"

template <class T>
using CefRefPtr = scoped_refptr<T>;

template <class T, class D = std::default_delete<T>>
using CefOwnPtr = std::unique_ptr<T, D>;

template <class T>
using CefRawPtr = T*;

#endif  // CEF_INCLUDE_INTERNAL_CEF_PTR_H_
