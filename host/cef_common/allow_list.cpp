#include "host/cef_common/allow_list.h"

#include "host/log/basic_diagnostic_logger.h"

#include <QRegularExpression>
#include <QString>
#include <QUrl>

#include <algorithm>
#include <mutex>
#include <shared_mutex>

namespace cef_common
{
namespace
{
foundation::log::diagnostic_logger& logger()
{
    // Never destroyed, like the list.
    static foundation::log::diagnostic_logger& instance = *new foundation::log::diagnostic_logger("brovia::host");
    return instance;
}

QRegularExpression compile(const QString& pattern)
{
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption);
}

class AllowList
{
public:
    // Never destroyed: the engine UI thread may still ask while the process exits.
    static AllowList& instance()
    {
        static AllowList& list = *new AllowList();
        return list;
    }

    bool matches(const QString& url) const
    {
        std::shared_lock<std::shared_mutex> lock(m_mutex);
        return std::any_of(m_patterns.begin(), m_patterns.end(), [&url](const QRegularExpression& pattern) {
            return pattern.match(url, 0, QRegularExpression::NormalMatch, QRegularExpression::AnchoredMatchOption)
                .hasMatch();
        });
    }

    void add(const QString& text)
    {
        const QRegularExpression pattern = compile(text);
        if (!pattern.isValid())
        {
            BROVIA_LOG(logger(), foundation::log::severity::warning)
                << "Ignoring invalid allow-list pattern \"" << text.toStdString() << "\": "
                << pattern.errorString().toStdString() << " at offset " << pattern.patternErrorOffset();
            return;
        }
        std::unique_lock<std::shared_mutex> lock(m_mutex);
        const bool known = std::any_of(m_patterns.begin(), m_patterns.end(),
                                       [&text](const QRegularExpression& p) { return p.pattern() == text; });
        if (!known)
            m_patterns.push_back(pattern);
    }

private:
    AllowList()
    {
        for (const char* pattern : {R"(about:blank([#?]|$))", "data:", "file:",
                                    R"(https?://(localhost|127(\.\d{1,3}){3}|\[::1\])(:\d{1,5})?([/?#]|$))"})
            m_patterns.push_back(compile(QString::fromLatin1(pattern)));
    }

    mutable std::shared_mutex m_mutex;
    std::vector<QRegularExpression> m_patterns;
};
} // namespace

bool isURLAllowed(const std::string& url, bool logRefusal)
{
    const QString text = QString::fromStdString(url);
    // Tolerant parsing, as engines do: a data URL may hold '<' and the like unescaped.
    const QUrl parsed(text, QUrl::TolerantMode);
    const bool wellFormed = parsed.isValid() && !parsed.scheme().isEmpty() &&
        ((parsed.scheme() != QLatin1String("http") && parsed.scheme() != QLatin1String("https")) ||
         !parsed.host().isEmpty());
    const bool allowed = wellFormed && AllowList::instance().matches(text);
    if (!allowed && logRefusal)
        BROVIA_LOG(logger(), foundation::log::severity::warning) << "Navigation refused by the allow list: " << url;
    return allowed;
}

void addHostsToAllowList(std::vector<std::string> hosts)
{
    for (const std::string& host : hosts)
    {
        if (!host.empty())
            AllowList::instance().add(QString::fromStdString(host));
    }
}
} // namespace cef_common
