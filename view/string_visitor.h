#pragma once

#include "include/cef_string_visitor.h"

#include <QString>

#include <functional>
#include <mutex>

// Hands a string from the engine to a function once; a second delivery is dropped. The engine
// calls Visit on its UI thread. A visitor that the engine lets go unvisited hands on a null
// string, so that nobody waits for it in vain.
class StringVisitor : public CefStringVisitor
{
public:
    explicit StringVisitor(std::function<void(const QString&)> callback);
    ~StringVisitor() override;

    void Visit(const CefString& string) override;

private:
    std::mutex m_mutex;
    std::function<void(const QString&)> m_callback;

    IMPLEMENT_REFCOUNTING(StringVisitor);
};
