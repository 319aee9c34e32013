#include "host/settings/settings.h"

#include "host/context/context_registry.h"
#include "host/settings/settings_root.h"

#include <boost/algorithm/string/split.hpp>

#include <algorithm>
#include <vector>

namespace settings::core
{
namespace
{
constexpr const char* kLevelNames[] = {"factory", "user", "session"};

// Index of the level, or -1 for a name that is not a level.
int levelIndex(const std::string& level)
{
    const auto found = std::find(std::begin(kLevelNames), std::end(kLevelNames), level);
    return found == std::end(kLevelNames) ? -1 : static_cast<int>(found - std::begin(kLevelNames));
}

// The segments of a dotted name; empty for a malformed one ("", "a..b", ".a", "a.").
std::vector<std::string> splitName(const std::string& fullName)
{
    std::vector<std::string> segments;
    boost::algorithm::split(segments, fullName, [](char c) { return c == '.'; });
    if (std::any_of(segments.begin(), segments.end(), [](const std::string& s) { return s.empty(); }))
        segments.clear();
    return segments;
}
} // namespace

Settings::Settings(std::string fullName)
    : m_fullName(std::move(fullName))
{
}

std::shared_ptr<Settings> Settings::createRoot()
{
    return std::shared_ptr<Settings>(new Settings(std::string()));
}

bool Settings::createAndSetValue(const std::string& fullName, const SettingsProperties& definition,
                                 const SettingsProperties& value, const std::string& level)
{
    const std::vector<std::string> segments = splitName(fullName);
    if (segments.empty() || levelIndex(level) < 0)
        return false;
    if (!definition.value.empty() && !value.value.empty() && definition.value.type() != value.value.type())
        return false;
    std::shared_ptr<Settings> node = in_torvex::getSettingsRoot(txutil::contextmgr::ContextRegistry::getTxrID());
    if (!node)
        return false;
    for (const std::string& segment : segments)
        node = node->obtainChild(segment);
    return node->store(&definition, value.value, level);
}

std::shared_ptr<Settings> Settings::getSettingsByFullName(const std::string& fullName) const
{
    const std::vector<std::string> segments = splitName(fullName);
    if (segments.empty())
        return nullptr;
    std::shared_ptr<Settings> node;
    const Settings* current = this;
    for (const std::string& segment : segments)
    {
        std::lock_guard<std::mutex> lock(current->m_mutex);
        const auto found = current->m_children.find(segment);
        if (found == current->m_children.end())
            return nullptr;
        node = found->second;
        current = node.get();
    }
    return node;
}

boost::any Settings::value(const std::string& level) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!level.empty())
    {
        const int index = levelIndex(level);
        return index < 0 ? boost::any() : m_values[static_cast<std::size_t>(index)];
    }
    for (auto it = m_values.rbegin(); it != m_values.rend(); ++it)
    {
        if (!it->empty())
            return *it;
    }
    return boost::any();
}

SettingsProperties Settings::properties() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_properties;
}

std::shared_ptr<Settings> Settings::obtainChild(const std::string& segment)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    std::shared_ptr<Settings>& child = m_children[segment];
    if (!child)
        child.reset(new Settings(m_fullName.empty() ? segment : m_fullName + '.' + segment));
    return child;
}

bool Settings::store(const SettingsProperties* definition, const boost::any& value, const std::string& level)
{
    const int index = levelIndex(level);
    if (index < 0)
        return false;
    std::lock_guard<std::mutex> lock(m_mutex);
    if (definition && !m_type)
    {
        const boost::any& typed = value.empty() ? definition->value : value;
        if (typed.empty())
            return true; // A plain group: nothing to define.
        m_type = std::type_index(typed.type());
        m_properties = *definition;
        m_values[0] = definition->value;
    }
    else if (definition && !definition->value.empty() && *m_type != std::type_index(definition->value.type()))
    {
        return false;
    }
    if (value.empty())
        return definition != nullptr;
    if (!m_type || *m_type != std::type_index(value.type()))
        return false;
    m_values[static_cast<std::size_t>(index)] = value;
    return true;
}
} // namespace settings::core
