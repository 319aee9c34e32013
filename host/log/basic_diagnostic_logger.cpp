#include "host/log/basic_diagnostic_logger.h"

#include "host/log/log_sinks.h"

#include <boost/log/attributes/clock.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/keywords/channel.hpp>
#include <boost/log/keywords/severity.hpp>

namespace foundation::log
{
basic_diagnostic_logger<char>::basic_diagnostic_logger(const std::string& channel)
    : basic_diagnostic_logger(channel, mask_from_environment())
{
}

basic_diagnostic_logger<char>::basic_diagnostic_logger(const std::string& channel, unsigned int mask)
    : m_channel(channel)
    , m_mask(mask)
    , m_source(boost::log::keywords::channel = channel)
{
    m_source.add_attribute("TimeStamp", boost::log::attributes::local_clock());
    ensure_sinks();
}

bool basic_diagnostic_logger<char>::is_enabled(unsigned int severity) const
{
    return (mask() & severity) != 0 && boost::log::core::get()->get_logging_enabled();
}

record_pump basic_diagnostic_logger<char>::open_record(unsigned int severity)
{
    if ((mask() & severity) == 0)
        return record_pump(m_source, boost::log::record());
    // Empty if the core has logging disabled or a filter refuses the record.
    return record_pump(m_source, m_source.open_record(boost::log::keywords::severity = severity));
}
} // namespace foundation::log
