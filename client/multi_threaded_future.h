#pragma once

#include "client/future.h"

#include <atomic>
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

    void AddRef() const override { m_refCount.fetch_add(1, std::memory_order_relaxed); }
    bool Release() const override
    {
        if (m_refCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        {
            delete this;
            return true;
        }
        return false;
    }
    bool HasOneRef() const override { return m_refCount.load(std::memory_order_acquire) == 1; }
    bool HasAtLeastOneRef() const override { return m_refCount.load(std::memory_order_acquire) > 0; }

private:
    std::promise<T> m_promise;
    mutable std::atomic<int32_t> m_refCount{0};
};
