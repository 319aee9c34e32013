#include "host/instrument/listeners.h"

#include "host/instrument/control_element.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <vector>

namespace instrument {

struct Listeners::State
{
    // Recursive: a listener may itself run instrumented code.
    std::recursive_mutex mutex;
    std::vector<Listener*> installed;
    std::atomic<std::uint64_t> lastId{0};
};

Listeners listeners;

namespace {

// Every Opaque is the base of a ControlElement, the only class that presents one.
const ControlElement& controlOf(const Opaque* opaque)
{
    return static_cast<const ControlElement&>(*opaque);
}

// Calls every listener. A failing one must not break the instrumented function, nor terminate the
// process from the destructor that reports a stop. By index: a listener that removes one from its
// callback, against the rule, costs a report and not a crash.
template <typename Call>
void forEach(const std::vector<Listener*>& installed, const Call& call)
{
    for (std::size_t i = 0; i < installed.size(); ++i) {
        try {
            call(*installed[i]);
        } catch (...) {
        }
    }
}

} // namespace

Listeners::Listeners()
    : m_state(*new State)
{
}

void Listeners::add(Listener* listener)
{
    if (!listener)
        return;
    const std::lock_guard<std::recursive_mutex> lock(m_state.mutex);
    auto& installed = m_state.installed;
    if (std::find(installed.begin(), installed.end(), listener) == installed.end())
        installed.push_back(listener);
    enabled.store(true, std::memory_order_relaxed);
}

void Listeners::remove(Listener* listener)
{
    const std::lock_guard<std::recursive_mutex> lock(m_state.mutex);
    auto& installed = m_state.installed;
    installed.erase(std::remove(installed.begin(), installed.end(), listener), installed.end());
    enabled.store(!installed.empty(), std::memory_order_relaxed);
}

EventId Listeners::onEventStart(const Opaque* control, ContextSet&& context, std::optional<unsigned long> value)
{
    if (!control)
        return EventId::notStarted();
    const EventId id{1, m_state.lastId.fetch_add(1, std::memory_order_relaxed) + 1};
    const std::lock_guard<std::recursive_mutex> lock(m_state.mutex);
    forEach(m_state.installed, [&](Listener& listener) { listener.onStart(controlOf(control), context, id, value); });
    return id;
}

void Listeners::onEventStop(const Opaque* control, ContextSet&& context, EventId id, std::optional<unsigned long> value)
{
    if (!control)
        return;
    const std::lock_guard<std::recursive_mutex> lock(m_state.mutex);
    forEach(m_state.installed, [&](Listener& listener) { listener.onStop(controlOf(control), context, id, value); });
}

} // namespace instrument
