#include "host/instrument/control_element.h"

#include <utility>

namespace instrument {

ControlElement::ControlElement(std::string name)
    : m_name(std::move(name))
{
}

void ControlElement::setContextFilter(ContextFilter filter)
{
    std::shared_ptr<const ContextFilter> installed;
    if (filter)
        installed = std::make_shared<const ContextFilter>(std::move(filter));
    {
        const std::lock_guard<std::mutex> lock(m_filterMutex);
        m_filter.swap(installed);
        contextFiltered.store(m_filter != nullptr, std::memory_order_relaxed);
    }
    // The old filter, if any, is released here, outside the lock.
}

int ControlElement::getContextEnabledImpl(const ContextSet& context) const
{
    std::shared_ptr<const ContextFilter> filter;
    {
        const std::lock_guard<std::mutex> lock(m_filterMutex);
        filter = m_filter;
    }
    return filter ? (*filter)(context) : 0;
}

} // namespace instrument
