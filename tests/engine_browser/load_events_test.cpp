// Loads, titles, addresses, console messages and history of real pages, as
// CEF's handlers report them.

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include "browser_test_support.h"

namespace engine_browser_test {
namespace {

// The events that start with one of |prefixes|, in order.
Events Only(const Events& events, const std::vector<std::string>& prefixes) {
  Events kept;
  for (const std::string& event : events) {
    for (const std::string& prefix : prefixes) {
      if (event.rfind(prefix, 0) == 0) {
        kept.push_back(event);
        break;
      }
    }
  }
  return kept;
}

TEST(BrowserLoads, DataAndFilePagesReportLoadsTitlesAddressesAndConsole) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<TestClient> client = new TestClient;
    const std::string url =
        "data:text/html,<title>First</title><script>console.warn('hello', 42, 'x%25dy', 7);"
        "setTimeout(() => document.title = 'Second', 50)</script>";
    const std::string& shown_url = url;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, url);
    ASSERT_TRUE(browser);
    EXPECT_EQ(browser->GetIdentifier(), 1);
    EXPECT_FALSE(browser->IsPopup());
    ASSERT_TRUE(client->WaitFor("title Second"));
    ASSERT_TRUE(client->WaitFor("loading 000"));
    Events events = client->events();
    EXPECT_EQ(Only(events, {"created", "loading", "load-", "address"}),
              (Events{"created 1", "loading 100", "load-start 1 " + shown_url,
                      "address " + shown_url, "load-end 0 " + shown_url, "loading 000"}));
    EXPECT_EQ(Only(events, {"title"}), (Events{"title " + shown_url, "title First", "title Second"}));
    EXPECT_EQ(Only(events, {"console"}),
              (Events{"console 3 hello 42 x%dy 7 @" + shown_url + ":1"}));
    EXPECT_FALSE(browser->IsLoading());
    EXPECT_TRUE(browser->HasDocument());
    EXPECT_FALSE(browser->CanGoBack()) << "the blank start page is no history";
    ASSERT_TRUE(browser->GetMainFrame());
    EXPECT_TRUE(browser->GetMainFrame()->IsMain());
    EXPECT_EQ(browser->GetMainFrame()->GetURL().ToString(), shown_url);
    EXPECT_EQ(browser->GetFrameCount(), 1u);

    // A file page, with an uncaught exception on its third line.
    QTemporaryDir dir;
    const QString path = dir.filePath("page.html");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<title>File</title>\n<script>\n  throw new Error('boom');\n</script>");
    file.close();
    const std::string file_url = QUrl::fromLocalFile(path).toString().toStdString();
    const size_t before = client->count();
    browser->GetMainFrame()->LoadURL(file_url);
    ASSERT_TRUE(client->WaitFor("loading 0", before));
    events = client->events();
    events.erase(events.begin(), events.begin() + before);
    EXPECT_EQ(Only(events, {"load-", "address", "loading", "console"}),
              (Events{"loading 100", "load-start 1 " + file_url, "address " + file_url,
                      "console 4 Uncaught Error: boom @" + file_url + ":3",
                      "load-end 0 " + file_url, "loading 010"}));
    EXPECT_TRUE(client->WaitFor("title File", before));
    EXPECT_TRUE(browser->CanGoBack());
    StopEngine(client);
  });
}

TEST(BrowserLoads, HttpStatusErrorsLanguagesAndHistory) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    HttpServer server;
    ASSERT_TRUE(server.running());
    ASSERT_TRUE(StartEngine());
    CefRequestContextSettings settings;
    CefString(&settings.accept_language_list) = "de-CH,fr";
    CefRefPtr<CefRequestContext> context = CefRequestContext::CreateContext(settings, nullptr);
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, server.Url("/lang"), context);
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("load-end 200 " + server.Url("/lang")));
    EXPECT_TRUE(client->WaitFor("title de-CH,fr;q=0.9"));

    size_t before = client->count();
    browser->GetMainFrame()->LoadURL(server.Url("/status/404"));
    EXPECT_TRUE(client->WaitFor("load-end 404 " + server.Url("/status/404"), before));

    // History: /lang, /status/404.
    EXPECT_TRUE(browser->CanGoBack());
    EXPECT_FALSE(browser->CanGoForward());
    before = client->count();
    browser->GoBack();
    ASSERT_TRUE(client->WaitFor("load-end 200 " + server.Url("/lang"), before));
    EXPECT_GE(TestClient::Find(client->events(), "address " + server.Url("/lang"), before), 0);
    EXPECT_TRUE(client->WaitFor("loading 001", before));
    EXPECT_FALSE(browser->CanGoBack());
    EXPECT_TRUE(browser->CanGoForward());
    before = client->count();
    browser->GoForward();
    EXPECT_TRUE(client->WaitFor("load-end 404 " + server.Url("/status/404"), before));
    EXPECT_TRUE(client->WaitFor("loading 010", before));

    const std::string refused = "http://127.0.0.1:" + std::to_string(UnusedPort()) + "/";
    before = client->count();
    browser->GetMainFrame()->LoadURL(refused);
    ASSERT_TRUE(client->WaitFor("load-error", before));
    EXPECT_EQ(client->events()[TestClient::Find(client->events(), "load-error", before)],
              "load-error -102 ERR_CONNECTION_REFUSED " + refused);
    ASSERT_TRUE(client->WaitFor("loading 0", before));
    EXPECT_EQ(TestClient::Find(client->events(), "load-end", before), -1)
        << "an error page is no load";

    before = client->count();
    browser->GetMainFrame()->LoadURL("brovia-unknown:thing");
    ASSERT_TRUE(client->WaitFor("load-error", before));
    EXPECT_EQ(client->events()[TestClient::Find(client->events(), "load-error", before)],
              "load-error -302 ERR_UNKNOWN_URL_SCHEME brovia-unknown:thing");
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
