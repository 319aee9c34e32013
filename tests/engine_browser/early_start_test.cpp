// Chromium starts with the engine, in the background: the first browser finds
// it running, a browser that needs another one gets it, and the engine UI
// thread goes on while Chromium comes up.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <thread>

#include "browser_test_support.h"
#include "include/base/cef_callback.h"
#include "include/wrapper/cef_closure_task.h"
#include "libcef/browser/browser_registry.h"
#include "libcef/browser/context_storage.h"
#include "libcef/browser/request_context_impl.h"
#include "libcef/chromium_locator.h"

namespace engine_browser_test {
namespace {

std::shared_ptr<cefengine::ChromiumInstance> GlobalChromium() {
  return cefengine::BrowserRegistry::Get().GlobalContext()->storage()->chromium;
}

// The pid of the global context's Chromium once it answers, or -1 after 20 s.
pid_t WaitForGlobalChromium() {
  for (int attempt = 0; attempt < 400; ++attempt) {
    if (std::shared_ptr<cefengine::DevToolsSession> session = GlobalChromium()->session()) {
      if (session->isConnected()) return session->pid();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return -1;
}

bool GoneWithin20s(pid_t pid) {
  for (int attempt = 0; attempt < 400; ++attempt) {
    if (kill(pid, 0) != 0) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

// A view on a screen of another density.
class ScaledClient : public TestClient {
 public:
  bool GetScreenInfo(CefRefPtr<CefBrowser> browser, CefScreenInfo& screen_info) override {
    screen_info.device_scale_factor = 2;
    return true;
  }
};

TEST(EarlyStart, FirstBrowserFindsChromiumStartedWithTheEngine) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    const pid_t early = WaitForGlobalChromium();
    ASSERT_GT(early, 0) << "Chromium runs before any browser asked for it";

    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, "data:text/html,early");
    ASSERT_TRUE(browser);
    EXPECT_TRUE(client->WaitFor("load-end 0 data:text/html,early"));
    EXPECT_EQ(Impl(browser)->devtools()->pid(), early) << "no second Chromium";
    EXPECT_EQ(Impl(browser)->chromium_scale_factor(), 1.0f);
    browser = nullptr;
    StopEngine(client);
  });
}

TEST(EarlyStart, BrowserOfAnotherFactorOrCachePathGetsItsOwnChromium) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    QTemporaryDir root;
    const int port = UnusedPort();
    ASSERT_TRUE(StartEngine([&](CefSettings& settings) {
      CefString(&settings.root_cache_path) = root.path().toStdString();
      CefString(&settings.cache_path) = root.filePath("global").toStdString();
      settings.remote_debugging_port = port;
    }));
    const pid_t early = WaitForGlobalChromium();
    ASSERT_GT(early, 0);

    // The first browser paints at 2: the unused Chromium at 1 makes way.
    CefRefPtr<ScaledClient> scaled = new ScaledClient;
    CefRefPtr<CefBrowser> sharp = OpenBrowser(scaled, "data:text/html,sharp");
    ASSERT_TRUE(sharp);
    EXPECT_TRUE(scaled->WaitFor("load-end 0 data:text/html,sharp"));
    EXPECT_EQ(Impl(sharp)->chromium_scale_factor(), 2.0f);
    const pid_t global = Impl(sharp)->devtools()->pid();
    EXPECT_NE(global, early);
    EXPECT_TRUE(GoneWithin20s(early));
    EXPECT_TRUE(Listening(port)) << "the debugging port went to the new one";

    // Once a browser took it, the factor stays; a browser of 1 is zoomed.
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> plain = OpenBrowser(client, "data:text/html,plain");
    ASSERT_TRUE(plain);
    EXPECT_EQ(Impl(plain)->devtools()->pid(), global);
    EXPECT_EQ(Impl(plain)->chromium_scale_factor(), 2.0f);

    CefRequestContextSettings settings;
    CefString(&settings.cache_path) = root.filePath("own").toStdString();
    CefRefPtr<CefBrowser> own = OpenBrowser(
        client, "data:text/html,own", CefRequestContext::CreateContext(settings, nullptr));
    ASSERT_TRUE(own);
    EXPECT_TRUE(client->WaitFor("load-end 0 data:text/html,own"));
    EXPECT_NE(Impl(own)->devtools()->pid(), global);
    EXPECT_TRUE(QDir(root.filePath("own")).exists("Default"));
    EXPECT_EQ(kill(global, 0), 0) << "the global Chromium is in use and stays";
    sharp->GetHost()->CloseBrowser(true);
    EXPECT_TRUE(scaled->WaitForOpenBrowsers(0));
    sharp = plain = own = nullptr;
    StopEngine(client);
  });
}

