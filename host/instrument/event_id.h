#pragma once

#include <cstdint>
#include <tuple>

namespace instrument {

// Identifies one event from its start to its stop. Events handed out by the listeners have a
// non-zero high word; the high word 0 marks events that were never started.
struct EventId
{
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    // Nobody listened when the function was entered.
    static constexpr EventId notListening() { return {0, 1}; }
    // Somebody listened, but the control (or its context filter) said no.
    static constexpr EventId notStarted() { return {0, 2}; }

    friend constexpr bool operator==(const EventId& a, const EventId& b)
    {
        return a.high == b.high && a.low == b.low;
    }
    friend constexpr bool operator!=(const EventId& a, const EventId& b) { return !(a == b); }
    friend constexpr bool operator<(const EventId& a, const EventId& b)
    {
        return std::tie(a.high, a.low) < std::tie(b.high, b.low);
    }
};

} // namespace instrument
