#include "recording_listener.h"

#include "host/instrument/instrument.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

// Every allocation of this program is counted.
static std::atomic<long> allocations{0};

void* operator new(std::size_t size)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

__attribute__((noinline)) void paintLike() { BROVIA_INSTRUMENT("paintLike"); }
__attribute__((noinline)) void scriptLike(const char* script)
{
    BROVIA_INSTRUMENT_CONTEXT("scriptLike", "script", std::string(script) + ", longer than a small string");
}

TEST(NoAllocation, NobodyListeningAllocatesNothingAfterFirstEntry)
{
    instrument::controls.getHandle("{anonymous}::scriptLike").setEnabled(true);
    paintLike();
    scriptLike("warm up");
    const long before = allocations.load();
    for (int i = 0; i < 100; ++i) {
        paintLike();
        scriptLike("run();");
    }
    EXPECT_EQ(allocations.load() - before, 0);

    // The count does see a context being built once somebody listens.
    RecordingListener listener;
    const long listening = allocations.load();
    scriptLike("run();");
    EXPECT_GT(allocations.load() - listening, 0);
    EXPECT_EQ(listener.reports.size(), 2u);
}

} // namespace
