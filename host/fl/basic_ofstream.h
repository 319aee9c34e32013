#pragma once

#include "host/fl/native_access_form.h"

#include <fstream>
#include <string>

namespace fl::filesystem
{
// An output file stream that also opens UTF-16 paths. A path that cannot be opened leaves the
// stream failed, as with std::basic_ofstream.
template <class CharT>
class basic_ofstream : public std::basic_ofstream<CharT>
{
public:
    using std::basic_ofstream<CharT>::basic_ofstream;
    using std::basic_ofstream<CharT>::open;

    explicit basic_ofstream(const std::u16string& path, std::ios_base::openmode mode = std::ios_base::out)
        : std::basic_ofstream<CharT>(detail::make_native_access_form_with_cleanup_i18n(path), mode)
    {
    }

    void open(const std::u16string& path, std::ios_base::openmode mode = std::ios_base::out)
    {
        std::basic_ofstream<CharT>::open(detail::make_native_access_form_with_cleanup_i18n(path), mode);
    }
};
} // namespace fl::filesystem
