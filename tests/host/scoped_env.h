#pragma once

#include <cstdlib>
#include <optional>
#include <string>

// Sets (or with nullopt removes) an environment variable for the life of the object.
class ScopedEnv
{
public:
    ScopedEnv(const char* name, std::optional<std::string> value)
        : m_name(name)
    {
        if (const char* old = std::getenv(name))
            m_old = old;
        apply(value);
    }
    ~ScopedEnv() { apply(m_old); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    void apply(const std::optional<std::string>& value)
    {
        if (value)
            ::setenv(m_name.c_str(), value->c_str(), 1);
        else
            ::unsetenv(m_name.c_str());
    }

    std::string m_name;
    std::optional<std::string> m_old;
};
