#pragma once

#include "host/instrument/context_entry.h"
#include "host/instrument/opaque.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace instrument {

// The control of one instrumented function. Controls are made only by Controls::getHandle and
// live to the end of the process.
class ControlElement : public Opaque
{
public:
    // Answers 0 (no opinion), 1 (report) or anything else (don't report) for an event's context.
    using ContextFilter = std::function<int(const ContextSet&)>;

    explicit ControlElement(std::string name);
    ControlElement(const ControlElement&) = delete;
    ControlElement& operator=(const ControlElement&) = delete;

    const std::string& name() const { return m_name; }

    void setEnabled(bool on) { enabled.store(on, std::memory_order_relaxed); }

    // Installs the filter asked for events with context; an empty filter removes it.
    void setContextFilter(ContextFilter filter);

    // 0: no opinion, 1: on, anything else: off. Without a filter, no opinion.
    int getContextEnabledImpl(const ContextSet& context) const;

private:
    const std::string m_name;
    mutable std::mutex m_filterMutex;
    // Shared so that a filter being replaced may finish a call in progress.
    std::shared_ptr<const ContextFilter> m_filter;
};

} // namespace instrument
