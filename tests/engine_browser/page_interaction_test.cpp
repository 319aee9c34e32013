// Input, scripts, frames and page content through the browser's host and
// frames, checked inside the page.

#include <atomic>
#include <thread>

#include "browser_test_support.h"
#include "include/cef_string_visitor.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/script_runner.h"

namespace engine_browser_test {
namespace {

// A value of the main frame's script, or null when it failed or timed out.
QJsonValue Evaluate(CefRefPtr<CefBrowser> browser, const std::string& expression) {
  auto result = std::make_shared<std::pair<QJsonValue, cef_runtime_test::Signal>>();
  Impl(browser)->scripts()->Evaluate(QString(), QString::fromStdString(expression),
                          [result](const QJsonValue& value, const QString&) {
                            result->first = value;
                            result->second.Notify();
                          });
  return result->second.Wait() ? result->first : QJsonValue();
}

class Visitor : public CefStringVisitor {
 public:
  void Visit(const CefString& string) override {
    text = string.ToString();
    done.Notify();
  }
  std::string text;
  cef_runtime_test::Signal done;
  IMPLEMENT_REFCOUNTING(Visitor);
};

void Type(CefRefPtr<CefBrowserHost> host, char16_t character, int key_code, uint32_t modifiers) {
  CefKeyEvent event;
  event.modifiers = modifiers;
  event.windows_key_code = key_code;
  event.character = event.unmodified_character = character;
  for (cef_key_event_type_t type : {KEYEVENT_RAWKEYDOWN, KEYEVENT_CHAR, KEYEVENT_KEYUP}) {
    event.type = type;
    if (type == KEYEVENT_CHAR) event.windows_key_code = character;
    host->SendKeyEvent(event);
    event.windows_key_code = key_code;
  }
}

TEST(BrowserPage, KeyboardMouseWheelEditingAndFocusReachThePage) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(
        client,
        "data:text/html,<input id=i style='position:absolute;left:10px;top:10px;width:200px'>"
        "<div style='height:5000px'></div><script>"
        "i.addEventListener('keydown', e => console.log('key', e.key, e.code, e.shiftKey));"
        "i.addEventListener('mousedown', e => console.log('mouse', e.button, e.detail));"
        "</script>");
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("loading 000"));
    CefRefPtr<CefBrowserHost> host = browser->GetHost();
    host->SetFocus(true);

    CefMouseEvent mouse;
    mouse.x = 50;
    mouse.y = 20;
    host->SendMouseMoveEvent(mouse, false);
    host->SendMouseClickEvent(mouse, MBT_LEFT, false, 1);
    host->SendMouseClickEvent(mouse, MBT_LEFT, true, 1);
    EXPECT_TRUE(client->WaitFor("console 2 mouse 0 1"));
    EXPECT_EQ(Evaluate(browser, "document.activeElement.id").toString(), "i");
    EXPECT_TRUE(Evaluate(browser, "document.hasFocus()").toBool());

    Type(host, 'a', 'A', 0);
    Type(host, 'B', 'B', EVENTFLAG_SHIFT_DOWN);
    EXPECT_TRUE(client->WaitFor("console 2 key B KeyB true"));
    EXPECT_GE(TestClient::Find(client->events(), "console 2 key a KeyA false"), 0);
    EXPECT_EQ(Evaluate(browser, "i.value").toString(), "aB");
    // A committed text that replaces a range of the field's text.
    host->ImeCommitText("xy", CefRange(0, 1), 0);
    QString replaced;
    for (int attempt = 0; attempt < 50 && replaced != "xyB"; ++attempt) {
      replaced = Evaluate(browser, "i.value").toString();
      if (replaced != "xyB") std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_EQ(replaced, "xyB");
    Evaluate(browser, "i.value = 'aB'");

    // Input and script reach the page on separate paths: the selection shows up a little later.
    browser->GetMainFrame()->SelectAll();
    QString selection;
    for (int attempt = 0; attempt < 100 && selection != "0,2"; ++attempt) {
      selection = Evaluate(browser, "i.selectionStart + ',' + i.selectionEnd").toString();
      if (selection != "0,2") std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_EQ(selection, "0,2");

    // A negative CEF delta scrolls down, as a wheel turned towards the user.
    host->SendMouseWheelEvent(mouse, 0, -240);
    double scrolled = 0;
    for (int attempt = 0; attempt < 50 && scrolled <= 0; ++attempt) {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      scrolled = Evaluate(browser, "window.scrollY").toDouble();
    }
    EXPECT_GT(scrolled, 0);
    StopEngine(client);
  });
}

