// Forward declarations of the callback templates, for headers that only pass callbacks along.

#ifndef CEF_INCLUDE_BASE_CEF_CALLBACK_FORWARD_H_
#define CEF_INCLUDE_BASE_CEF_CALLBACK_FORWARD_H_
#pragma once

namespace base {

template <typename Signature>
class OnceCallback;

template <typename Signature>
class RepeatingCallback;

using OnceClosure = OnceCallback<void()>;
using RepeatingClosure = RepeatingCallback<void()>;

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_CALLBACK_FORWARD_H_
