#include "host/cef_common/cef_common_data.h"

#include "host/cef_common/root_cache_dir_manager.h"
#include "host/log/severity.h"
#include "host/options/command_line.h"

#include "include/cef_task.h"

namespace cef_common
{
namespace
{
// The engine logs from the mildest severity that the host's mask enables.
cef_log_severity_t engineSeverity(unsigned int mask)
{
    namespace sev = foundation::log::severity;
    if (mask & sev::debug)
        return LOGSEVERITY_VERBOSE;
    if (mask & sev::info)
        return LOGSEVERITY_INFO;
    if (mask & sev::warning)
        return LOGSEVERITY_WARNING;
    if (mask & sev::error)
        return LOGSEVERITY_ERROR;
    if (mask & sev::fatal)
        return LOGSEVERITY_FATAL;
    return LOGSEVERITY_DISABLE;
}
} // namespace

CefCommonData* CefCommonData::getInstance()
{
    // Never destroyed: engine threads may still ask for it while statics are torn down at exit.
    static CefCommonData* const instance = new CefCommonData();
    return instance;
}

CefCommonData::CefCommonData()
    : m_rootCacheDirManager(std::make_unique<RootCacheDirManager>())
{
}

CefCommonData::~CefCommonData() = default;

void CefCommonData::populateSettings(CefStructBase<CefSettingsTraits>& settings)
{
    const CommandLine options;
    settings.no_sandbox = 1;
    settings.windowless_rendering_enabled = 1;
    settings.command_line_args_disabled = 0;

    const std::u16string root = m_rootCacheDirManager->cacheRootPath();
    if (!root.empty())
    {
        CefString(&settings.root_cache_path) = root;
        // The global context keeps its data where views without a path of their own keep theirs, so
        // that both share one Chromium, which the engine starts ahead of the first view.
        CefString(&settings.cache_path) = root;
        CefString(&settings.log_file) = root + u"/engine.log";
    }
    CefString(&settings.locale) = "en-US";
    settings.log_severity = engineSeverity(foundation::log::mask_from_environment());

    if (const std::optional<int> port = options.remoteDebuggingPort())
        settings.remote_debugging_port = *port;
    if (!options.browserSubprocessPath().empty())
        CefString(&settings.browser_subprocess_path) = options.browserSubprocessPath();
    if (!options.acceptLanguages().empty())
        CefString(&settings.accept_language_list) = options.acceptLanguages();
}

CefCommonData::RootCacheDirManager& CefCommonData::rootCacheDirManager()
{
    return *m_rootCacheDirManager;
}

int CefCommonData::remoteDebugPort(int fallback) const
{
    return CommandLine().remoteDebuggingPort().value_or(fallback);
}

CefString CefCommonData::acceptedLanguageList() const
{
    return CefString(CommandLine().acceptLanguages());
}

void CefCommonData::populateCommandLineParams(const CefStringBase<CefStringTraitsUTF16>& processType,
                                              scoped_refptr<CefCommandLine> commandLine, bool useSoftware)
{
    if (!commandLine || commandLine->IsReadOnly())
        return;
    if (processType.empty() && useSoftware)
    {
        for (const char* name : {"disable-gpu", "disable-gpu-compositing"})
        {
            if (!commandLine->HasSwitch(name))
                commandLine->AppendSwitch(name);
        }
    }
    CommandLineCustomizer customizer;
    {
        std::lock_guard<std::mutex> lock(m_customizerMutex);
        customizer = m_customizer;
    }
    if (customizer)
        customizer(processType, commandLine);
}

bool CefCommonData::isInitialized() const
{
    // The engine hands out a runner for its UI thread only while it runs.
    return m_initialized.load() || CefTaskRunner::GetForThread(TID_UI) != nullptr;
}

void CefCommonData::setCommandLineCustomizer(CommandLineCustomizer customizer)
{
    std::lock_guard<std::mutex> lock(m_customizerMutex);
    m_customizer = std::move(customizer);
}
} // namespace cef_common
