#pragma once

#include <boost/container/flat_set.hpp>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace instrument {

// One named value describing an event, e.g. the script that RunJavaScript runs.
struct ContextEntry
{
    // Always a string literal, so the view never dangles.
    std::string_view name;
    // UTF-8.
    std::string value;
};

// Orders entries by the bytes (unsigned) of the names' common prefix, then shorter first.
struct ContextEntryLessByName
{
    bool operator()(const ContextEntry& a, const ContextEntry& b) const
    {
        const std::size_t common = std::min(a.name.size(), b.name.size());
        if (common != 0) {
            if (const int order = std::memcmp(a.name.data(), b.name.data(), common); order != 0)
                return order < 0;
        }
        return a.name.size() < b.name.size();
    }
};

using ContextSet = boost::container::flat_set<ContextEntry, ContextEntryLessByName>;

} // namespace instrument
