#include "view/string_visitor.h"

#include "host/view_support/conversions.h"

StringVisitor::StringVisitor(std::function<void(const QString&)> callback)
    : m_callback(std::move(callback))
{
}

StringVisitor::~StringVisitor()
{
    if (m_callback)
        m_callback(QString());
}

void StringVisitor::Visit(const CefString& string)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_callback)
        return;
    m_callback(Conversions::convertString(string));
    m_callback = nullptr;
}
