// Exact colours and precise dirty rectangles of a small animated box, at device scale 1 and 2,
// with whichever frame source BROVIA_FRAME_SOURCE picks (CTest runs this with both).

#include <gtest/gtest.h>

#include <QImage>
#include <QRegion>
#include <QTemporaryDir>
#include <QUrl>
#include <QDir>
#include <QFile>
#include <atomic>
#include <csignal>
#include <thread>

#include "cef_runtime/engine_test_support.h"
#include "include/cef_request_context.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/osr/x_server.h"
#include "paint_client.h"
#include "x_windows.h"

using cef_runtime_test::RunInFreshProcess;
using namespace engine_osr_test;
using namespace std::chrono_literals;

namespace {

// Five colours that must come back unchanged, and a 20x20 box sliding over the page.
const char kPage[] = R"html(<body style="margin:0;background:#fefdfc">
<div style="position:absolute;left:0;top:0;width:40px;height:40px;background:rgb(1,2,3)"></div>
<div style="position:absolute;left:40px;top:0;width:40px;height:40px;background:rgb(128,64,200)"></div>
<div style="position:absolute;left:80px;top:0;width:40px;height:40px;background:rgb(0,255,0)"></div>
<div id="box" style="position:absolute;left:0;top:120px;width:20px;height:20px;background:rgb(77,1,1)"></div>
<script>let moving = false;
function step(t) { requestAnimationFrame(step); if (moving) box.style.left = (Math.floor(t / 8) % 280) + 'px'; }
requestAnimationFrame(step);</script></body>)html";

void checkScale(int s) {
  QTemporaryDir cache;
  CefRefPtr<PaintClient> client = new PaintClient(s);
  ASSERT_TRUE(openPage(client, cache, kPage));
  ASSERT_TRUE(client->waitFor([&] {
    return client->browser && !client->paints.empty() && client->paints.back().image.size() == QSize(320 * s, 240 * s) &&
           client->paints.back().image.pixel(5 * s, 125 * s) == 0xff4d0101u;
  }));
  {
    const QImage last = client->snapshot().back().image;
    EXPECT_EQ(last.pixel(20 * s, 20 * s), 0xff010203u);
    EXPECT_EQ(last.pixel(60 * s, 20 * s), 0xff8040c8u);
    EXPECT_EQ(last.pixel(100 * s, 39 * s), 0xff00ff00u);
    EXPECT_EQ(last.pixel(300 * s, 200 * s), 0xfffefdfcu);
    EXPECT_EQ(last.pixel(0, 120 * s), 0xff4d0101u);
    EXPECT_EQ(last.pixel(20 * s - 1, 140 * s - 1), 0xff4d0101u);
    EXPECT_EQ(last.pixel(20 * s, 120 * s), 0xfffefdfcu);
  }

  // The X source's rectangles are the damage, at most the band the box slides in (a slow machine
  // gathers several steps into one frame); the screencast's are whole 64-pixel tiles.
  const bool x11 = static_cast<cefengine::BrowserImpl*>(client->browser.get())->chromium()->uses_x11();
  const int areaLimit = x11 ? 320 * s * 24 * s : 320 * s * 240 * s / 4;
  const size_t before = client->snapshot().size();
  client->browser->GetMainFrame()->ExecuteJavaScript("moving = true", "", 0);
  ASSERT_TRUE(client->waitFor([&] { return client->paints.size() >= before + 5; }));
  client->browser->GetMainFrame()->ExecuteJavaScript("moving = false", "", 0);
  std::this_thread::sleep_for(300ms);
  const std::vector<Paint> paints = client->snapshot();
  const QRect frame(0, 0, 320 * s, 240 * s);
  for (size_t i = before; i < paints.size(); ++i) {
    const Paint& paint = paints[i];
    ASSERT_EQ(paint.image.size(), frame.size());
    ASSERT_FALSE(paint.rects.empty());
    QRegion dirty;
    for (const CefRect& r : paint.rects) {
      const QRect rect(r.x, r.y, r.width, r.height);
      EXPECT_TRUE(frame.contains(rect));
      dirty += rect;
    }
    // Only the band the box slides in changes: the rectangles say so, and nothing changed
    // outside them.
    int area = 0;
    for (const QRect& rect : dirty) area += rect.width() * rect.height();
    EXPECT_LT(area, areaLimit) << "paint " << i;
    const QImage& previous = paints[i - 1].image;
    int outside = 0;
    for (int y = 0; y < frame.height(); y += 1) {
      for (int x = 0; x < frame.width(); x += 1) {
        if (!dirty.contains(QPoint(x, y)) && previous.pixel(x, y) != paint.image.pixel(x, y)) ++outside;
      }
    }
    EXPECT_EQ(outside, 0) << "paint " << i;
    // The colours stay exact while the box moves.
    EXPECT_EQ(paint.image.pixel(60 * s, 20 * s), 0xff8040c8u);
  }
  client->browser->GetHost()->CloseBrowser(true);
  EXPECT_TRUE(client->waitFor([&] { return client->browser == nullptr; }));
}

}  // namespace

