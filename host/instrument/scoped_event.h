#pragma once

#include "host/instrument/control_element.h"
#include "host/instrument/event_id.h"
#include "host/instrument/listeners.h"

#include <string>
#include <string_view>
#include <utility>

namespace instrument {

// The event of one instrumented function, held on its stack from entry to every way out.
// Nobody listening, it costs one flag test on construction and one on destruction, and
// allocates nothing.
class ScopedEvent
{
public:
    explicit ScopedEvent(const ControlElement& control)
        : m_control(&control)
    {
        if (listeners.enabled.load(std::memory_order_relaxed))
            m_id = start(control);
    }

    // makeValue() gives the context value, a UTF-8 std::string; it runs only when somebody listens.
    template <typename MakeValue>
    ScopedEvent(const ControlElement& control, std::string_view contextName, MakeValue&& makeValue)
        : m_control(&control)
    {
        if (listeners.enabled.load(std::memory_order_relaxed))
            m_id = startWith(control, contextName, makeValue);
    }

    ScopedEvent(const ScopedEvent&) = delete;
    ScopedEvent& operator=(const ScopedEvent&) = delete;

    ~ScopedEvent() { stop(); }

    // Ends the event before the scope does; later calls do nothing. The stop does not ask the
    // context filter again, so a filtered-out event still stops, with EventId::notStarted().
    void stop()
    {
        if (!m_control)
            return;
        const ControlElement* control = std::exchange(m_control, nullptr);
        if (listeners.enabled.load(std::memory_order_relaxed) && control->enabled.load(std::memory_order_relaxed))
            reportStop(*control, m_id);
    }

private:
    static EventId start(const ControlElement& control);
    static EventId start(const ControlElement& control, std::string_view contextName, std::string&& contextValue);
    static void reportStop(const ControlElement& control, EventId id);

    // Out of line, so that building the value does not weigh on the function when nobody listens.
    template <typename MakeValue>
    [[gnu::noinline, gnu::cold]] static EventId startWith(const ControlElement& control, std::string_view contextName,
                                                          MakeValue& makeValue)
    {
        return start(control, contextName, makeValue());
    }

    // Null once stopped.
    const ControlElement* m_control;
    EventId m_id = EventId::notListening();
};

} // namespace instrument
