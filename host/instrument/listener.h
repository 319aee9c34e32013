#pragma once

#include "host/instrument/context_entry.h"
#include "host/instrument/control_element.h"
#include "host/instrument/event_id.h"

#include <optional>

namespace instrument {

// Receives the events of all controls while installed in Listeners. Called on the thread of the
// instrumented function, one call at a time; exceptions thrown here are swallowed.
class Listener
{
public:
    virtual ~Listener() = default;

    virtual void onStart(const ControlElement& control, const ContextSet& context, EventId id,
                         std::optional<unsigned long> value) = 0;
    // id is the start's, or EventId::notListening() / notStarted() for an event without a start.
    virtual void onStop(const ControlElement& control, const ContextSet& context, EventId id,
                        std::optional<unsigned long> value) = 0;
};

} // namespace instrument
