#pragma once

#include "client/future.h"

#include <chrono>
#include <future>

// The wait pumps no event loop: the engine's UI thread runs on its own and fulfils it, so the
// waiter simply sleeps on the promise's shared state. Never wait on the thread that fulfils.
template <typename T>
class MultiThreadedFuture : public Future<T>
{
public:
    MultiThreadedFuture() = default;

    void set(const T& value) override { m_promise.set_value(value); }

    // Blocks the calling thread. Expiry is no error: it returns a default T.
    T get(std::chrono::milliseconds timeout) override
    {
        std::future<T> future = m_promise.get_future();
        if (timeout.count() != -1 &&
            future.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready)
        {
            if (timeout.count() <= 0)
                return T();
            const auto deadline = std::chrono::steady_clock::now() + timeout;
            if (future.wait_until(deadline) != std::future_status::ready)
                return T();
        }
        return future.get();
    }

private:
    std::promise<T> m_promise;

    IMPLEMENT_REFCOUNTING(MultiThreadedFuture);
};
