// alert, confirm, prompt and beforeunload through CefJSDialogHandler, and
// closes that ask the page first.

#include <thread>

#include "browser_test_support.h"
#include "include/base/cef_callback.h"
#include "include/wrapper/cef_closure_task.h"

namespace engine_browser_test {
namespace {

// Answers each dialog with |accept| from another thread, or holds a
// beforeunload's callback.
class DialogClient : public TestClient, public CefJSDialogHandler {
 public:
  CefRefPtr<CefJSDialogHandler> GetJSDialogHandler() override { return handles ? this : nullptr; }
  bool OnJSDialog(CefRefPtr<CefBrowser>, const CefString&, JSDialogType type,
                  const CefString& message, const CefString& default_prompt,
                  CefRefPtr<CefJSDialogCallback> callback, bool&) override {
    Record("js-dialog " + std::to_string(type) + " " + message.ToString() + " " +
           default_prompt.ToString());
    AnswerLater(callback);
    return true;
  }
  bool OnBeforeUnloadDialog(CefRefPtr<CefBrowser>, const CefString&, bool is_reload,
                            CefRefPtr<CefJSDialogCallback> callback) override {
    Record("before-unload " + std::to_string(is_reload));
    if (hold) {
      held = callback;
    } else {
      AnswerLater(callback);
    }
    return true;
  }
  void OnResetDialogState(CefRefPtr<CefBrowser>) override { Record("reset-dialog"); }
  void OnDialogClosed(CefRefPtr<CefBrowser>) override { Record("dialog-closed"); }

  bool handles = true, accept = true, hold = false;
  CefRefPtr<CefJSDialogCallback> held;

 private:
  void AnswerLater(CefRefPtr<CefJSDialogCallback> callback) {
    CefPostDelayedTask(TID_IO,
                       base::BindOnce(
                           [](CefRefPtr<CefJSDialogCallback> callback, bool accept) {
                             callback->Continue(accept, "typed");
                             callback->Continue(!accept, "again");  // ignored
                           },
                           callback, accept),
                       30);
  }
};

constexpr char kPage[] =
    "data:text/html,<body style='height:600px'><script>"
    "function ask() {"
    "  alert('hi'); const c = confirm('sure?');"
    "  console.log('answers', c, prompt('name?', 'def'));"
    "}"
    "onmousedown = () => console.log('down');"
    "onbeforeunload = e => { e.preventDefault(); e.returnValue = ''; };</script>";

// kPage, clicked: beforeunload dialogs need the user's activation.
CefRefPtr<CefBrowser> OpenClicked(CefRefPtr<DialogClient> client) {
  const size_t before = client->count();
  CefRefPtr<CefBrowser> browser = OpenBrowser(client, kPage);
  if (!browser || !client->WaitFor("load-end", before)) return nullptr;
  CefMouseEvent mouse;
  mouse.x = mouse.y = 50;
  browser->GetHost()->SendMouseClickEvent(mouse, MBT_LEFT, false, 1);
  browser->GetHost()->SendMouseClickEvent(mouse, MBT_LEFT, true, 1);
  return client->WaitFor("console 2 down", before) ? browser : nullptr;
}

TEST(BrowserDialogs, ScriptDialogsAndBeforeUnloadAreTheClients) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<DialogClient> client = new DialogClient;
    CefRefPtr<CefBrowser> browser = OpenClicked(client);
    ASSERT_TRUE(browser);

    size_t before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript("ask()", "", 0);
    ASSERT_TRUE(client->WaitFor("console 2 answers true typed", before));
    Events events = client->events();
    EXPECT_EQ(Events(events.begin() + before, events.end() - 1),
              (Events{"js-dialog 0 hi ", "dialog-closed", "reset-dialog", "js-dialog 1 sure? ",
                      "dialog-closed", "reset-dialog", "js-dialog 2 name? def", "dialog-closed",
                      "reset-dialog"}));
    client->accept = false;
    browser->GetMainFrame()->ExecuteJavaScript("ask()", "", 0);
    EXPECT_TRUE(client->WaitFor("console 2 answers false null", before));
    // Without a handler the page goes on as if each was cancelled.
    client->handles = false;
    before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript("ask()", "", 0);
    EXPECT_TRUE(client->WaitFor("console 2 answers false null", before));
    EXPECT_EQ(TestClient::Find(client->events(), "js-dialog", before), -1);
    client->handles = true;

    // Denied: the reload and the close are called off.
    before = client->count();
    browser->Reload();
    ASSERT_TRUE(client->WaitFor("before-unload 1", before));
    ASSERT_TRUE(client->WaitFor("dialog-closed", before));
    browser->GetHost()->CloseBrowser(false);
    ASSERT_TRUE(client->WaitFor("before-unload 0", before));
    browser->GetMainFrame()->ExecuteJavaScript("console.log('still here')", "", 0);
    ASSERT_TRUE(client->WaitFor("console 2 still here", before));
    EXPECT_EQ(TestClient::Find(client->events(), "do-close", before), -1);

    // Allowed: DoClose, then OnBeforeClose.
    client->accept = true;
    before = client->count();
    browser->GetHost()->CloseBrowser(false);
    ASSERT_TRUE(client->WaitFor("before-close 1", before));
    events = client->events();
    const int asked = TestClient::Find(events, "before-unload 0", before);
    EXPECT_GE(asked, 0);
    EXPECT_LT(asked, TestClient::Find(events, "do-close 1", before));

    // Never answered: open past the engine's own timeout, until forced.
    browser = OpenClicked(client);
    ASSERT_TRUE(browser);
    client->hold = true;
    before = client->count();
    browser->GetHost()->CloseBrowser(false);
    ASSERT_TRUE(client->WaitFor("before-unload 0", before));
    std::this_thread::sleep_for(std::chrono::milliseconds(3500));
    EXPECT_TRUE(browser->IsValid());
    browser->GetHost()->CloseBrowser(true);
    ASSERT_TRUE(client->WaitFor("before-close 2", before));
    EXPECT_GE(TestClient::Find(client->events(), "reset-dialog", before), 0);
    client->held->Continue(true, "");  // too late: ignored
    client->held = nullptr;

    // Forced closes never ask.
    browser = OpenClicked(client);
    ASSERT_TRUE(browser);
    before = client->count();
    browser->GetHost()->CloseBrowser(true);
    ASSERT_TRUE(client->WaitFor("before-close 3", before));
    EXPECT_EQ(TestClient::Find(client->events(), "before-unload", before), -1);
    EXPECT_EQ(client->off_ui_thread(), 0);
    browser = nullptr;
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
