#pragma once

#include <boost/log/sinks/sink.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace foundation::log
{
// One diagnostic record as a capture saw it.
struct captured_record
{
    std::string channel;
    unsigned int severity = 0;
    std::string message;
    bool has_time_stamp = false;
};

// Collects every diagnostic record (one with a "Channel") written while it exists, beside the
// process's own sink. Meant for tests that check what a component logs. Any thread.
class record_capture
{
public:
    record_capture();
    ~record_capture();
    record_capture(const record_capture&) = delete;
    record_capture& operator=(const record_capture&) = delete;

    std::vector<captured_record> records() const;

private:
    class backend;
    boost::shared_ptr<backend> m_backend;
    boost::shared_ptr<boost::log::sinks::sink> m_sink;
};
} // namespace foundation::log
