// OnBeforeBrowse for every navigation of every frame, redirects and links of
// unknown schemes included, and what a cancelled navigation leaves behind.

#include <algorithm>

#include "network_test_support.h"

namespace engine_network_test {
namespace {

const QByteArray kLinksPage =
    "<iframe src='/child.html'></iframe>"
    "<a id=redirect href='/redirect?to=/after.html'>r</a>"
    "<a id=blocked href='/blocked.html'>b</a>"
    "<a id=command href='torvex:doThing'>t</a>"
    "<a id=unknown href='torvex:other'>u</a>";

void Click(CefRefPtr<CefBrowser> browser, const std::string& id) {
  browser->GetMainFrame()->ExecuteJavaScript(
      "document.getElementById('" + id + "').click()", "", 0);
}

bool Has(const Events& events, const std::string& event) {
  return std::find(events.begin(), events.end(), event) != events.end();
}

TEST(NavigationGate, AsksForEveryFrameAndEveryRedirect) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    HttpServer server;
    ASSERT_TRUE(server.running());
    server.AddFile("links.html", kLinksPage);
    server.AddFile("child.html", "<title>child</title>");
    server.AddFile("after.html", "<title>after</title>");
    ASSERT_TRUE(StartEngine());
    CefRefPtr<NetworkClient> client = new NetworkClient;
    const std::string page = server.Url("/links.html");
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, page);
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->recorder.WaitFor("load-end 200 " + page));
    ASSERT_TRUE(client->recorder.WaitFor("browse " + server.Url("/child.html")));

    Click(browser, "redirect");
    const std::string after = server.Url("/after.html");
    ASSERT_TRUE(client->recorder.WaitFor("load-end 200 " + after));
    const Events events = client->recorder.Matching("browse ");
    // Requests handed to OnBeforeBrowse are read-only; the engine's own
    // navigation is explicit (1), a sub-frame's automatic (3), a link's 0.
    EXPECT_TRUE(Has(events, "browse " + page + " main=1 redirect=0 rt=0 tt=1 ro=1"));
    EXPECT_TRUE(Has(events, "browse " + server.Url("/child.html") +
                                " main=0 redirect=0 rt=1 tt=3 ro=1"));
    EXPECT_TRUE(Has(events, "browse " + server.Url("/redirect?to=/after.html") +
                                " main=1 redirect=0 rt=0 tt=0 ro=1"));
    // The server's redirect carries TT_SERVER_REDIRECT_FLAG.
    EXPECT_TRUE(Has(events, "browse " + after + " main=1 redirect=1 rt=0 tt=" +
                                std::to_string(TT_LINK | TT_SERVER_REDIRECT_FLAG) +
                                " ro=1"));
    EXPECT_TRUE(client->recorder.Matching("load-error").empty());
    StopEngine(client);
  });
}

TEST(NavigationGate, CancelledNavigationsLeaveThePageAndReportAborted) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    HttpServer server;
    ASSERT_TRUE(server.running());
    server.AddFile("links.html", kLinksPage);
    server.AddFile("child.html", "<title>child</title>");
    server.AddFile("blocked.html", "<title>blocked</title>");
    ASSERT_TRUE(StartEngine());
    CefRefPtr<NetworkClient> client = new NetworkClient;
    client->cancel_browse = [](const std::string& url) {
      return url.find("blocked") != std::string::npos ||
             url.find("child") != std::string::npos || url == "torvex:doThing";
    };
    const std::string page = server.Url("/links.html");
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, page);
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->recorder.WaitFor("load-end 200 " + page));
    // A refused sub-frame ends in ERR_ABORTED for that frame.
    ASSERT_TRUE(client->recorder.WaitFor("load-error -3 " + server.Url("/child.html")));

    Click(browser, "blocked");
    ASSERT_TRUE(client->recorder.WaitFor("load-error -3 " + server.Url("/blocked.html")));
    // An unknown scheme never loads: cancelled it is aborted, let through it
    // fails as unknown.
    Click(browser, "command");
    ASSERT_TRUE(client->recorder.WaitFor("load-error -3 torvex:doThing"));
    Click(browser, "unknown");
    ASSERT_TRUE(client->recorder.WaitFor("load-error -302 torvex:other"));
    // A data: address the engine loads is cancelled too.
    browser->GetMainFrame()->LoadURL("data:text/html,<script>console.log('blocked data ran')</script>");
    ASSERT_TRUE(client->recorder.WaitFor("load-error -3 data:text/html"));

    browser->GetMainFrame()->ExecuteJavaScript("console.log('still ' + location.href)", "", 0);
    ASSERT_TRUE(client->recorder.WaitFor("console still " + page));
    const Events events = client->recorder.events();
    EXPECT_TRUE(Has(events, "browse torvex:doThing main=1 redirect=0 rt=0 tt=0 ro=1"));
    EXPECT_TRUE(client->recorder.Matching("load-start " + server.Url("/blocked")).empty());
    EXPECT_FALSE(Has(events, "console blocked data ran"));
    // Each refusal is told once.
    EXPECT_EQ(client->recorder.Matching("load-error").size(), 5u);
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_network_test
