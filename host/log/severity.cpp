#include "host/log/severity.h"

#include <QByteArray>
#include <QString>

#include <cstdlib>

namespace foundation::log
{
namespace
{
struct Named
{
    const char* name;
    unsigned int bit;
};

// From the mildest to the worst.
constexpr Named kSeverities[] = {{"debug", severity::debug},
                                 {"info", severity::info},
                                 {"warning", severity::warning},
                                 {"error", severity::error},
                                 {"fatal", severity::fatal}};
} // namespace

unsigned int parse_mask(const std::string& text, unsigned int fallback)
{
    const QString word = QString::fromStdString(text).trimmed().toLower();
    if (word == QLatin1String("off") || word == QLatin1String("none"))
        return 0;
    unsigned int mask = 0;
    for (const Named& s : kSeverities)
    {
        // A name turns on its own bit and, further down the table, all worse ones.
        if (mask != 0 || word == QLatin1String(s.name))
            mask |= s.bit;
    }
    if (mask != 0)
        return mask;
    bool ok = false;
    const uint number = word.toUInt(&ok, 0);
    return ok ? number : fallback;
}

unsigned int mask_from_environment()
{
    const char* text = std::getenv("BROVIA_LOG_LEVEL");
    return text ? parse_mask(text, default_mask) : default_mask;
}

const char* severity_name(unsigned int severity)
{
    for (const Named& s : kSeverities)
    {
        if (s.bit == severity)
            return s.name;
    }
    return "unknown";
}
} // namespace foundation::log
