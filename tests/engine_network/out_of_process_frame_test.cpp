// A cross-site frame, which Chromium runs in a renderer of its own: its
// navigations still pass the gate, scripts still run in it, and it is still
// one of the browser's frames.

#include <algorithm>

#include <QJsonArray>

#include "libcef/browser/browser_impl.h"
#include "libcef/devtools/devtools_session.h"
#include "network_test_support.h"

namespace engine_network_test {
namespace {

// The same server under another name: another site to Chromium.
std::string OtherSite(const std::string& url) {
  std::string other = url;
  other.replace(other.find("127.0.0.1"), 9, "localhost");
  return other;
}

// Addresses of the frame targets Chromium runs apart from the page.
std::vector<std::string> FrameTargets(CefRefPtr<CefBrowser> browser) {
  auto* impl = static_cast<cefengine::BrowserImpl*>(browser.get());
  const cefengine::DevToolsReply reply = impl->devtools()->sendCommandSync(
      "Target.getTargets", {}, QString(), std::chrono::seconds(10));
  std::vector<std::string> urls;
  for (const QJsonValue& info : reply.result.value("targetInfos").toArray()) {
    if (info.toObject().value("type").toString() == "iframe") {
      urls.push_back(info.toObject().value("url").toString().toStdString());
    }
  }
  return urls;
}

CefRefPtr<CefFrame> FrameAt(CefRefPtr<CefBrowser> browser, const std::string& url) {
  std::vector<CefString> ids;
  browser->GetFrameIdentifiers(ids);
  for (const CefString& id : ids) {
    CefRefPtr<CefFrame> frame = browser->GetFrameByIdentifier(id);
    if (frame && frame->GetURL().ToString() == url) return frame;
  }
  return nullptr;
}

TEST(OutOfProcessFrames, CrossSiteFrameIsGatedScriptedAndFramed) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    HttpServer top;
    HttpServer other;
    ASSERT_TRUE(top.running() && other.running());
    const std::string child = OtherSite(other.Url("/child.html"));
    other.AddFile("child.html", "<script>console.log('child ran')</script>");
    other.AddFile("next.html", "<script>console.log('next ran')</script>");
    other.AddFile("blocked.html", "<script>console.log('blocked ran')</script>");
    top.AddFile("main.html", QByteArray("<iframe src='") + child.c_str() + "'></iframe>");
    ASSERT_TRUE(StartEngine());
    CefRefPtr<NetworkClient> client = new NetworkClient;
    client->cancel_browse = [](const std::string& url) {
      return url.find("blocked") != std::string::npos;
    };
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, top.Url("/main.html"));
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->recorder.WaitFor("console child ran"));
    ASSERT_TRUE(client->recorder.WaitFor("load-end 200 " + child));
    // Chromium keeps site isolation: the frame is a target of its own.
    EXPECT_EQ(FrameTargets(browser), std::vector<std::string>{child});

    CefRefPtr<CefFrame> frame = FrameAt(browser, child);
    ASSERT_TRUE(frame);
    EXPECT_FALSE(frame->IsMain());
    CefRefPtr<CefFrame> parent = frame->GetParent();
    ASSERT_TRUE(parent);
    EXPECT_TRUE(parent->IsMain());

    // Scripts run in the frame's own document.
    frame->ExecuteJavaScript("console.log('in ' + location.href)", "", 0);
    EXPECT_TRUE(client->recorder.WaitFor("console in " + child));

    // A script dialog of the frame is answered in the frame's renderer, which
    // then goes on.
    frame->ExecuteJavaScript("alert('hi'); console.log('after alert')", "", 0);
    EXPECT_TRUE(client->recorder.WaitFor("console after alert"));

    // Its own navigations pass the gate, which can stop them.
    const std::string blocked = OtherSite(other.Url("/blocked.html"));
    frame->ExecuteJavaScript("location.href = 'blocked.html'", "", 0);
    ASSERT_TRUE(client->recorder.WaitFor("browse " + blocked + " main=0"));
    const std::string next = OtherSite(other.Url("/next.html"));
    frame->ExecuteJavaScript("location.href = 'next.html'", "", 0);
    EXPECT_TRUE(client->recorder.WaitFor("console next ran"));
    EXPECT_TRUE(client->recorder.WaitFor("browse " + next + " main=0"));
    EXPECT_TRUE(client->recorder.Matching("console blocked ran").empty());
    EXPECT_TRUE(client->recorder.WaitFor("load-end 200 " + next));
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_network_test
