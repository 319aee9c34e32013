#include "engine_access.h"

#include "client/browser_client.h"
#include "engine/global_service.h"
#include "host/cef_common/cef_common_data.h"
#include "host/context/context_registry.h"
#include "host/graphics/opengl_state.h"
#include "host/matrix/tx_array.h"
#include "host/settings/settings.h"
#include "host/settings/settings_root.h"

#include "include/base/cef_bind.h"
#include "include/base/cef_callback.h"
#include "include/cef_command_line.h"
#include "include/cef_task.h"
#include "include/wrapper/cef_closure_task.h"

#include <QApplication>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <future>
#include <thread>

namespace
{
// Runs the statements in a fresh process, where the engine has not started yet; the test fails
// when any expectation in that process fails or it dies.
#define IN_FRESH_PROCESS(...)                                                                              \
    EXPECT_EXIT(                                                                                                  \
        {                                                                                                         \
            __VA_ARGS__;                                                                                           \
            std::exit(::testing::Test::HasFailure() ? 1 : 0);                                                     \
        },                                                                                                        \
        ::testing::ExitedWithCode(0), "")

std::shared_ptr<settings::core::Settings> settingsRoot()
{
    return settings::in_torvex::getSettingsRoot(txutil::contextmgr::ContextRegistry::getTxrID());
}

std::thread::id uiThreadId()
{
    std::promise<std::thread::id> where;
    EXPECT_TRUE(CefPostTask(TID_UI, base::BindOnce([](std::promise<std::thread::id>* p) {
                                        p->set_value(std::this_thread::get_id());
                                    },
                                    &where)));
    auto answer = where.get_future();
    EXPECT_EQ(answer.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    return answer.get();
}
} // namespace

TEST(EngineStart, StartsOnceOnItsOwnUiThread)
{
    IN_FRESH_PROCESS({
        QCefGlobalSettings settings;
        settings.deviceScaleFactor = 2.0f;
        QCefGlobalService::initialize(settings);
        EXPECT_TRUE(QCefGlobalService::s_initialized);
        QCefGlobalService::startup();
        EXPECT_TRUE(QCefGlobalService::s_started);
        EXPECT_EQ(CCefManagerTestAccess::state(), 2);
        EXPECT_FLOAT_EQ(CCefManager::getInstance().globalSettings().deviceScaleFactor, 2.0f);

        EXPECT_FALSE(CefCurrentlyOn(TID_UI));
        EXPECT_NE(uiThreadId(), std::this_thread::get_id());

        // A second startup makes no second attempt and keeps the application object.
        BrowserApp* first = CCefManagerTestAccess::app();
        QCefGlobalService::startup();
        EXPECT_TRUE(QCefGlobalService::s_started);
        EXPECT_EQ(CCefManagerTestAccess::app(), first);

        // initialize moves the manager back; the next startup finds the engine running, leaves it
        // alone and replaces the application object.
        QCefGlobalSettings other;
        other.deviceScaleFactor = 3.0f;
        QCefGlobalService::initialize(other);
        EXPECT_EQ(CCefManagerTestAccess::state(), 1);
        EXPECT_FLOAT_EQ(CCefManager::getInstance().globalSettings().deviceScaleFactor, 3.0f);
        EXPECT_TRUE(cef_common::CefCommonData::getInstance()->isInitialized());
        QCefGlobalService::startup();
        EXPECT_TRUE(QCefGlobalService::s_started);
        EXPECT_NE(CCefManagerTestAccess::app(), first);
    });
}

TEST(EngineStart, InitializeTwiceKeepsTheFirstSettings)
{
    IN_FRESH_PROCESS({
        QCefGlobalSettings first;
        first.clientLabel = "first";
        first.deviceScaleFactor = 1.5f;
        QCefGlobalSettings second;
        second.clientLabel = "second";
        QCefGlobalService::initialize(first);
        QCefGlobalService::initialize(second);
        EXPECT_EQ(CCefManager::getInstance().globalSettings().clientLabel, "first");
        EXPECT_FLOAT_EQ(CCefManager::getInstance().globalSettings().deviceScaleFactor, 1.5f);
    });
}

TEST(EngineStart, HidesDiagnosticDestinationExactlyDuringEngineInitialisation)
{
    IN_FRESH_PROCESS({
        qputenv("TX_DIAGNOSTIC_DEST", "/tmp/diagnostics");
        QByteArray seenDuringInitialisation = "not called";
        cef_common::CefCommonData::getInstance()->setCommandLineCustomizer(
            [&](const CefString&, CefRefPtr<CefCommandLine>) {
                seenDuringInitialisation = qgetenv("TX_DIAGNOSTIC_DEST");
            });
        QCefGlobalService::startup();
        EXPECT_TRUE(QCefGlobalService::s_started);
        EXPECT_EQ(seenDuringInitialisation, QByteArray());
        EXPECT_EQ(qgetenv("TX_DIAGNOSTIC_DEST"), "/tmp/diagnostics");
    });
    IN_FRESH_PROCESS({
        // An empty value counts as absent: neither removed nor restored.
        qputenv("TX_DIAGNOSTIC_DEST", "");
        QCefGlobalService::startup();
        EXPECT_TRUE(qEnvironmentVariableIsSet("TX_DIAGNOSTIC_DEST"));
    });
}

TEST(EngineStart, WritesStartProgressAndDebugPortAtUserLevel)
{
    IN_FRESH_PROCESS({
        qputenv("BROVIA_REMOTE_DEBUGGING_PORT", "9333");
        QCefGlobalService::startup();
        ASSERT_TRUE(QCefGlobalService::s_started);
        const auto root = settingsRoot();
        ASSERT_TRUE(root);
        EXPECT_EQ(root->get<int>("cefInit.InitValue", "user"), 1);
        EXPECT_EQ(root->get<int>("cefInit.DebugPort", "user"), 9333);
        EXPECT_FALSE(root->get<int>("cefInit.InitValue", "session"));

        // The first pump request marks the engine as running and follows the current port.
        qputenv("BROVIA_REMOTE_DEBUGGING_PORT", "9334");
        BrowserAppTestAccess::schedule(*CCefManagerTestAccess::app(), 5);
        EXPECT_EQ(BrowserAppTestAccess::initValue(*CCefManagerTestAccess::app()), 2);
        EXPECT_EQ(root->get<int>("cefInit.InitValue", "user"), 2);
        EXPECT_EQ(root->get<int>("cefInit.DebugPort", "user"), 9334);
    });
}

TEST(EngineStart, SettingsWithoutRootChangeOnlyTheProgressValue)
{
    CefRefPtr<BrowserApp> app = new BrowserApp();
    settings::in_torvex::setSettingsRoot(txutil::contextmgr::ContextRegistry::getTxrID(), nullptr);
    app->setInitValue(1);
    EXPECT_EQ(BrowserAppTestAccess::initValue(*app), 1);
    settings::in_torvex::setSettingsRoot(txutil::contextmgr::ContextRegistry::getTxrID(),
                                         settings::core::Settings::createRoot());
}

TEST(EngineStart, MissingChromiumFailsOnceThenReportsStarted)
{
    IN_FRESH_PROCESS({
        qputenv("BROVIA_CHROMIUM", "/nonexistent/chromium");
        QCefGlobalService::startup();
        EXPECT_FALSE(QCefGlobalService::s_started);
        EXPECT_FALSE(CefPostTask(TID_UI, base::BindOnce([] {})));
        // One attempt per process: the second call reports success without trying.
        QCefGlobalService::startup();
        EXPECT_TRUE(QCefGlobalService::s_started);
    });
}

TEST(EngineStart, AboutToQuitCleansUpClientsAndReleasesTheApplication)
{
    IN_FRESH_PROCESS({
        QCefGlobalService::startup();
        ASSERT_TRUE(QCefGlobalService::s_started);
        CefRefPtr<BrowserClient> client = new BrowserClient(nullptr);
        CCefManager::getInstance().addBrowserClient(client.get());
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        qApp->exec();
        EXPECT_TRUE(client->isCleanedUp());
        EXPECT_EQ(CCefManagerTestAccess::state(), 3);
        EXPECT_EQ(CCefManagerTestAccess::app(), nullptr);
        CCefManager::getInstance().removeBrowserClient(client.get());
        // The engine stops at exit, from the manager's destructor.
    });
}

TEST(EngineStart, ShutdownWithoutStartupOnlyChangesState)
{
    IN_FRESH_PROCESS({
        CefRefPtr<BrowserClient> client = new BrowserClient(nullptr);
        CCefManager::getInstance().addBrowserClient(client.get());
        CCefManagerTestAccess::shutdown();
        EXPECT_EQ(CCefManagerTestAccess::state(), 3);
        EXPECT_FALSE(client->isCleanedUp());
        CCefManager::getInstance().removeBrowserClient(client.get());
    });
}

TEST(EngineStart, ClientListRemovesEveryCopy)
{
    CefRefPtr<BrowserClient> a = new BrowserClient(nullptr);
    CefRefPtr<BrowserClient> b = new BrowserClient(nullptr);
    CCefManager& manager = CCefManager::getInstance();
    manager.addBrowserClient(a.get());
    manager.addBrowserClient(b.get());
    manager.addBrowserClient(a.get());
    manager.removeBrowserClient(a.get());
    manager.removeBrowserClient(a.get());
    manager.removeBrowserClient(b.get());
    CCefManagerTestAccess::shutdown();
    EXPECT_FALSE(a->isCleanedUp());
    EXPECT_FALSE(b->isCleanedUp());
}

TEST(EngineStart, CachePathsHangBelowTheCacheRoot)
{
    const QString root = QString::fromStdString(CCefManager::getInstance().cacheRootPath().ToString());
    ASSERT_FALSE(root.isEmpty());
    EXPECT_EQ(QString::fromStdString(CCefManager::getInstance().cachePath("").ToString()), root + "/");
    EXPECT_EQ(QString::fromStdString(CCefManager::getInstance().cachePath("views/ä").ToString()), root + "/views/ä");
}

TEST(EngineStart, RemoteDebugPortGatewayWritesAnArrayEvenWithoutOutputCount)
{
    qunsetenv("BROVIA_REMOTE_DEBUGGING_PORT");
    txArray_tag* outputs[1] = {nullptr};
    getRemoteDebugPort(0, outputs, 0, nullptr);
    ASSERT_NE(outputs[0], nullptr);
    EXPECT_EQ(matrix::numberOfElements(outputs[0]), 1u);
    EXPECT_EQ(matrix::realData(outputs[0])[0], -1.0);
    matrix::destroyArray(outputs[0]);

    qputenv("BROVIA_REMOTE_DEBUGGING_PORT", "9222");
    getRemoteDebugPort(1, outputs, 0, nullptr);
    EXPECT_EQ(matrix::realData(outputs[0])[0], 9222.0);
    matrix::destroyArray(outputs[0]);
    qunsetenv("BROVIA_REMOTE_DEBUGGING_PORT");
}

TEST(EngineStart, SoftwareGlAsksTheHostForSoftwareSwitches)
{
    CefRefPtr<BrowserApp> app = new BrowserApp();
    qputenv("BROVIA_SOFTWARE_GL", "1");
    CefRefPtr<CefCommandLine> software = CefCommandLine::CreateCommandLine();
    app->OnBeforeCommandLineProcessing("", software);
    EXPECT_TRUE(software->HasSwitch("disable-gpu"));

    qputenv("BROVIA_SOFTWARE_GL", "0");
    qputenv("BROVIA_GPU_BLOCKLIST", "");
    CefRefPtr<CefCommandLine> hardware = CefCommandLine::CreateCommandLine();
    app->OnBeforeCommandLineProcessing("", hardware);
    if (!GraphicsState::OpenGLState::instance().isBlacklistedHardware())
    {
        EXPECT_FALSE(hardware->HasSwitch("disable-gpu"));
    }
    qunsetenv("BROVIA_SOFTWARE_GL");
    qunsetenv("BROVIA_GPU_BLOCKLIST");
}
