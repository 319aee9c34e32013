// A renderer that stops answering: commands end by their deadline, the client
// is asked to wait or terminate, and a reload brings the page back.

#include <signal.h>

#include <atomic>
#include <chrono>
#include <thread>

#include <QFile>

#include "browser_test_support.h"
#include "include/cef_unresponsive_process_callback.h"
#include "libcef/browser/hang_monitor.h"

namespace engine_browser_test {
namespace {

constexpr char kLoop[] = "while (true) {}";

// Keeps the callback of each report for the test to answer.
class HangClient : public TestClient {
 public:
  bool OnRenderProcessUnresponsive(CefRefPtr<CefBrowser> browser,
                                   CefRefPtr<CefUnresponsiveProcessCallback> callback) override {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      callback_ = callback;
    }
    Record("unresponsive " + std::to_string(browser->GetHost()->IsRenderProcessUnresponsive()));
    return true;
  }
  void OnRenderProcessResponsive(CefRefPtr<CefBrowser> browser) override {
    Record("responsive");
  }
  CefRefPtr<CefUnresponsiveProcessCallback> callback() {
    std::lock_guard<std::mutex> lock(mutex_);
    return callback_;
  }
  // It holds the browser.
  void DropCallback() {
    std::lock_guard<std::mutex> lock(mutex_);
    callback_ = nullptr;
  }

 private:
  std::mutex mutex_;
  CefRefPtr<CefUnresponsiveProcessCallback> callback_;
};

// Without a request handler nobody could decide.
class NoRequestHandlerClient : public TestClient {
 public:
  CefRefPtr<CefRequestHandler> GetRequestHandler() override { return nullptr; }
};

void ShortDeadlines() {
  cefengine::HangMonitor::SetDeadlines(std::chrono::milliseconds(1500),
                                       std::chrono::milliseconds(1500));
}

// Polls |done| for 20 s at most.
bool Eventually(const std::function<bool()>& done) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!done()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

TEST(Unresponsive, ReportedAskedToWaitThenTerminatedAndReloaded) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ShortDeadlines();
    ASSERT_TRUE(StartEngine());
    CefRefPtr<HangClient> client = new HangClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, "data:text/html,busy");
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("load-end"));

    // A script that answers late is no hang: the page answers the probe.
    size_t before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript(
        "const end = Date.now() + 2000; while (Date.now() < end) {} console.log('slow done')", "", 0);
    ASSERT_TRUE(client->WaitFor("console 2 slow done", before));
    browser->GetMainFrame()->ExecuteJavaScript("console.log('after slow')", "", 0);
    ASSERT_TRUE(client->WaitFor("console 2 after slow", before));
    EXPECT_EQ(TestClient::Find(client->events(), "unresponsive", before), -1);

    // A loop for ever: any command then misses its deadline and the client is asked.
    before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript(kLoop, "", 0);
    browser->GetMainFrame()->ExecuteJavaScript("console.log('never')", "", 0);
    // Input keeps coming from the host meanwhile, far more than a page can queue.
    CefMouseEvent move;
    for (int i = 0; i < 6000; ++i) {
      move.x = i % 800;
      browser->GetHost()->SendMouseMoveEvent(move, false);
    }
    ASSERT_TRUE(client->WaitFor("unresponsive 1", before));
    EXPECT_TRUE(browser->GetHost()->IsRenderProcessUnresponsive());

    // Wait: asked again once the next check fails too.
    const size_t reports = client->count();
    client->callback()->Wait();
    ASSERT_TRUE(client->WaitFor("unresponsive 1", reports));

    // Terminate: the renderer is killed, then a reload brings the page back.
    before = client->count();
    client->callback()->Terminate();
    ASSERT_TRUE(client->WaitFor("terminated " + std::to_string(TS_PROCESS_WAS_KILLED), before));
    EXPECT_FALSE(browser->GetHost()->IsRenderProcessUnresponsive());
    EXPECT_TRUE(browser->IsValid());
    browser->Reload();
    ASSERT_TRUE(client->WaitFor("load-end 0 data:text/html,busy", before));
    browser->GetMainFrame()->ExecuteJavaScript("console.log('alive')", "", 0);
    EXPECT_TRUE(client->WaitFor("console 2 alive", before));
    EXPECT_EQ(TestClient::Find(client->events(), "console 2 never"), -1);
    EXPECT_EQ(TestClient::Find(client->events(), "responsive"), -1);
    client->DropCallback();
    browser = nullptr;
    StopEngine(client);
  });
}

// Chromium's renderer processes under this one.
std::vector<int> Renderers() {
  std::vector<int> renderers;
  for (int pid : Descendants()) {
    QFile file(QStringLiteral("/proc/%1/cmdline").arg(pid));
    if (file.open(QIODevice::ReadOnly) && file.readAll().contains("--type=renderer")) {
      renderers.push_back(pid);
    }
  }
  return renderers;
}

TEST(Unresponsive, AStoppedRendererIsReportedAndTerminateStillWorks) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ShortDeadlines();
    ASSERT_TRUE(StartEngine());
    CefRefPtr<HangClient> client = new HangClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, "data:text/html,stopped");
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("load-end"));
    // Stopped, a renderer cannot even crash on request.
    const std::vector<int> stopped = Renderers();
    ASSERT_FALSE(stopped.empty());
    for (int pid : stopped) kill(pid, SIGSTOP);
    size_t before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript("console.log('queued')", "", 0);
    ASSERT_TRUE(client->WaitFor("unresponsive 1", before));
    client->callback()->Terminate();
    const bool terminated =
        client->WaitFor("terminated " + std::to_string(TS_PROCESS_WAS_KILLED), before);
    // Chromium may have put the next page in one of them (its spare).
    for (int pid : stopped) kill(pid, SIGCONT);
    ASSERT_TRUE(terminated);
    EXPECT_TRUE(browser->IsValid());
    before = client->count();
    browser->Reload();
    ASSERT_TRUE(client->WaitFor("load-end 0 data:text/html,stopped", before));
    browser->GetMainFrame()->ExecuteJavaScript("console.log('alive')", "", 0);
    EXPECT_TRUE(client->WaitFor("console 2 alive", before));
    client->DropCallback();
    browser = nullptr;
    StopEngine(client);
  });
}

TEST(Unresponsive, WithoutARequestHandlerTheRendererIsTerminated) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ShortDeadlines();
    ASSERT_TRUE(StartEngine());
    CefRefPtr<NoRequestHandlerClient> client = new NoRequestHandlerClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, "data:text/html,alone");
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("load-end"));
    const size_t before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript(kLoop, "", 0);
    browser->GetMainFrame()->ExecuteJavaScript("1", "", 0);
    // Hung, then killed: the flag comes and goes, and a reload works.
    // With nobody to ask, the flag may be up for only as long as the kill takes: watch it without
    // sleeping.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    bool seen = false;
    while (!seen && std::chrono::steady_clock::now() < end) {
      seen = browser->GetHost()->IsRenderProcessUnresponsive();
      std::this_thread::yield();
    }
    ASSERT_TRUE(seen);
    ASSERT_TRUE(Eventually([&] { return !browser->GetHost()->IsRenderProcessUnresponsive(); }));
    browser->Reload();
    ASSERT_TRUE(client->WaitFor("load-end 0 data:text/html,alone", before));
    browser->GetMainFrame()->ExecuteJavaScript("console.log('alive')", "", 0);
    EXPECT_TRUE(client->WaitFor("console 2 alive", before));
    browser = nullptr;
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
