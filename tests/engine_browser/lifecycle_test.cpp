// Creating, popups, closing and the ends of renderers and of Chromium.

#include <signal.h>

#include <algorithm>
#include <thread>

#include "browser_test_support.h"
#include "include/base/cef_callback.h"
#include "include/wrapper/cef_closure_task.h"
#include "libcef/browser/browser_impl.h"

namespace engine_browser_test {
namespace {

// Page targets Chromium has open, asked behind the engine's back.
int OpenPages(CefRefPtr<CefBrowser> browser) {
  cefengine::DevToolsSession* session = Impl(browser)->devtools();
  const cefengine::DevToolsReply reply = session->sendCommandSync(
      "Target.getTargets", {}, QString(), std::chrono::seconds(10));
  int pages = 0;
  for (const QJsonValue& info : reply.result.value("targetInfos").toArray()) {
    // A full Chromium (the X frame source) keeps the engine's launcher page besides.
    pages += info.toObject().value("type").toString() == "page" &&
             info.toObject().value("url").toString() != "data:text/html,<title>brovia</title>";
  }
  return pages;
}

TEST(BrowserLifecycle, ArgumentsThreadsAndSyncCreation) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    CefRefPtr<TestClient> client = new TestClient;
    CefWindowInfo window_info;
    window_info.SetAsWindowless(kNullWindowHandle);
    EXPECT_FALSE(CefBrowserHost::CreateBrowser(window_info, client, "about:blank",
                                               CefBrowserSettings(), nullptr, nullptr))
        << "no engine yet";
    ASSERT_TRUE(StartEngine());
    EXPECT_FALSE(CefBrowserHost::CreateBrowser(window_info, nullptr, "about:blank",
                                               CefBrowserSettings(), nullptr, nullptr));
    EXPECT_FALSE(CefBrowserHost::CreateBrowserSync(window_info, client, "about:blank",
                                                   CefBrowserSettings(), nullptr, nullptr))
        << "only on the UI thread";

    struct Sync {
      CefRefPtr<TestClient> client;
      CefRefPtr<CefBrowser> browser;
      bool created_before_return = false;
      cef_runtime_test::Signal done;
    } sync;
    sync.client = client;
    ASSERT_TRUE(CefPostTask(TID_UI, base::BindOnce(
                                        [](Sync* sync) {
                                          CefWindowInfo info;
                                          info.SetAsWindowless(kNullWindowHandle);
                                          sync->browser = CefBrowserHost::CreateBrowserSync(
                                              info, sync->client, "data:text/html,sync",
                                              CefBrowserSettings(), nullptr, nullptr);
                                          sync->created_before_return =
                                              TestClient::Find(sync->client->events(), "created") >= 0;
                                          sync->done.Notify();
                                        },
                                        base::Unretained(&sync))));
    ASSERT_TRUE(sync.done.Wait());
    ASSERT_TRUE(sync.browser);
    EXPECT_TRUE(sync.created_before_return);
    EXPECT_TRUE(client->WaitFor("load-end 0 data:text/html,sync"));
    EXPECT_EQ(sync.browser->GetMainFrame()->GetIdentifier().ToString(),
              Impl(sync.browser)->target_id().toStdString());

    CefRefPtr<CefBrowser> second = OpenBrowser(client, "");
    ASSERT_TRUE(second);
    EXPECT_EQ(second->GetIdentifier(), sync.browser->GetIdentifier() + 1);
    EXPECT_FALSE(second->HasDocument());
    sync.browser = nullptr;
    second = nullptr;
    StopEngine(client);
  });
}

TEST(BrowserLifecycle, PopupsAreAskedForAndCancelledOrCreated) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    HttpServer server;
    ASSERT_TRUE(server.running());
    ASSERT_TRUE(StartEngine());
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, server.Url("/opener"));
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("load-end 200"));

    size_t before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript(
        "console.log(String(window.open('" + server.Url("/first") + "', 'pop', 'width=300')))",
        "", 0);
    ASSERT_TRUE(client->WaitFor("console", before));
    const Events events = client->events();
    EXPECT_GE(TestClient::Find(events, "popup " + server.Url("/first") + " pop 5 300", before), 0);
    EXPECT_EQ(TestClient::Find(events, "created-popup", before), -1);
    int pages = OpenPages(browser);
    for (int attempt = 0; attempt < 100 && pages != 1; ++attempt) {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      pages = OpenPages(browser);
    }
    EXPECT_EQ(pages, 1) << "the cancelled popup's page is closed";

    client->cancel_popups = false;
    before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript("window.open('" + server.Url("/second") + "')",
                                               "", 0);
    ASSERT_TRUE(client->WaitFor("created-popup 2", before));
    EXPECT_GE(TestClient::Find(client->events(), "popup " + server.Url("/second") + "  3 0",
                               before),
              0);
    ASSERT_TRUE(client->WaitFor("load-end 200 " + server.Url("/second"), before));
    CefRefPtr<CefBrowser> popup = client->browser(browser);
    ASSERT_TRUE(popup);
    EXPECT_TRUE(popup->IsPopup());
    EXPECT_EQ(popup->GetMainFrame()->GetURL().ToString(), server.Url("/second"));

    // A popup closing itself goes through the close sequence.
    before = client->count();
    popup->GetMainFrame()->ExecuteJavaScript("window.close()", "", 0);
    EXPECT_TRUE(client->WaitFor("before-close 2", before));
    EXPECT_GE(TestClient::Find(client->events(), "do-close 2", before), 0);
    EXPECT_FALSE(popup->IsValid());
    popup = nullptr;
    browser = nullptr;
    StopEngine(client);
  });
}

