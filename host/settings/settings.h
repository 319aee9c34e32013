#pragma once

#include "host/settings/settings_properties.h"

#include <boost/any.hpp>

#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <typeindex>

namespace settings::core
{
// One node of the hierarchical settings tree. A node is addressed by a dotted name from the root
// ("cefInit.InitValue"); segments are non-empty and case-sensitive. A node may carry a value, whose
// type is fixed by the first value it gets. The value is kept per level, "factory" < "user" <
// "session"; a read without a level sees the highest level that holds something.
// Any thread: each node guards its own children and values.
class Settings
{
public:
    static std::shared_ptr<Settings> createRoot();

    // Works on the root of the current context. Creates the missing nodes of `fullName`, defines
    // the value from `definition` if it has none yet (flags, description, factory default), and
    // sets `value.value` at `level` if that is not empty. False, changing nothing, for a malformed
    // name, an unknown level, a context without a root, or a value whose type differs from the
    // one the node already has. A repeated call on an existing name just sets the value again.
    static bool createAndSetValue(const std::string& fullName, const SettingsProperties& definition,
                                  const SettingsProperties& value, const std::string& level);

    // The node at the dotted name below this one, null if absent or malformed.
    std::shared_ptr<Settings> getSettingsByFullName(const std::string& fullName) const;

    // Sets the existing value at the dotted name below this node. Quietly does nothing and gives
    // false if the node is absent, has never been given a value, holds another type, or the
    // level is unknown: only createAndSetValue creates values.
    template <class T>
    bool set(const std::string& name, const T& value, const std::string& level)
    {
        const std::shared_ptr<Settings> node = getSettingsByFullName(name);
        return node && node->store(nullptr, boost::any(value), level);
    }

    // The value at the dotted name below this node: at `level`, or with an empty level the one of
    // the highest level that holds one. None if absent or of another type.
    template <class T>
    std::optional<T> get(const std::string& name, const std::string& level = std::string()) const
    {
        const std::shared_ptr<Settings> node = getSettingsByFullName(name);
        if (!node)
            return std::nullopt;
        const boost::any value = node->value(level);
        if (const T* typed = boost::any_cast<T>(&value))
            return *typed;
        return std::nullopt;
    }

    // This node's value at `level`, or the highest level's if `level` is empty; empty if none.
    boost::any value(const std::string& level = std::string()) const;

    // The definition the value was created with (flags, description, factory default).
    SettingsProperties properties() const;

    // Dotted name from the root; empty for the root itself.
    const std::string& fullName() const { return m_fullName; }

    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

private:
    static constexpr std::size_t kLevelCount = 3;

    explicit Settings(std::string fullName);

    // The child of that single segment, created if missing.
    std::shared_ptr<Settings> obtainChild(const std::string& segment);
    // Sets `value` (if not empty) at `level`. With a `definition`, a node without a value is
    // defined first and takes the type of the values; without one, the node must have a value of
    // the same type already.
    bool store(const SettingsProperties* definition, const boost::any& value, const std::string& level);

    const std::string m_fullName;
    mutable std::mutex m_mutex;
    std::map<std::string, std::shared_ptr<Settings>> m_children;
    // Empty until the node carries a value.
    std::optional<std::type_index> m_type;
    SettingsProperties m_properties;
    std::array<boost::any, kLevelCount> m_values;
};
} // namespace settings::core
