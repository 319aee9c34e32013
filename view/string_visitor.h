#pragma once

#include "include/cef_string_visitor.h"

#include <QString>

#include <functional>
#include <mutex>

// Hands a string from the engine to a function once; a second delivery is dropped. The engine
// calls Visit on its UI thread.
class StringVisitor : public CefStringVisitor
{
public:
    explicit StringVisitor(std::function<void(const QString&)> callback);

    void Visit(const CefString& string) override;

private:
    std::mutex m_mutex;
    std::function<void(const QString&)> m_callback;

    IMPLEMENT_REFCOUNTING(StringVisitor);
};