TEST(BrowserLifecycle, CloseCrashAndChromiumDeath) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, "data:text/html,<title>one</title>");
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("load-end"));

    // A renderer crash is reported; the browser lives on and reloads.
    size_t before = client->count();
    Impl(browser)->SendPageCommand("Page.crash", {});
    ASSERT_TRUE(client->WaitFor("terminated", before));
    EXPECT_EQ(client->events()[TestClient::Find(client->events(), "terminated", before)],
              "terminated " + std::to_string(TS_PROCESS_CRASHED) + " 0")
        << "or as Chromium reports a crash";
    EXPECT_TRUE(browser->IsValid());
    before = client->count();
    browser->Reload();
    EXPECT_TRUE(client->WaitFor("load-end 0 data:text/html,<title>one</title>", before));

    // CloseBrowser: DoClose, then OnBeforeClose, and the page is gone.
    CefRefPtr<CefBrowser> other = OpenBrowser(client, "data:text/html,two");
    ASSERT_TRUE(other);
    ASSERT_TRUE(client->WaitFor("load-end 0 data:text/html,two"));
    before = client->count();
    other->GetHost()->CloseBrowser(false);
    ASSERT_TRUE(client->WaitFor("before-close 2", before));
    Events events = client->events();
    EXPECT_EQ(TestClient::Find(events, "do-close 2", before) + 1,
              TestClient::Find(events, "before-close 2", before));
    EXPECT_FALSE(other->IsValid());
    other = nullptr;
    StopEngine(client);
  });
}

TEST(BrowserLifecycle, BrowsersOutliveChromiumAndComeBackInANewOne) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, "data:text/html,one");
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("load-end 0 data:text/html,one"));
    CefRefPtr<CefBrowser> other = OpenBrowser(client, "data:text/html,two");
    ASSERT_TRUE(other);
    ASSERT_TRUE(client->WaitFor("load-end 0 data:text/html,two"));
    const CefString old_frame = browser->GetMainFrame()->GetIdentifier();

    // Chromium killed: each browser hears its page was killed, and stays.
    const pid_t pid = Impl(browser)->devtools()->pid();
    size_t before = client->count();
    ASSERT_EQ(kill(pid, SIGKILL), 0);
    ASSERT_TRUE(client->WaitUntil([&](const Events& events) {
      return std::count(events.begin() + before, events.end(),
                        "terminated " + std::to_string(TS_PROCESS_WAS_KILLED) + " 9") == 2;
    }));
    EXPECT_EQ(TestClient::Find(client->events(), "before-close", before), -1);
    EXPECT_TRUE(browser->IsValid());
    EXPECT_TRUE(other->IsValid());
    EXPECT_EQ(client->open_browsers(), 2u);
    // Without a page, commands are no-ops rather than waits.
    browser->GetMainFrame()->ExecuteJavaScript("console.log('lost')", "", 0);
    browser->GetHost()->SetFocus(true);

    // LoadURL brings one back in a new Chromium, with a new main frame.
    before = client->count();
    browser->GetMainFrame()->LoadURL("data:text/html,three");
    ASSERT_TRUE(client->WaitFor("load-end 0 data:text/html,three", before));
    ASSERT_TRUE(Impl(browser)->devtools());
    EXPECT_NE(Impl(browser)->devtools()->pid(), pid);
    EXPECT_NE(browser->GetMainFrame()->GetIdentifier(), old_frame);
    // Reload brings the other back at its address, in the same new Chromium.
    other->Reload();
    ASSERT_TRUE(client->WaitFor("load-end 0 data:text/html,two", before));
    EXPECT_EQ(Impl(other)->devtools()->pid(), Impl(browser)->devtools()->pid());
    // Both answer scripts again, and the lost one never ran.
    browser->GetMainFrame()->ExecuteJavaScript("console.log('back')", "", 0);
    EXPECT_TRUE(client->WaitFor("console 2 back", before));
    EXPECT_EQ(TestClient::Find(client->events(), "console 2 lost"), -1);
    EXPECT_FALSE(browser->GetHost()->IsRenderProcessUnresponsive());
    browser = nullptr;
    other = nullptr;
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
