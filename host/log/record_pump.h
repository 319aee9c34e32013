#pragma once

#include <boost/log/core/record.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_channel_logger.hpp>

#include <optional>
#include <string>

namespace foundation::log
{
using source_logger = boost::log::sources::severity_channel_logger_mt<unsigned int, std::string>;

// One log record in the making: the stream collects the text, push() hands the record to the
// sinks. An empty pump (the severity is masked or logging is off) has no stream and tests false.
// Lives on the stack of the logging thread; see BROVIA_LOG.
class record_pump
{
public:
    record_pump(source_logger& source, boost::log::record&& record);
    record_pump(const record_pump&) = delete;
    record_pump& operator=(const record_pump&) = delete;

    explicit operator bool() const { return m_stream.has_value(); }

    // Only for a pump that tests true.
    boost::log::record_ostream& stream() { return *m_stream; }

    // Writes the record; the pump is empty afterwards.
    void push();

private:
    source_logger& m_source;
    boost::log::record m_record;
    std::optional<boost::log::record_ostream> m_stream;
};
} // namespace foundation::log
