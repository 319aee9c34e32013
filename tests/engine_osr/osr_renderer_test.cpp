// Off-screen painting through the CEF API, over real browsers. The engine starts once per
// process, so each test runs in a fresh one.

#include <gtest/gtest.h>

#include <QImage>
#include <QRegion>
#include <QTemporaryDir>
#include <QUrl>
#include <atomic>
#include <thread>

#include "cef_runtime/engine_test_support.h"
#include "include/cef_request_context.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/devtools/devtools_session.h"
#include "paint_client.h"

using cef_runtime_test::RunInFreshProcess;
using namespace engine_osr_test;
using namespace std::chrono_literals;

namespace {

// Known colours at known CSS pixels, a box to recolour, a canvas to redraw with the same pixels.
const char kPage[] = R"(<body style="margin:0;background:#fe0102">
<div style="position:absolute;width:160px;height:120px;background:#102030"></div>
<div style="position:absolute;left:21px;top:7px;width:1px;height:1px;background:#abcdef"></div>
<div id="box" style="position:absolute;left:200px;top:150px;width:40px;height:30px;background:#00ff7f"
 onclick="this.style.background = devicePixelRatio == 2 ? '#0a0b0c' : '#0c0b0a'"></div>
<canvas id="c" width="20" height="20" style="position:absolute;left:280px;top:200px"></canvas>
<script>function paintCanvas() { const x = c.getContext('2d'); x.fillStyle = '#369'; x.fillRect(0, 0, 20, 20); }
paintCanvas();</script></body>)";

// Opens the page and waits for its box.
void open(CefRefPtr<PaintClient> client, const QTemporaryDir& cache) {
  ASSERT_TRUE(openPage(client, cache, kPage));
  ASSERT_TRUE(client->waitForColour(210 * client->scale, 160 * client->scale, 0x00ff7f));
}

// Closes |client|'s browser, then stops the engine.
void closeAndShutdown(CefRefPtr<PaintClient> client) {
  client->currentBrowser()->GetHost()->CloseBrowser(true);
  EXPECT_TRUE(client->waitFor([&] { return client->browser == nullptr; }));
  CefShutdown();
}

}  // namespace

TEST(OsrRendererTest, PaintsExactColoursAtDevicePixelsAtScale1And2) {
  RunInFreshProcess([] {
    ASSERT_TRUE(startEngine());
    QTemporaryDir caches[2];
    const std::vector<CefRefPtr<PaintClient>> clients{new PaintClient(1), new PaintClient(2)};
    for (int i = 0; i < 2; ++i) {
      open(clients[i], caches[i]);
      const int s = clients[i]->scale;
      const std::vector<Paint> paints = clients[i]->snapshot();
      const QImage& last = paints.back().image;
      EXPECT_EQ(last.size(), QSize(320 * s, 240 * s));
      EXPECT_EQ(last.pixel(21 * s, 7 * s), 0xffabcdefu);
      EXPECT_EQ(last.pixel(22 * s - 1, 8 * s - 1), 0xffabcdefu);
      for (QPoint p : {QPoint(21 * s - 1, 7 * s), QPoint(22 * s, 7 * s), QPoint(21 * s, 8 * s)})
        EXPECT_EQ(last.pixel(p), 0xff102030u);
      EXPECT_EQ(last.pixel(160 * s, 0), 0xfffe0102u);
      EXPECT_EQ(paints.front().rects, std::vector<CefRect>{CefRect(0, 0, 320 * s, 240 * s)});
      for (const Paint& paint : paints) EXPECT_TRUE(paint.onUiThread && !paint.rects.empty());
    }
    // The second browser stays open, as the library leaves them at exit.
    closeAndShutdown(clients[0]);
  });
}

