#pragma once

#include "include/cef_base.h"

#include <chrono>

// A one-shot wait for a value that another thread provides. Held by CefRefPtr; the waiter keeps
// a reference of its own across get.
template <typename T>
class Future : public CefBaseRefCounted
{
public:
    // Fulfils the wait; any thread. A second call throws std::future_error.
    virtual void set(const T& value) = 0;
    // Blocks the calling thread until the value comes or timeout passes (-1: no limit), then
    // returns the value or a default T. Once per object.
    virtual T get(std::chrono::milliseconds timeout) = 0;
};
