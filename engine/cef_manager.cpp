#include "engine/cef_manager.h"

#include "client/browser_client.h"
#include "engine/browser_app.h"
#include "host/cef_common/cef_common_data.h"
#include "host/cef_common/root_cache_dir_manager.h"
#include "host/fl/i18n.h"
#include "host/settings/settings.h"

#include "include/cef_app.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>

#include <algorithm>
#include <mutex>

namespace
{
// Serialises the body of startup; the state word is written outside it on purpose.
std::mutex startupMutex;

constexpr const char* kDiagnosticDest = "TX_DIAGNOSTIC_DEST";
} // namespace

CCefManager& CCefManager::getInstance()
{
    static CCefManager instance;
    return instance;
}

CCefManager::CCefManager()
    : QObject(nullptr)
{
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &CCefManager::shutdownCef,
                     Qt::AutoConnection);
}

CCefManager::~CCefManager()
{
    // Unconditional: also a process that never started the engine shuts it down at exit.
    CefShutdown();
}

bool CCefManager::initialize(const QCefGlobalSettings& settings)
{
    if (m_state == 1)
        return true;
    m_state = 1;
    m_globalSettings.clientLabel = settings.clientLabel;
    m_globalSettings.certificateVerifier = settings.certificateVerifier;
    m_globalSettings.deviceScaleFactor = settings.deviceScaleFactor;
    return true;
}

bool CCefManager::startup()
{
    if (m_state == 2)
        return true;
    m_state = 2;

    std::lock_guard<std::mutex> lock(startupMutex);

    // The engine's child processes must not inherit the host's diagnostic destination, so the
    // variable is hidden for exactly the time of CefInitialize.
    const std::u16string diagnosticDest = fl::i18n::getenv(kDiagnosticDest);
    if (!diagnosticDest.empty())
        fl::i18n::unsetenv(kDiagnosticDest);

    settings::core::SettingsProperties defaults;
    settings::core::SettingsProperties initValue;
    initValue.value = boost::any(1);
    settings::core::Settings::createAndSetValue("cefInit.InitValue", defaults, initValue, "user");

    m_app = new BrowserApp();
    m_app->setInitValue(1);

    CefSettings settings;
    bool result = true;
    if (!cef_common::CefCommonData::getInstance()->isInitialized())
    {
        cef_common::CefCommonData::getInstance()->populateSettings(settings);
        // The engine runs its own UI thread: the Qt main thread is not the engine UI thread.
        settings.multi_threaded_message_loop = 1;
        settings.external_message_pump = 0;

        QList<QByteArray> arguments{QByteArray(""), QByteArray("--disable-in-process-stack-traces")};
        std::vector<char*> argv;
        for (QByteArray& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        CefMainArgs args(static_cast<int>(arguments.size()), argv.data());

        result = CefInitialize(args, settings, m_app.get(), nullptr);

        if (!diagnosticDest.empty())
            fl::i18n::setenv(u"TX_DIAGNOSTIC_DEST", diagnosticDest, 1, false);
    }
    return result;
}

void CCefManager::shutdownCef()
{
    if (m_state == 2)
    {
        for (BrowserClient* client : m_browserClients)
            client->cleanup();
        m_app->stopMessagePump();
        QObject::disconnect(m_app.get(), nullptr, nullptr, nullptr);
        m_app = nullptr;
    }
    m_state = 3;
    QObject::disconnect(this, nullptr, nullptr, nullptr);
}

QCefGlobalSettings CCefManager::globalSettings() const
{
    return m_globalSettings;
}

void CCefManager::addBrowserClient(BrowserClient* client)
{
    m_browserClients.push_back(client);
}

void CCefManager::removeBrowserClient(BrowserClient* client)
{
    m_browserClients.erase(std::remove(m_browserClients.begin(), m_browserClients.end(), client),
                           m_browserClients.end());
}

CefString CCefManager::cacheRootPath() const
{
    const std::u16string root = cef_common::CefCommonData::getInstance()->rootCacheDirManager().cacheRootPath();
    return CefString(fl::i18n::to_string(root));
}

CefString CCefManager::cachePath(const QString& relative) const
{
    const std::u16string root = cef_common::CefCommonData::getInstance()->rootCacheDirManager().cacheRootPath();
    std::u16string path = root + u"/";
    if (!relative.isEmpty())
        path += relative.toStdU16String();
    return CefString(fl::i18n::to_string(path));
}
