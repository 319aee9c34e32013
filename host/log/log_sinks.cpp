#include "host/log/log_sinks.h"

#include "host/log/severity.h"

#include <boost/core/null_deleter.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/date_time/posix_time/time_formatters.hpp>
#include <boost/make_shared.hpp>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/expressions/predicates/has_attr.hpp>
#include <boost/log/expressions/message.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sinks/text_ostream_backend.hpp>
#include <boost/log/utility/formatting_ostream.hpp>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <mutex>

namespace foundation::log
{
namespace
{
using text_sink = boost::log::sinks::synchronous_sink<boost::log::sinks::text_ostream_backend>;

boost::shared_ptr<std::ostream> openDestination()
{
    if (const char* path = std::getenv("BROVIA_LOG_FILE"); path && *path)
    {
        auto file = boost::make_shared<std::ofstream>(path, std::ios::out | std::ios::app);
        if (*file)
            return file;
        std::cerr << "brovia: cannot open the log file " << path << ", logging to stderr\n";
    }
    return boost::shared_ptr<std::ostream>(&std::cerr, boost::null_deleter());
}

void format(const boost::log::record_view& record, boost::log::formatting_ostream& out)
{
    if (const auto time = boost::log::extract<boost::posix_time::ptime>("TimeStamp", record))
        out << '[' << boost::posix_time::to_iso_extended_string(*time) << "] ";
    const auto severity = boost::log::extract<unsigned int>("Severity", record);
    out << '<' << severity_name(severity ? *severity : 0) << "> "
        << boost::log::extract<std::string>("Channel", record) << ": " << record[boost::log::expressions::smessage];
}
} // namespace

void ensure_sinks()
{
    static std::once_flag once;
    std::call_once(once, [] {
        auto backend = boost::make_shared<boost::log::sinks::text_ostream_backend>();
        backend->add_stream(openDestination());
        backend->auto_flush(true);
        auto sink = boost::make_shared<text_sink>(backend);
        sink->set_filter(boost::log::expressions::has_attr<std::string>("Channel"));
        sink->set_formatter(&format);
        boost::log::core::get()->add_sink(sink);
    });
}
} // namespace foundation::log
