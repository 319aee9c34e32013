#pragma once

#include "include/cef_base.h"
#include "include/cef_command_line.h"
#include "include/internal/cef_types_wrappers.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

namespace cef_common
{
// What all of the host's users of the engine share in one process: the engine's settings, the
// cache root and the switches of every engine process. The options come from the environment
// (see CommandLine). Any thread.
class CefCommonData
{
public:
    class RootCacheDirManager;

    static CefCommonData* getInstance();

    // True when the engine already runs in this process: its UI thread answers, or another of the
    // host's users said so with setInitialized.
    bool isInitialized() const;
    void setInitialized(bool initialized) { m_initialized.store(initialized); }

    // A host's own switches: called by populateCommandLineParams for every process type, after
    // the switches of this layer. Engine threads; an empty function removes it.
    using CommandLineCustomizer = std::function<void(const CefString& processType, CefRefPtr<CefCommandLine>)>;
    void setCommandLineCustomizer(CommandLineCustomizer customizer);

    // Fills in what the host wants of the engine: off-screen rendering, no sandbox, the cache
    // root, also the global context's cache (where views keep theirs by default), the engine's log
    // severity after BROVIA_LOG_LEVEL and its log file "<root>/engine.log", locale "en-US",
    // and the debugging port, browser program and accepted languages if the options give them.
    // The message loop fields are left alone.
    void populateSettings(CefStructBase<CefSettingsTraits>& settings);

    RootCacheDirManager& rootCacheDirManager();

    // BROVIA_REMOTE_DEBUGGING_PORT, or `fallback` when it is unset or unusable.
    int remoteDebugPort(int fallback) const;

    // BROVIA_ACCEPT_LANGUAGES ("de-CH,de,en"); empty leaves the engine's default.
    CefString acceptedLanguageList() const;

    // Adds the host's switches to the browser process's command line (empty `processType`): with
    // `useSoftware`, GPU rendering and compositing are turned off. A switch already on the line is
    // left as it is, so repeated calls change nothing more. Other processes take their switches
    // from the browser process and get only the customizer's.
    void populateCommandLineParams(const CefStringBase<CefStringTraitsUTF16>& processType,
                                   scoped_refptr<CefCommandLine> commandLine, bool useSoftware);

private:
    CefCommonData();
    ~CefCommonData();

    std::atomic<bool> m_initialized{false};
    std::mutex m_customizerMutex;
    CommandLineCustomizer m_customizer;
    const std::unique_ptr<RootCacheDirManager> m_rootCacheDirManager;
};
} // namespace cef_common
