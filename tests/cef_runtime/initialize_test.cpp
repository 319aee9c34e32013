// CefInitialize's preconditions and the application hooks.

#include <sys/stat.h>

#include <fstream>

#include <QTemporaryDir>

#include "engine_test_support.h"
#include "include/base/cef_callback.h"
#include "include/wrapper/cef_closure_task.h"
#include "libcef/context.h"

namespace cef_runtime_test {
namespace {

TEST(Initialize, CallsTheApplicationHooksAndKeepsWhatItFound) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    CefRefPtr<RecordingApp> app = new RecordingApp;
    char arg0[] = "host";
    char arg1[] = "--some-switch=1";
    char* argv[] = {arg0, arg1, nullptr};
    CefSettings settings = MakeSettings(true, false);
    CefString(&settings.cache_path) = "/tmp/brovia-cache";
    ASSERT_TRUE(CefInitialize(CefMainArgs(2, argv), settings, app, nullptr));
    EXPECT_EQ(CefGetExitCode(), 0);

    EXPECT_EQ(app->command_line_calls, std::vector<std::string>{""});
    EXPECT_TRUE(app->command_line_valid);
    EXPECT_TRUE(CefCommandLine::GetGlobalCommandLine()->HasSwitch("some-switch"));
    EXPECT_EQ(app->scheme_results, (std::vector<bool>{true, false, false}));

    cefengine::Context* context = cefengine::Context::Get();
    ASSERT_EQ(context->custom_schemes().size(), 1u);
    EXPECT_EQ(context->custom_schemes()[0].name, "error");
    EXPECT_EQ(context->custom_schemes()[0].options, 0x38);
    EXPECT_TRUE(cefengine::ChromiumLocator::IsExecutableFile(context->chromium_path()));
    EXPECT_EQ(CefString(&context->settings().cache_path).ToString(), "/tmp/brovia-cache");
    EXPECT_EQ(context->app(), CefRefPtr<CefApp>(app));

    EXPECT_FALSE(CefInitialize(CefMainArgs(0, nullptr), settings, app, nullptr));
    CefShutdown();
    CefShutdown();  // a second one does nothing
  });
}

TEST(Initialize, FailsWithoutAnExecutableAndOnlyOnce) {
  RunInFreshProcess([] {
    CefShutdown();  // without CefInitialize: nothing happens
    CefSettings settings = MakeSettings(true, false);
    CefString(&settings.browser_subprocess_path) = "/nonexistent/chromium";
    CefRefPtr<RecordingApp> app = new RecordingApp;
    EXPECT_FALSE(CefInitialize(CefMainArgs(0, nullptr), settings, app, nullptr));
    EXPECT_NE(CefGetExitCode(), 0);
    EXPECT_TRUE(app->command_line_calls.empty());
    bool ran = false;
    EXPECT_FALSE(CefPostTask(TID_UI, base::BindOnce([](bool* r) { *r = true; }, &ran)));
    EXPECT_FALSE(CefCurrentlyOn(TID_UI));

    // A directory is no executable either, and there is no second attempt.
    CefString(&settings.browser_subprocess_path) = "/usr/bin";
    EXPECT_FALSE(CefInitialize(CefMainArgs(0, nullptr), settings, app, nullptr));
    CefShutdown();
    EXPECT_TRUE(app->HasOneRef());
    EXPECT_FALSE(ran);
  });
}

TEST(ChromiumLocator, PrefersConfiguredThenPreferredThenPathInNameOrder) {
  QTemporaryDir dir_a, dir_b;
  ASSERT_TRUE(dir_a.isValid() && dir_b.isValid());
  auto make = [](const QString& path, mode_t mode) {
    std::ofstream(path.toStdString()) << "#!/bin/sh\n";
    chmod(path.toLocal8Bit().constData(), mode);
    return path.toStdString();
  };
  const std::string a = dir_a.path().toStdString();
  const std::string b = dir_b.path().toStdString();
  make(dir_a.filePath("chromium-headless-shell"), 0644);  // not executable
  const std::string chromium_a = make(dir_a.filePath("chromium"), 0755);
  const std::string shell_b = make(dir_b.filePath("chromium-headless-shell"), 0755);

  const std::vector<std::string> names{"chromium-headless-shell", "chromium"};
  cefengine::ChromiumLocator locator({"/nonexistent/preferred"}, "::" + a + ":" + b, names);
  EXPECT_EQ(locator.Locate(""), shell_b);  // the first name wins over the earlier directory
  EXPECT_EQ(locator.Locate(chromium_a), chromium_a);
  EXPECT_EQ(locator.Locate(a), "");  // a directory
  EXPECT_EQ(locator.Locate(a + "/chromium-headless-shell"), "");

  EXPECT_EQ(cefengine::ChromiumLocator({chromium_a}, b, names).Locate(""), chromium_a);
  EXPECT_EQ(cefengine::ChromiumLocator({}, a, {"chromium-headless-shell"}).Locate(""), "");
}

}  // namespace
}  // namespace cef_runtime_test
