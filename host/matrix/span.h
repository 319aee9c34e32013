#pragma once

#include <cstddef>
#include <vector>

namespace matrix
{
// A non-owning view of contiguous elements, for passing array dimensions.
template <class T>
class span
{
public:
    constexpr span() = default;
    constexpr span(T* data, std::size_t size)
        : m_data(data)
        , m_size(size)
    {
    }
    template <class U>
    span(const std::vector<U>& elements)
        : m_data(elements.data())
        , m_size(elements.size())
    {
    }

    constexpr T* data() const { return m_data; }
    constexpr std::size_t size() const { return m_size; }
    constexpr T* begin() const { return m_data; }
    constexpr T* end() const { return m_data + m_size; }

private:
    T* m_data = nullptr;
    std::size_t m_size = 0;
};
} // namespace matrix
