#include "host/options/command_line.h"

#include <QString>

#include <cstdlib>

namespace
{
QString variable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? QString::fromUtf8(value) : QString();
}

std::optional<int> integerInRange(const char* name, int low, int high)
{
    bool ok = false;
    const int value = variable(name).trimmed().toInt(&ok, 10);
    if (ok && value >= low && value <= high)
        return value;
    return std::nullopt;
}

bool flag(const char* name)
{
    const QString value = variable(name).trimmed().toLower();
    return value == QLatin1String("1") || value == QLatin1String("true") || value == QLatin1String("yes");
}
} // namespace

CommandLine::CommandLine()
    // Above 1000 passes a second the pump's delay would round to no pause at all.
    : m_messageProcessingCadence(integerInRange("BROVIA_MESSAGE_CADENCE", 1, 1000).value_or(30))
    , m_insecureLocalHostAllowed(flag("BROVIA_INSECURE_LOCALHOST"))
    // Ports below 1024 need privileges the engine does not have.
    , m_remoteDebuggingPort(integerInRange("BROVIA_REMOTE_DEBUGGING_PORT", 1024, 65535))
    , m_cacheRoot(variable("BROVIA_CACHE_ROOT").toStdString())
    , m_acceptLanguages(variable("BROVIA_ACCEPT_LANGUAGES").toStdString())
    , m_browserSubprocessPath(variable("BROVIA_CHROMIUM").toStdString())
{
}