TEST(EarlyStart, UnusedEarlyChromiumMakesWayForTheFirstCachePath) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    QTemporaryDir root;
    ASSERT_TRUE(StartEngine([&](CefSettings& settings) {
      CefString(&settings.root_cache_path) = root.path().toStdString();
      CefString(&settings.cache_path) = root.filePath("global").toStdString();
    }));
    CefRequestContextSettings settings;
    CefString(&settings.cache_path) = root.filePath("own").toStdString();
    CefRefPtr<TestClient> client = new TestClient;
    // Asked for while the early Chromium may still be starting.
    CefRefPtr<CefBrowser> own = OpenBrowser(
        client, "data:text/html,own", CefRequestContext::CreateContext(settings, nullptr));
    ASSERT_TRUE(own);
    EXPECT_TRUE(client->WaitFor("load-end 0 data:text/html,own"));
    EXPECT_TRUE(QDir(root.filePath("own")).exists("Default"));
    EXPECT_FALSE(GlobalChromium()->session()) << "the unused one was stopped";

    CefRefPtr<CefBrowser> global = OpenBrowser(client, "data:text/html,global");
    ASSERT_TRUE(global) << "and starts again when wanted";
    EXPECT_TRUE(client->WaitFor("load-end 0 data:text/html,global"));
    EXPECT_NE(Impl(global)->devtools()->pid(), Impl(own)->devtools()->pid());
    own = global = nullptr;
    StopEngine(client);
  });
}

TEST(EarlyStart, EngineThreadRunsOnWhileChromiumStarts) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    // A Chromium that takes four seconds to come up.
    QTemporaryDir dir;
    const QString slow = dir.filePath("slow-chromium");
    QFile script(slow);
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    // The engine asks a configured Chromium for X windows when it runs the
    // X frame source: then the full one must come up behind the delay.
    const QByteArray headless =
        QByteArray::fromStdString(cefengine::ChromiumLocator::ForThisSystem().Locate(""));
    script.write("#!/bin/sh\nsleep 4\ncase \" $* \" in\n"
                 "  *' --ozone-platform=x11 '*) exec /usr/lib/chromium/chromium \"$@\" ;;\n"
                 "  *) exec " + headless + " \"$@\" ;;\nesac\n");
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    ASSERT_TRUE(StartEngine([&](CefSettings& settings) {
      CefString(&settings.browser_subprocess_path) = slow.toStdString();
    }));

    CefRefPtr<TestClient> client = new TestClient;
    CefWindowInfo window_info;
    window_info.SetAsWindowless(kNullWindowHandle);
    const auto created = std::chrono::steady_clock::now();
    ASSERT_TRUE(CefBrowserHost::CreateBrowser(window_info, client, "data:text/html,slow",
                                              CefBrowserSettings(), nullptr, nullptr));
    cef_runtime_test::Signal ran;
    const auto posted = std::chrono::steady_clock::now();
    ASSERT_TRUE(CefPostTask(TID_UI, base::BindOnce([](cef_runtime_test::Signal* signal) {
                                      signal->Notify();
                                    },
                                    base::Unretained(&ran))));
    ASSERT_TRUE(ran.Wait());
    EXPECT_LT(std::chrono::steady_clock::now() - posted, std::chrono::seconds(3))
        << "the task ran before Chromium was up";

    // The client has the browser, with its main frame, before Chromium is
    // up; what it asks meanwhile is done once the page is there.
    ASSERT_TRUE(client->WaitFor("created "));
    EXPECT_LT(std::chrono::steady_clock::now() - created, std::chrono::seconds(3))
        << "OnAfterCreated waited for Chromium";
    const Events events = client->events();
    CefRefPtr<CefBrowser> browser =
        client->browser_by_id(std::stoi(events[TestClient::Find(events, "created ")].substr(8)));
    ASSERT_TRUE(browser);
    CefRefPtr<CefFrame> main = browser->GetMainFrame();
    ASSERT_TRUE(main);
    EXPECT_TRUE(main->IsMain());
    EXPECT_FALSE(Impl(browser)->devtools()) << "the page came before Chromium";
    main->LoadURL("data:text/html,later");
    EXPECT_TRUE(client->WaitFor("load-end 0 data:text/html,later"));
    EXPECT_EQ(browser->GetMainFrame()->GetURL().ToString(), "data:text/html,later");
    browser = nullptr;
    main = nullptr;
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
