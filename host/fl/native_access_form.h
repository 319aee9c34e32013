#pragma once

#include <string>

namespace fl::filesystem::detail
{
// The form of a UTF-16 path that the system's file functions take: here the bytes of the path in
// the file name encoding (UTF-8 on a UTF-8 system). The result owns its storage, so nothing is
// left to clean up.
std::string make_native_access_form_with_cleanup_i18n(const std::u16string& path);
} // namespace fl::filesystem::detail
