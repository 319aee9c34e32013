#pragma once

#include <cstdint>

namespace txutil::contextmgr
{
// Identifier of one host runtime context. A plain value: copyable and ordered, so that services can
// keep per-context state in ordinary containers.
class TxrID
{
public:
    constexpr TxrID() = default;
    constexpr explicit TxrID(std::uint64_t value)
        : m_value(value)
    {
    }

    constexpr std::uint64_t value() const { return m_value; }

    friend constexpr bool operator==(TxrID a, TxrID b) { return a.m_value == b.m_value; }
    friend constexpr bool operator!=(TxrID a, TxrID b) { return a.m_value != b.m_value; }
    friend constexpr bool operator<(TxrID a, TxrID b) { return a.m_value < b.m_value; }

private:
    std::uint64_t m_value = 0;
};
} // namespace txutil::contextmgr
