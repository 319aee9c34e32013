#pragma once

#include <boost/any.hpp>
#include <boost/blank.hpp>
#include <boost/variant.hpp>

#include <cstdint>
#include <string>

namespace settings::core
{
// A record that describes or carries a settings value. Settings::createAndSetValue takes two: the
// first defines the value if it has to be created (its flags, its factory default in `value`, a
// description), the second carries the value to set.
struct SettingsProperties
{
    // Free for the host's settings tools; the tree stores them with the value and reads none.
    std::uint16_t flags = 0;
    boost::any value;
    // A description of the value for the host's settings tools, or nothing.
    boost::variant<boost::blank, std::string> description;
};
} // namespace settings::core
