#include "host/cef_common/cef_common_data.h"
#include "host/cef_common/root_cache_dir_manager.h"

#include "scoped_env.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

using cef_common::CefCommonData;

TEST(RootCacheDirManager, MakesTheConfiguredRootAndRetriesAfterFailure)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    CefCommonData::RootCacheDirManager manager;
    {
        ScopedEnv root("BROVIA_CACHE_ROOT", std::string("/proc/brovia-cannot-exist"));
        EXPECT_EQ(manager.cacheRootPath(), u"");
    }
    const QString wanted = dir.filePath(QStringLiteral("caf\u00e9/root"));
    ScopedEnv root("BROVIA_CACHE_ROOT", wanted.toStdString());
    EXPECT_EQ(manager.cacheRootPath(), wanted.toStdU16String());
    EXPECT_TRUE(QDir(wanted).exists());
}

TEST(CefCommonData, PopulatesSettingsFromTheOptions)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString root = dir.filePath(QStringLiteral("cache"));
    ScopedEnv cacheRoot("BROVIA_CACHE_ROOT", root.toStdString());
    ScopedEnv port("BROVIA_REMOTE_DEBUGGING_PORT", std::string("9333"));
    ScopedEnv languages("BROVIA_ACCEPT_LANGUAGES", std::string("de-CH,de"));
    ScopedEnv level("BROVIA_LOG_LEVEL", std::string("error"));
    ScopedEnv chromium("BROVIA_CHROMIUM", std::nullopt);

    CefSettings settings;
    CefCommonData::getInstance()->populateSettings(settings);
    // The first user of the process fixes the root; here that is this test, unless repeated.
    const std::u16string fixedRoot = CefCommonData::getInstance()->rootCacheDirManager().cacheRootPath();

    EXPECT_EQ(settings.windowless_rendering_enabled, 1);
    EXPECT_EQ(settings.no_sandbox, 1);
    EXPECT_EQ(settings.multi_threaded_message_loop, 0);
    ASSERT_FALSE(fixedRoot.empty());
    EXPECT_EQ(CefString(&settings.root_cache_path).ToString16(), fixedRoot);
    EXPECT_TRUE(QDir(QString::fromStdU16String(fixedRoot)).exists());
    EXPECT_EQ(CefString(&settings.cache_path).ToString16(), fixedRoot);
    EXPECT_EQ(CefString(&settings.locale).ToString(), "en-US");
    EXPECT_EQ(settings.log_severity, LOGSEVERITY_ERROR);
    EXPECT_EQ(settings.remote_debugging_port, 9333);
    EXPECT_EQ(CefString(&settings.accept_language_list).ToString(), "de-CH,de");
    EXPECT_EQ(CefString(&settings.browser_subprocess_path).ToString(), "");
    EXPECT_EQ(CefCommonData::getInstance()->remoteDebugPort(-1), 9333);
}

TEST(CefCommonData, UnsetOptionsGiveFallbacks)
{
    ScopedEnv port("BROVIA_REMOTE_DEBUGGING_PORT", std::nullopt);
    ScopedEnv languages("BROVIA_ACCEPT_LANGUAGES", std::nullopt);
    EXPECT_EQ(CefCommonData::getInstance()->remoteDebugPort(-1), -1);
    EXPECT_TRUE(CefCommonData::getInstance()->acceptedLanguageList().empty());
}

TEST(CefCommonData, SoftwareSwitchesGoOnceToTheBrowserProcessOnly)
{
    const auto count = [](CefRefPtr<CefCommandLine> line, const std::string& name) {
        std::vector<CefString> argv;
        line->GetArgv(argv);
        return std::count_if(argv.begin(), argv.end(), [&](const CefString& a) { return a.ToString() == name; });
    };
    CefCommonData* data = CefCommonData::getInstance();

    CefRefPtr<CefCommandLine> browser = CefCommandLine::CreateCommandLine();
    browser->AppendSwitch("disable-gpu");
    data->populateCommandLineParams(CefString(), browser, true);
    data->populateCommandLineParams(CefString(), browser, true);
    EXPECT_EQ(count(browser, "--disable-gpu"), 1);
    EXPECT_EQ(count(browser, "--disable-gpu-compositing"), 1);

    CefRefPtr<CefCommandLine> hardware = CefCommandLine::CreateCommandLine();
    data->populateCommandLineParams(CefString(), hardware, false);
    EXPECT_FALSE(hardware->HasSwitches());

    CefRefPtr<CefCommandLine> renderer = CefCommandLine::CreateCommandLine();
    data->populateCommandLineParams(CefString("renderer"), renderer, true);
    EXPECT_FALSE(renderer->HasSwitches());

    data->populateCommandLineParams(CefString(), nullptr, true);
}
