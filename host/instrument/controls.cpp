#include "host/instrument/controls.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace instrument {

struct Controls::Registry
{
    std::mutex mutex;
    std::map<std::string, std::unique_ptr<ControlElement>, std::less<>> byName;
    bool enabledByDefault = false;
};

Controls controls;

Controls::Controls()
    : m_registry(*new Registry)
{
}

ControlElement& Controls::getHandle(std::string_view name)
{
    const std::lock_guard<std::mutex> lock(m_registry.mutex);
    auto found = m_registry.byName.find(name);
    if (found == m_registry.byName.end()) {
        auto control = std::make_unique<ControlElement>(std::string(name));
        control->setEnabled(m_registry.enabledByDefault);
        found = m_registry.byName.emplace(std::string(name), std::move(control)).first;
    }
    return *found->second;
}

void Controls::setAllEnabled(bool on)
{
    const std::lock_guard<std::mutex> lock(m_registry.mutex);
    m_registry.enabledByDefault = on;
    for (auto& entry : m_registry.byName)
        entry.second->setEnabled(on);
}

} // namespace instrument