TEST(BrowserPage, ScriptsSourceTextAndFrames) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(
        client, "data:text/html,<p>Hello page</p><iframe name=child srcdoc='<p>inner</p>'></iframe>");
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("loading 000"));
    EXPECT_GE(TestClient::Find(client->events(), "load-start 3 about:srcdoc"), 0)
        << "a frame's own load";
    ASSERT_EQ(browser->GetFrameCount(), 2u);
    CefRefPtr<CefFrame> child = browser->GetFrameByName("child");
    ASSERT_TRUE(child);
    EXPECT_FALSE(child->IsMain());
    EXPECT_TRUE(child->GetParent()->IsMain());
    EXPECT_EQ(browser->GetFrameByIdentifier(child->GetIdentifier()).get(), child.get());

    size_t before = client->count();
    child->ExecuteJavaScript("console.log(document.body.innerText)", "", 0);
    EXPECT_TRUE(client->WaitFor("console 2 inner", before));
    before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript("throw new Error('bad')", "https://x.test/s.js", 5);
    ASSERT_TRUE(client->WaitFor("console 4", before));
    EXPECT_EQ(client->events()[TestClient::Find(client->events(), "console 4", before)],
              "console 4 Uncaught Error: bad @https://x.test/s.js:5");

    CefRefPtr<Visitor> source = new Visitor;
    browser->GetMainFrame()->GetSource(source);
    ASSERT_TRUE(source->done.Wait());
    EXPECT_NE(source->text.find("<p>Hello page</p>"), std::string::npos) << source->text;
    CefRefPtr<Visitor> text = new Visitor;
    browser->GetMainFrame()->GetText(text);
    ASSERT_TRUE(text->done.Wait());
    EXPECT_EQ(text->text.find("Hello page"), 0u) << text->text;
    child = nullptr;
    StopEngine(client);
  });
}

// Counts frames and keeps the last one's size, as width * 10000 + height.
class PaintClient : public TestClient {
 public:
  void OnPaint(CefRefPtr<CefBrowser>, PaintElementType, const RectList&, const void*, int width,
               int height) override {
    size = width * 10000 + height;
    ++paints;
  }
  std::atomic<int> size{0}, paints{0};
};

bool Eventually(const std::function<bool()>& done) {
  for (int attempt = 0; attempt < 100; ++attempt) {
    if (done()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

TEST(BrowserPage, ZoomLaysThePageOutSmallerIntoFramesOfTheSameSize) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<PaintClient> client = new PaintClient;
    const std::string page =
        "data:text/html,<div id=b style='position:absolute;left:300px;top:200px;width:100px;"
        "height:100px;background:blue'></div><script>onmousedown = e => console.log('down', e.target.id)</script>";
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, page);
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("loading 000"));
    CefRefPtr<CefBrowserHost> host = browser->GetHost();

    // Factor 1.2^2 = 1.44: 800x600 is laid out as 556x417, after navigations
    // too, and painted at 800x600 (b shows, so that the zoom changes pixels:
    // frames come only for changes).
    for (double level : {2.0, 0.0}) {
      const bool zoomed = level != 0;
      const int paints = client->paints;
      host->SetZoomLevel(level);
      EXPECT_EQ(host->GetZoomLevel(), level);
      EXPECT_TRUE(Eventually([&] {
        return Evaluate(browser, "innerWidth + 'x' + innerHeight").toString() ==
               (zoomed ? "556x417" : "800x600");
      }));
      EXPECT_NEAR(Evaluate(browser, "devicePixelRatio").toDouble(), zoomed ? 1.44 : 1.0, 1e-3);
      EXPECT_TRUE(Eventually([&] { return client->paints > paints; }));
      EXPECT_EQ(client->size, 800 * 10000 + 600);
      // b's middle, 350,250 in the page, is at 504,360 in the view zoomed.
      size_t before = client->count();
      CefMouseEvent mouse;
      mouse.x = zoomed ? 504 : 350;
      mouse.y = zoomed ? 360 : 250;
      host->SendMouseClickEvent(mouse, MBT_LEFT, false, 1);
      host->SendMouseClickEvent(mouse, MBT_LEFT, true, 1);
      EXPECT_TRUE(client->WaitFor("console 2 down b", before));
      if (zoomed) {
        before = client->count();
        browser->GetMainFrame()->LoadURL(page + "<p>again");
        ASSERT_TRUE(client->WaitFor("load-end", before));
        EXPECT_EQ(Evaluate(browser, "innerWidth").toInt(), 556);
      }
    }
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
