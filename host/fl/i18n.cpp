#include "host/fl/i18n.h"

#include <QString>

#include <cstdlib>

namespace fl::i18n
{
std::u16string getenv(const std::string& name)
{
    const char* value = std::getenv(name.c_str());
    return value ? QString::fromUtf8(value).toStdU16String() : std::u16string();
}

bool unsetenv(const std::string& name)
{
    return ::unsetenv(name.c_str()) == 0;
}

bool setenv(const std::u16string& name, const std::u16string& value, int overwrite, bool /*systemWide*/)
{
    return ::setenv(to_string(name).c_str(), to_string(value).c_str(), overwrite) == 0;
}

std::string to_string(const std::u16string& text)
{
    return QString::fromStdU16String(text).toStdString();
}
} // namespace fl::i18n
