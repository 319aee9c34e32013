#include "host/graphics/opengl_state.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <cstdlib>

namespace GraphicsState
{
namespace
{
// Emulated display adapters of virtual machines: no GPU behind them worth accelerating with.
constexpr const char* kBuiltInBlocklist = "1234:1111," // QEMU standard VGA
                                          "1013:00b8," // QEMU Cirrus
                                          "15ad:0405," // VMware SVGA II
                                          "80ee:beef"; // VirtualBox VGA

QString environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? QString::fromUtf8(value).trimmed().toLower() : QString();
}

// "0x8086\n" -> "8086"
QString readHexId(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    QString id = QString::fromLatin1(file.readAll()).trimmed().toLower();
    if (id.startsWith(QLatin1String("0x")))
        id.remove(0, 2);
    return id;
}

bool isBlocked(const QString& vendor, const QString& device, const QStringList& blocklist)
{
    for (const QString& entry : blocklist)
    {
        const QStringList parts = entry.trimmed().split(QLatin1Char(':'));
        if (parts.size() != 2 || parts[0] != vendor)
            continue;
        if (parts[1] == QLatin1String("*") || parts[1] == device)
            return true;
    }
    return false;
}
} // namespace

const OpenGLState& OpenGLState::instance()
{
    static const OpenGLState state(QStringLiteral("/sys/class/drm"), QStringLiteral("/dev/dri"));
    return state;
}

OpenGLState::OpenGLState(const QString& drmClassDir, const QString& driDeviceDir)
    : m_drmClassDir(drmClassDir)
    , m_driDeviceDir(driDeviceDir)
{
}

bool OpenGLState::isBlacklistedHardware() const
{
    QStringList blocklist = QString::fromLatin1(kBuiltInBlocklist).split(QLatin1Char(','));
    blocklist += environment("BROVIA_GPU_BLOCKLIST").split(QLatin1Char(','), Qt::SkipEmptyParts);

    // Only the cards themselves ("card0"), not their connectors ("card0-HDMI-A-1").
    const QDir drm(m_drmClassDir);
    const QStringList cards = drm.entryList({QStringLiteral("card*")}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& card : cards)
    {
        if (card.contains(QLatin1Char('-')))
            continue;
        const QString device = drm.filePath(card) + QStringLiteral("/device/");
        if (isBlocked(readHexId(device + QStringLiteral("vendor")), readHexId(device + QStringLiteral("device")),
                      blocklist))
            return true;
    }
    return false;
}

bool OpenGLState::isSoftwareOpenGL() const
{
    const QString forced = environment("BROVIA_SOFTWARE_GL");
    if (forced == QLatin1String("1") || forced == QLatin1String("true") || forced == QLatin1String("yes"))
        return true;
    if (forced == QLatin1String("0") || forced == QLatin1String("false") || forced == QLatin1String("no"))
        return false;
    if (environment("LIBGL_ALWAYS_SOFTWARE") == QLatin1String("1"))
        return true;
    const QDir dri(m_driDeviceDir);
    return dri.entryList({QStringLiteral("renderD*")}, QDir::System | QDir::Files | QDir::NoDotAndDotDot).isEmpty();
}
} // namespace GraphicsState
