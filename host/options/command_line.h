#pragma once

#include <optional>
#include <string>

// The host's options, read from the environment when the object is made. Cheap: make one on the
// stack where an option is needed. A value that cannot be used falls back to the default.
//   BROVIA_MESSAGE_CADENCE        message pump passes per second, 1..1000, default 30
//   BROVIA_INSECURE_LOCALHOST     "1", "true" or "yes": accept any certificate error, default off
//   BROVIA_REMOTE_DEBUGGING_PORT  1024..65535: the engine's DevTools port, default none
//   BROVIA_CACHE_ROOT             directory for the engine's caches, default the user's cache dir
//   BROVIA_ACCEPT_LANGUAGES       Accept-Language list such as "de-CH,de,en", default the engine's
//   BROVIA_CHROMIUM               the engine's browser program, default the engine's own choice
// Any thread.
class CommandLine
{
public:
    CommandLine();

    int messageProcessingCadence() const { return m_messageProcessingCadence; }
    bool insecureLocalHostAllowed() const { return m_insecureLocalHostAllowed; }
    std::optional<int> remoteDebuggingPort() const { return m_remoteDebuggingPort; }
    // Empty when not set.
    const std::string& cacheRoot() const { return m_cacheRoot; }
    const std::string& acceptLanguages() const { return m_acceptLanguages; }
    const std::string& browserSubprocessPath() const { return m_browserSubprocessPath; }

private:
    int m_messageProcessingCadence;
    bool m_insecureLocalHostAllowed;
    std::optional<int> m_remoteDebuggingPort;
    std::string m_cacheRoot;
    std::string m_acceptLanguages;
    std::string m_browserSubprocessPath;
};
