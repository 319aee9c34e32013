#include "host/cef_common/root_cache_dir_manager.h"

#include "host/log/basic_diagnostic_logger.h"
#include "host/options/command_line.h"

#include <QDir>
#include <QStandardPaths>

namespace cef_common
{
std::u16string CefCommonData::RootCacheDirManager::cacheRootPath()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    QString root = QString::fromStdU16String(m_path);
    if (root.isEmpty())
    {
        const CommandLine options;
        root = options.cacheRoot().empty()
            ? QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QStringLiteral("/brovia")
            : QString::fromStdString(options.cacheRoot());
        root = QDir::cleanPath(QDir(root).absolutePath());
    }
    // Made again if somebody removed it meanwhile.
    if (!QDir().mkpath(root))
    {
        static foundation::log::diagnostic_logger logger("brovia::host");
        BROVIA_LOG(logger, foundation::log::severity::error)
            << "Cannot create the engine's cache root " << root.toStdString();
        return std::u16string();
    }
    m_path = root.toStdU16String();
    return m_path;
}
} // namespace cef_common
