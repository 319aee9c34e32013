#include "host/fl/native_access_form.h"

#include <QFile>
#include <QString>

namespace fl::filesystem::detail
{
std::string make_native_access_form_with_cleanup_i18n(const std::u16string& path)
{
    return QFile::encodeName(QString::fromStdU16String(path)).toStdString();
}
} // namespace fl::filesystem::detail