TEST(FrameSourceTest, AnimatedBoxHasExactColoursAndPreciseDirtyRectsAtScale1And2) {
  RunInFreshProcess([] {
    ASSERT_TRUE(startEngine());
    checkScale(1);
    checkScale(2);
    CefShutdown();
  });
}

namespace {

// This process's children named |name|.
std::vector<pid_t> children(const QByteArray& name) {
  std::vector<pid_t> found;
  for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
    QFile stat(QStringLiteral("/proc/%1/stat").arg(entry));
    if (!stat.open(QIODevice::ReadOnly)) continue;
    const QByteArray line = stat.readAll();
    const int close = line.lastIndexOf(')');
    const QByteArray comm = line.mid(line.indexOf('(') + 1, close - line.indexOf('(') - 1);
    const QList<QByteArray> rest = line.mid(close + 2).split(' ');
    if (comm == name && rest.size() > 1 && rest.at(1).toLongLong() == getpid()) found.push_back(entry.toInt());
  }
  return found;
}

}  // namespace

// The page's window goes from the X server: the page is reported gone like a Chromium that died, and a reload
// brings it back in a new window.
TEST(FrameSourceTest, APageWindowThatDisappearsIsReportedLikeAChromiumDeath) {
  RunInFreshProcess([] {
    ASSERT_TRUE(startEngine());
    CefRefPtr<PaintClient> client = new PaintClient(1);
    CefWindowInfo window;
    window.SetAsWindowless(kNullWindowHandle);
    ASSERT_TRUE(CefBrowserHost::CreateBrowser(window, client, "data:text/html,<p>x", CefBrowserSettings(), nullptr,
                                              nullptr));
    ASSERT_TRUE(client->waitFor([&] { return client->browser && !client->paints.empty(); }));
    cefengine::ChromiumInstance* chromium = static_cast<cefengine::BrowserImpl*>(client->browser.get())->chromium();
    if (chromium->uses_x11()) {
      // The page's window is the one of its size; the launcher's is not.
      ASSERT_EQ(destroyTopLevelWindows(chromium->x_server()->display_name(), 320, 240), 1);
      ASSERT_TRUE(client->waitFor([&] { return client->terminated == 1; }));
      const size_t painted = client->snapshot().size();
      client->browser->Reload();
      EXPECT_TRUE(client->waitFor([&] { return client->paints.size() > painted; }));
    }
    client->browser->GetHost()->CloseBrowser(true);
    EXPECT_TRUE(client->waitFor([&] { return client->browser == nullptr; }));
    CefShutdown();
  });
}

// The engine's X server dies: its pages are reported gone like a Chromium that died, and a reload brings them
// back on a new one.
TEST(FrameSourceTest, AnXServerThatDiesIsReportedLikeAChromiumDeath) {
  RunInFreshProcess([] {
    ASSERT_TRUE(startEngine());
    QTemporaryDir cache;
    CefRequestContextSettings contextSettings;
    CefString(&contextSettings.cache_path) = cache.path().toStdString();
    CefRefPtr<PaintClient> client = new PaintClient(1);
    CefWindowInfo window;
    window.SetAsWindowless(kNullWindowHandle);
    ASSERT_TRUE(CefBrowserHost::CreateBrowser(window, client, "data:text/html,<p>x", CefBrowserSettings(), nullptr,
                                              CefRequestContext::CreateContext(contextSettings, nullptr)));
    ASSERT_TRUE(client->waitFor([&] { return client->browser && !client->paints.empty(); }));
    if (!static_cast<cefengine::BrowserImpl*>(client->browser.get())->chromium()->uses_x11()) {
      client->browser->GetHost()->CloseBrowser(true);
      EXPECT_TRUE(client->waitFor([&] { return client->browser == nullptr; }));
      CefShutdown();
      return;  // only the X source has an X server
    }
    const std::vector<pid_t> servers = children("Xvfb");
    ASSERT_EQ(servers.size(), 1u);
    ::kill(servers[0], SIGKILL);
    ASSERT_TRUE(client->waitFor([&] { return client->terminated == 1; }));
    const size_t painted = client->snapshot().size();
    client->browser->Reload();
    EXPECT_TRUE(client->waitFor([&] { return client->paints.size() > painted; }));
    const std::vector<pid_t> revived = children("Xvfb");
    ASSERT_EQ(revived.size(), 1u);
    EXPECT_NE(revived[0], servers[0]);
    client->browser->GetHost()->CloseBrowser(true);
    EXPECT_TRUE(client->waitFor([&] { return client->browser == nullptr; }));
    CefShutdown();
  });
}
