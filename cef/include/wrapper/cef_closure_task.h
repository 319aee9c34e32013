// Posting callbacks as tasks:
//
//   #include "include/base/cef_callback.h"
//   #include "include/wrapper/cef_closure_task.h"
//   CefPostTask(TID_UI, base::BindOnce(&Foo::Bar, foo, 42));

#ifndef CEF_INCLUDE_WRAPPER_CEF_CLOSURE_TASK_H_
#define CEF_INCLUDE_WRAPPER_CEF_CLOSURE_TASK_H_
#pragma once

#include <cstdint>

#include "include/base/cef_callback_forward.h"
#include "include/cef_task.h"

// A task that runs |closure| when executed.
CefRefPtr<CefTask> CefCreateClosureTask(base::OnceClosure closure);
CefRefPtr<CefTask> CefCreateClosureTask(const base::RepeatingClosure& closure);

bool CefPostTask(CefThreadId threadId, base::OnceClosure closure);
bool CefPostTask(CefThreadId threadId, const base::RepeatingClosure& closure);

bool CefPostDelayedTask(CefThreadId threadId,
                        base::OnceClosure closure,
                        int64_t delay_ms);
bool CefPostDelayedTask(CefThreadId threadId,
                        const base::RepeatingClosure& closure,
                        int64_t delay_ms);

#endif  // CEF_INCLUDE_WRAPPER_CEF_CLOSURE_TASK_H_
