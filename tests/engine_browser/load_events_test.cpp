// Loads, titles, addresses and console messages of real pages, as CEF's
// handlers report them.

#include <QTemporaryDir>
#include <QUrl>

#include "browser_test_support.h"

namespace engine_browser_test {
namespace {

TEST(BrowserLoads, DataPageReportsLoadTitleAddressAndConsoleInOrder) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<TestClient> client = new TestClient;
    const std::string url =
        "data:text/html,<title>First</title><script>\nconsole.warn('hello', 42);"
        "setTimeout(() => document.title = 'Second', 50)</script>";
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, url);
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("title Second"));
    ASSERT_TRUE(client->WaitFor("loading 0"));
    const Events events = client->events();
    for (const auto& e : events) fprintf(stderr, "EV %s\n", e.c_str());
    SUCCEED();
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
