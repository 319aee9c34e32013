#include "host/log/record_capture.h"

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/expressions/predicates/has_attr.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/make_shared.hpp>

#include <mutex>

namespace foundation::log
{
class record_capture::backend
    : public boost::log::sinks::basic_sink_backend<boost::log::sinks::concurrent_feeding>
{
public:
    void consume(const boost::log::record_view& record)
    {
        captured_record captured;
        captured.channel = boost::log::extract_or_default<std::string>("Channel", record, std::string());
        captured.severity = boost::log::extract_or_default<unsigned int>("Severity", record, 0u);
        captured.message = boost::log::extract_or_default<std::string>("Message", record, std::string());
        captured.has_time_stamp = record.attribute_values().count("TimeStamp") != 0;
        std::lock_guard<std::mutex> lock(m_mutex);
        m_records.push_back(std::move(captured));
    }

    std::vector<captured_record> records() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_records;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<captured_record> m_records;
};

record_capture::record_capture()
    : m_backend(boost::make_shared<backend>())
{
    auto sink = boost::make_shared<boost::log::sinks::synchronous_sink<backend>>(m_backend);
    sink->set_filter(boost::log::expressions::has_attr<std::string>("Channel"));
    m_sink = sink;
    boost::log::core::get()->add_sink(m_sink);
}

record_capture::~record_capture()
{
    boost::log::core::get()->remove_sink(m_sink);
}

std::vector<captured_record> record_capture::records() const
{
    return m_backend->records();
}
} // namespace foundation::log
