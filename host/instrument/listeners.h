#pragma once

#include "host/instrument/context_entry.h"
#include "host/instrument/event_id.h"
#include "host/instrument/listener.h"
#include "host/instrument/opaque.h"

#include <atomic>
#include <optional>

namespace instrument {

// The installed listeners. Callbacks run one at a time under a lock, so add and remove wait for a
// call in progress on another thread; a listener must not add or remove from its own callbacks.
class Listeners
{
public:
    Listeners();
    Listeners(const Listeners&) = delete;
    Listeners& operator=(const Listeners&) = delete;

    // On while any listener is installed; written by add and remove only.
    std::atomic<bool> enabled{false};

    // Installing twice, or removing what is not installed, does nothing; null is ignored.
    void add(Listener* listener);
    void remove(Listener* listener);

    // Reports a start to every listener and gives the event a fresh id (high word non-zero).
    // A null control reports nothing and gives EventId::notStarted().
    EventId onEventStart(const Opaque* control, ContextSet&& context, std::optional<unsigned long> value);
    void onEventStop(const Opaque* control, ContextSet&& context, EventId id, std::optional<unsigned long> value);

private:
    struct State;
    // Never destroyed: functions running during static destruction may still report.
    State& m_state;
};

extern Listeners listeners;

} // namespace instrument