TEST(OsrRendererTest, RepaintsWhatChangedNothingForTheSamePixelsAndWholeFramesWhenAsked) {
  RunInFreshProcess([] {
    ASSERT_TRUE(startEngine());
    QTemporaryDir cache;
    CefRefPtr<PaintClient> client = new PaintClient(1);
    open(client, cache);
    CefRefPtr<CefBrowser> browser = client->currentBrowser();

    size_t before = client->snapshot().size();
    browser->GetMainFrame()->ExecuteJavaScript("box.style.background = '#0000fe'", "", 0);
    ASSERT_TRUE(client->waitForColour(210, 160, 0x0000fe));
    std::vector<Paint> paints = client->snapshot();
    QRegion covered;
    for (size_t i = before; i < paints.size(); ++i)
      for (const CefRect& r : paints[i].rects) covered += QRect(r.x, r.y, r.width, r.height);
    EXPECT_TRUE((QRegion(200, 150, 40, 30) - covered).isEmpty());
    EXPECT_FALSE((QRegion(0, 0, 320, 240) - covered).isEmpty());

    // Chromium sends a frame (or damage) for the redrawn canvas; nobody is painted for it.
    auto* impl = static_cast<cefengine::BrowserImpl*>(browser.get());
    if (impl->chromium()->uses_x11()) {
      std::this_thread::sleep_for(300ms);
      before = client->snapshot().size();
      browser->GetMainFrame()->ExecuteJavaScript("paintCanvas()", "", 0);
      std::this_thread::sleep_for(500ms);
      EXPECT_EQ(client->snapshot().size(), before);
    } else {
      int chromiumFrames = 0;  // under the client's lock
      const int subscription = impl->devtools()->subscribe(impl->session_id(), [&](const QString& method, auto&, auto&) {
        if (method == QLatin1String("Page.screencastFrame")) client->update([&] { ++chromiumFrames; });
      });
      std::this_thread::sleep_for(300ms);
      before = client->snapshot().size();
      browser->GetMainFrame()->ExecuteJavaScript("paintCanvas()", "", 0);
      EXPECT_TRUE(client->waitFor([&] { return chromiumFrames > 0; }));
      std::this_thread::sleep_for(300ms);
      EXPECT_EQ(client->snapshot().size(), before);
      impl->devtools()->unsubscribe(subscription);
    }

    browser->GetHost()->Invalidate(PET_VIEW);
    ASSERT_TRUE(client->waitFor([&] { return client->paints.size() > before; }));
    EXPECT_EQ(client->snapshot()[before].rects, std::vector<CefRect>{CefRect(0, 0, 320, 240)});

    client->width = 200;
    browser->GetHost()->WasResized();
    ASSERT_TRUE(client->waitFor([&] { return client->paints.back().image.width() == 200; }));
    EXPECT_EQ(client->snapshot().back().rects, std::vector<CefRect>{CefRect(0, 0, 200, 240)});

    // Hidden, nothing is painted; shown again, the page as it is now, whole.
    browser->GetHost()->WasHidden(true);
    std::this_thread::sleep_for(300ms);
    before = client->snapshot().size();
    browser->GetMainFrame()->ExecuteJavaScript("document.body.style.background = '#010203'", "", 0);
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(client->snapshot().size(), before);
    browser->GetHost()->WasHidden(false);
    ASSERT_TRUE(client->waitForColour(170, 10, 0x010203));
    EXPECT_EQ(client->snapshot()[before].rects, std::vector<CefRect>{CefRect(0, 0, 200, 240)});
    closeAndShutdown(client);
  });
}


TEST(OsrRendererTest, AChangedScaleFactorTakesEffectInTheSameChromium) {
  RunInFreshProcess([] {
    ASSERT_TRUE(startEngine());
    QTemporaryDir cache;
    CefRefPtr<PaintClient> client = new PaintClient(1);
    open(client, cache);
    CefRefPtr<CefBrowserHost> host = client->currentBrowser()->GetHost();

    // Twice the device pixels for the same layout; the page sees the new ratio, and a click
    // in view coordinates still lands on the box.
    client->scale = 2;
    host->NotifyScreenInfoChanged();
    ASSERT_TRUE(client->waitForColour(210 * 2, 160 * 2, 0x00ff7f));
    EXPECT_EQ(client->snapshot().back().image.size(), QSize(640, 480));
    CefMouseEvent click;
    click.x = 205;
    click.y = 155;
    host->SendMouseClickEvent(click, MBT_LEFT, false, 1);
    host->SendMouseClickEvent(click, MBT_LEFT, true, 1);
    EXPECT_TRUE(client->waitForColour(210 * 2, 160 * 2, 0x0a0b0c));
    EXPECT_EQ(client->snapshot().back().image.pixel(160 * 2, 0), 0xfffe0102u);

    client->scale = 1;
    host->NotifyScreenInfoChanged();
    ASSERT_TRUE(client->waitFor([&] { return client->paints.back().image.size() == QSize(320, 240); }));
    host->SendMouseClickEvent(click, MBT_LEFT, false, 1);
    host->SendMouseClickEvent(click, MBT_LEFT, true, 1);
    EXPECT_TRUE(client->waitForColour(210, 160, 0x0c0b0a));
    EXPECT_EQ(client->snapshot().back().image.pixel(21, 7), 0xffabcdefu);
    closeAndShutdown(client);
  });
}
