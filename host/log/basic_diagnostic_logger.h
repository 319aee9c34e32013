#pragma once

#include "host/log/record_pump.h"
#include "host/log/severity.h"

#include <atomic>
#include <string>

namespace foundation::log
{
template <class CharT>
class basic_diagnostic_logger;

// A diagnostic logger on Boost.Log for one channel. A record is written only if the logger's mask
// has its severity bit and the Boost.Log core has logging enabled. Records carry the attributes
// "Channel" (std::string), "Severity" (unsigned int, one of the severity bits) and "TimeStamp".
// The first logger of the process sets up the sink (see log_sinks.h).
// Any thread: the logger may be shared.
template <>
class basic_diagnostic_logger<char>
{
public:
    // The mask comes from BROVIA_LOG_LEVEL.
    explicit basic_diagnostic_logger(const std::string& channel);
    basic_diagnostic_logger(const std::string& channel, unsigned int mask);

    basic_diagnostic_logger(const basic_diagnostic_logger&) = delete;
    basic_diagnostic_logger& operator=(const basic_diagnostic_logger&) = delete;

    const std::string& channel() const { return m_channel; }
    unsigned int mask() const { return m_mask.load(std::memory_order_relaxed); }
    void set_mask(unsigned int mask) { m_mask.store(mask, std::memory_order_relaxed); }

    bool is_enabled(unsigned int severity) const;

    // A record at `severity`, empty if it would not be written. Use it through BROVIA_LOG.
    record_pump open_record(unsigned int severity);

private:
    const std::string m_channel;
    std::atomic<unsigned int> m_mask;
    source_logger m_source;
};

using diagnostic_logger = basic_diagnostic_logger<char>;
} // namespace foundation::log

// Streams one record into `logger` at a severity bit, e.g.
//     BROVIA_LOG(logger, foundation::log::severity::error) << "Failed to load URL: " << url;
// The streamed expressions are not evaluated when the record would not be written.
#define BROVIA_LOG(logger, severity)                                                                    \
    for (::foundation::log::record_pump brovia_log_pump_ = (logger).open_record(severity); brovia_log_pump_; \
         brovia_log_pump_.push())                                                                     \
    brovia_log_pump_.stream()
