#include "host/instrument/scoped_event.h"

#include <optional>

// Out of line, so that the inline part of an instrumented function stays a flag test.

namespace instrument {

EventId ScopedEvent::start(const ControlElement& control)
{
    if (!control.enabled.load(std::memory_order_relaxed))
        return EventId::notStarted();
    return listeners.onEventStart(&control, ContextSet{}, std::nullopt);
}

EventId ScopedEvent::start(const ControlElement& control, std::string_view contextName, std::string&& contextValue)
{
    ContextSet context;
    context.insert(ContextEntry{contextName, std::move(contextValue)});
    // The filter's 1 starts, its 0 leaves the decision to the control, anything else refuses.
    int verdict = 0;
    if (control.contextFiltered.load(std::memory_order_relaxed))
        verdict = control.getContextEnabledImpl(context);
    const bool started = verdict == 1 || (verdict == 0 && control.enabled.load(std::memory_order_relaxed));
    if (!started)
        return EventId::notStarted();
    return listeners.onEventStart(&control, std::move(context), std::nullopt);
}

void ScopedEvent::reportStop(const ControlElement& control, EventId id)
{
    listeners.onEventStop(&control, ContextSet{}, id, std::nullopt);
}

} // namespace instrument
