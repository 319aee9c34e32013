#include "host/log/record_pump.h"

#include <locale>
#include <stdexcept>
#include <utility>

namespace foundation::log
{
namespace
{
// Wide strings streamed into a record are converted to UTF-8 with this locale's facets.
const std::locale& utf8Locale()
{
    static const std::locale locale = [] {
        try
        {
            return std::locale("C.UTF-8");
        }
        catch (const std::runtime_error&)
        {
            return std::locale::classic();
        }
    }();
    return locale;
}
} // namespace

record_pump::record_pump(source_logger& source, boost::log::record&& record)
    : m_source(source)
    , m_record(std::move(record))
{
    if (m_record)
    {
        m_stream.emplace(m_record);
        m_stream->imbue(utf8Locale());
    }
}

void record_pump::push()
{
    if (!m_stream)
        return;
    m_stream->flush();
    m_stream.reset();
    m_source.push_record(std::move(m_record));
}
} // namespace foundation::log
