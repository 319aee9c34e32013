// Request contexts: one Chromium and profile per cache path, shared storage,
// preferences, and what CefShutdown leaves behind.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "browser_test_support.h"
#include "include/cef_request_context_handler.h"

namespace engine_browser_test {
namespace {

class ContextHandler : public CefRequestContextHandler {
 public:
  void OnRequestContextInitialized(CefRefPtr<CefRequestContext> context) override {
    on_ui = CefCurrentlyOn(TID_UI);
    initialized.Notify();
  }
  bool on_ui = false;
  cef_runtime_test::Signal initialized;
  IMPLEMENT_REFCOUNTING(ContextHandler);
};

QStringList TemporaryProfiles() {
  return QDir(QDir::tempPath()).entryList({"brovia-profile-*"}, QDir::Dirs);
}

TEST(RequestContexts, CachePathsMakeChromiumsAndStorageIsShared) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    EXPECT_FALSE(CefRequestContext::GetGlobalContext()) << "no engine yet";
    QTemporaryDir root;
    const QString global_path = root.filePath("global");
    const QString own_path = root.filePath("own");
    const int port = UnusedPort();
    ASSERT_TRUE(StartEngine([&](CefSettings& settings) {
      CefString(&settings.root_cache_path) = root.path().toStdString();
      CefString(&settings.cache_path) = (global_path + "/../global").toStdString();
      settings.remote_debugging_port = port;
    }));
    CefRefPtr<CefRequestContext> global = CefRequestContext::GetGlobalContext();
    ASSERT_TRUE(global);
    EXPECT_TRUE(global->IsGlobal());
    EXPECT_EQ(global->GetCachePath().ToString(), global_path.toStdString()) << "made clean";

    CefRequestContextSettings settings;
    CefString(&settings.cache_path) = own_path.toStdString();
    CefRefPtr<ContextHandler> handler = new ContextHandler;
    CefRefPtr<CefRequestContext> own = CefRequestContext::CreateContext(settings, handler);
    ASSERT_TRUE(own);
    EXPECT_TRUE(handler->initialized.Wait());
    EXPECT_TRUE(handler->on_ui);
    EXPECT_FALSE(own->IsGlobal());
    EXPECT_FALSE(own->IsSharingWith(global));
    EXPECT_EQ(own->GetHandler().get(), handler.get());
    CefRefPtr<CefRequestContext> sharing = CefRequestContext::CreateContext(own, nullptr);
    ASSERT_TRUE(sharing);
    EXPECT_TRUE(sharing->IsSharingWith(own));
    EXPECT_FALSE(sharing->IsSame(own));
    EXPECT_EQ(sharing->GetCachePath().ToString(), own_path.toStdString());

    CefRefPtr<CefValue> value = CefValue::Create();
    value->SetInt(5);
    CefString error;
    EXPECT_TRUE(sharing->SetPreference("brovia.test", value, error));
    ASSERT_TRUE(own->GetPreference("brovia.test"));
    EXPECT_EQ(own->GetPreference("brovia.test")->GetInt(), 5);
    EXPECT_FALSE(global->HasPreference("brovia.test"));
    EXPECT_TRUE(sharing->SetPreference("brovia.test", nullptr, error));
    EXPECT_FALSE(own->HasPreference("brovia.test"));

    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> in_global = OpenBrowser(client, "data:text/html,global");
    CefRefPtr<CefBrowser> in_own = OpenBrowser(client, "data:text/html,own", own);
    CefRefPtr<CefBrowser> in_sharing = OpenBrowser(client, "data:text/html,sharing", sharing);
    ASSERT_TRUE(in_global && in_own && in_sharing);
    EXPECT_TRUE(in_own->GetHost()->GetRequestContext()->IsSame(own));
    const pid_t global_pid = Impl(in_global)->devtools()->pid();
    EXPECT_NE(global_pid, Impl(in_own)->devtools()->pid());
    EXPECT_EQ(Impl(in_own)->devtools()->pid(), Impl(in_sharing)->devtools()->pid());
    EXPECT_TRUE(QDir(global_path).exists("Default")) << "Chromium keeps its profile there";
    EXPECT_TRUE(QDir(own_path).exists("Default"));
    EXPECT_TRUE(Listening(port)) << "remote debugging was asked for";
    in_global = in_own = in_sharing = nullptr;
    StopEngine(client);
  });
}

// Two instances of one host application start at the same moment on one
// profile: each gets its own Chromium, and both pages load.
TEST(RequestContexts, TwoHostsStartingAtOnceOnOneProfileBothShowTheirPages) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    QTemporaryDir root;
    const pid_t other = ::fork();
    ASSERT_GE(other, 0);
    const bool started = StartEngine([&](CefSettings& settings) {
      CefString(&settings.root_cache_path) = root.path().toStdString();
      CefString(&settings.cache_path) = root.path().toStdString();
    });
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = started ? OpenBrowser(client, "data:text/html,shared") : nullptr;
    const bool shown = browser && client->WaitFor("load-end 0 data:text/html,shared");
    browser = nullptr;
    if (started) StopEngine(client);
    if (other == 0) ::_exit(shown ? 0 : 1);
    int status = 0;
    ASSERT_EQ(::waitpid(other, &status, 0), other);
    EXPECT_TRUE(shown) << "the first host";
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the second host";
  });
}

TEST(RequestContexts, TemporaryProfileGoesAtShutdown) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, "data:text/html,x");
    ASSERT_TRUE(browser);
    // This Chromium's profile, from its command line: other tests' profiles come and go
    // meanwhile.
    QFile cmdline(QStringLiteral("/proc/%1/cmdline").arg(Impl(browser)->devtools()->pid()));
    ASSERT_TRUE(cmdline.open(QIODevice::ReadOnly));
    QString profile;
    for (const QByteArray& arg : cmdline.readAll().split('\0')) {
      if (arg.startsWith("--user-data-dir=")) profile = QString::fromLocal8Bit(arg.mid(16));
    }
    cmdline.close();
    browser = nullptr;
    EXPECT_TRUE(TemporaryProfiles().contains(QFileInfo(profile).fileName())) << profile.toStdString();
    EXPECT_TRUE(CefRequestContext::GetGlobalContext()->GetCachePath().empty());
    StopEngine(client);
    EXPECT_FALSE(QFileInfo::exists(profile));
  });
}

}  // namespace
}  // namespace engine_browser_test
