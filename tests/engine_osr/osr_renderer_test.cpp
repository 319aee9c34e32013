// Off-screen painting through the CEF API, over real browsers.

#include <gtest/gtest.h>

#include <QImage>
#include <QRegion>
#include <QTemporaryDir>
#include <QUrl>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "cef_runtime/engine_test_support.h"
#include "include/cef_app.h"
#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/cef_request_context.h"

using cef_runtime_test::RunInFreshProcess;

namespace {

const char kPage[] = R"(<html><body style="margin:0;background:#fe0102">
<div style="position:absolute;left:0;top:0;width:160px;height:120px;background:#102030"></div>
<div style="position:absolute;left:21px;top:7px;width:1px;height:1px;background:#abcdef"></div>
<div id="box" style="position:absolute;left:200px;top:150px;width:40px;height:30px;background:#00ff7f"></div>
</body></html>)";

std::string pageUrl() {
  return "data:text/html," + QUrl::toPercentEncoding(kPage).toStdString();
}

struct Paint {
  QImage image;
  std::vector<CefRect> rects;
  cef_paint_element_type_t type;
};

uint32_t rgbAt(const Paint& paint, int x, int y) {
  return paint.image.pixel(x, y) & 0xffffff;
}

// One view: answers the geometry questions and keeps every paint.
class OsrClient : public CefClient, public CefLifeSpanHandler, public CefRenderHandler {
 public:
  explicit OsrClient(float scale) : scale_(scale) {}

  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  CefRefPtr<CefRenderHandler> GetRenderHandler() override { return this; }

  void OnAfterCreated(CefRefPtr<CefBrowser> browser) override {
    std::lock_guard<std::mutex> lock(mutex_);
    browser_ = browser;
    changed_.notify_all();
  }
  void OnBeforeClose(CefRefPtr<CefBrowser> browser) override {
    std::lock_guard<std::mutex> lock(mutex_);
    browser_ = nullptr;
    closed_ = true;
    changed_.notify_all();
  }
  void GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) override {
    rect = CefRect(0, 0, width_, height_);
  }
  bool GetScreenInfo(CefRefPtr<CefBrowser> browser, CefScreenInfo& info) override {
    info.device_scale_factor = scale_;
    return true;
  }
  void OnPaint(CefRefPtr<CefBrowser> browser, PaintElementType type, const RectList& dirtyRects,
               const void* buffer, int width, int height) override {
    // The buffer is only lent: copy it.
    const QImage frame(static_cast<const uchar*>(buffer), width, height, width * 4,
                       QImage::Format_ARGB32_Premultiplied);
    std::lock_guard<std::mutex> lock(mutex_);
    if (!CefCurrentlyOn(TID_UI)) ++off_ui_thread_;
    paints_.push_back({frame.copy(), dirtyRects, type});
    changed_.notify_all();
  }

  void resize(int width, int height) {
    width_ = width;
    height_ = height;
  }
  // Waits (20 s at most) until |done| holds for the paints so far.
  bool waitFor(const std::function<bool(const std::vector<Paint>&)>& done) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return done(paints_); });
  }
  // Waits until the last paint shows |rgb| at device pixel (x, y).
  bool waitForColour(int x, int y, uint32_t rgb) {
    return waitFor([&](const std::vector<Paint>& paints) {
      return !paints.empty() && paints.back().image.width() > x && paints.back().image.height() > y &&
             rgbAt(paints.back(), x, y) == rgb;
    });
  }
  bool waitForBrowser() {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return browser_ != nullptr; });
  }
  bool waitClosed() {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return closed_; });
  }
  std::vector<Paint> paints() {
    std::lock_guard<std::mutex> lock(mutex_);
    return paints_;
  }
  CefRefPtr<CefBrowser> browser() {
    std::lock_guard<std::mutex> lock(mutex_);
    return browser_;
  }
  int off_ui_thread() {
    std::lock_guard<std::mutex> lock(mutex_);
    return off_ui_thread_;
  }
  float scale() const { return scale_; }

 private:
  const float scale_;
  std::atomic<int> width_{320};
  std::atomic<int> height_{240};
  std::mutex mutex_;
  std::condition_variable changed_;
  CefRefPtr<CefBrowser> browser_;
  bool closed_ = false;
  std::vector<Paint> paints_;
  int off_ui_thread_ = 0;
  IMPLEMENT_REFCOUNTING(OsrClient);
};

bool startEngine() {
  CefSettings settings = cef_runtime_test::MakeSettings(true, false);
  settings.windowless_rendering_enabled = true;
  return CefInitialize(CefMainArgs(0, nullptr), settings, nullptr, nullptr);
}

// A browser in a context of its own, so that its Chromium runs at the client's scale.
bool open(CefRefPtr<OsrClient> client, const QTemporaryDir& cache) {
  CefRequestContextSettings settings;
  CefString(&settings.cache_path) = cache.path().toStdString();
  CefWindowInfo window;
  window.SetAsWindowless(kNullWindowHandle);
  CefBrowserSettings browserSettings;
  browserSettings.windowless_frame_rate = 60;
  return CefBrowserHost::CreateBrowser(window, client, pageUrl(), browserSettings, nullptr,
                                       CefRequestContext::CreateContext(settings, nullptr)) &&
         client->waitForBrowser();
}

void close(CefRefPtr<OsrClient> client) {
  if (CefRefPtr<CefBrowser> browser = client->browser()) {
    browser->GetHost()->CloseBrowser(true);
    EXPECT_TRUE(client->waitClosed());
  }
}

CefRect whole(const Paint& paint) {
  return CefRect(0, 0, paint.image.width(), paint.image.height());
}

}  // namespace

TEST(OsrRendererTest, PaintsThePageInDevicePixelsOnTheUiThreadAtScale1And2) {
  RunInFreshProcess([] {
    ASSERT_TRUE(startEngine());
    QTemporaryDir cache1, cache2;
    CefRefPtr<OsrClient> clients[] = {new OsrClient(1), new OsrClient(2)};
    ASSERT_TRUE(open(clients[0], cache1));
    ASSERT_TRUE(open(clients[1], cache2));
    for (const CefRefPtr<OsrClient>& client : clients) {
      const int s = static_cast<int>(client->scale());
      ASSERT_TRUE(client->waitForColour(210 * s, 160 * s, 0x00ff7f)) << "scale " << s;
      const Paint last = client->paints().back();
      EXPECT_EQ(last.image.size(), QSize(320 * s, 240 * s));
      EXPECT_EQ(last.type, PET_VIEW);
      for (int dy = 0; dy < s; ++dy)
        for (int dx = 0; dx < s; ++dx) EXPECT_EQ(rgbAt(last, 21 * s + dx, 7 * s + dy), 0xabcdefu);
      EXPECT_EQ(rgbAt(last, 21 * s - 1, 7 * s), 0x102030u);
      EXPECT_EQ(rgbAt(last, 22 * s, 7 * s), 0x102030u);
      EXPECT_EQ(rgbAt(last, 160 * s, 0), 0xfe0102u);
      EXPECT_EQ(qAlpha(last.image.pixel(0, 0)), 255);
      const std::vector<Paint> paints = client->paints();
      EXPECT_EQ(paints.front().rects, std::vector<CefRect>{whole(paints.front())});
      for (const Paint& paint : paints) EXPECT_FALSE(paint.rects.empty());
      EXPECT_EQ(client->off_ui_thread(), 0);
      close(client);
    }
    CefShutdown();
  });
}

TEST(OsrRendererTest, RepaintsChangesInvalidateResizeAndVisibility) {
  RunInFreshProcess([] {
    ASSERT_TRUE(startEngine());
    QTemporaryDir cache;
    CefRefPtr<OsrClient> client = new OsrClient(1);
    ASSERT_TRUE(open(client, cache));
    ASSERT_TRUE(client->waitForColour(210, 160, 0x00ff7f));
    CefRefPtr<CefBrowser> browser = client->browser();

    // A recoloured box: the dirty rectangles hold it, not the whole view.
    size_t before = client->paints().size();
    browser->GetMainFrame()->ExecuteJavaScript("box.style.background = '#0000fe'", "", 0);
    ASSERT_TRUE(client->waitForColour(210, 160, 0x0000fe));
    std::vector<Paint> paints = client->paints();
    QRegion covered;
    for (size_t i = before; i < paints.size(); ++i)
      for (const CefRect& r : paints[i].rects) covered += QRect(r.x, r.y, r.width, r.height);
    EXPECT_TRUE((QRegion(200, 150, 40, 30) - covered).isEmpty());
    EXPECT_FALSE((QRegion(0, 0, 320, 240) - covered).isEmpty());

    // Nothing changes: nothing is painted, until Invalidate asks for the whole view.
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    before = client->paints().size();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_EQ(client->paints().size(), before);
    browser->GetHost()->Invalidate(PET_VIEW);
    ASSERT_TRUE(client->waitFor([&](const std::vector<Paint>& p) { return p.size() > before; }));
    paints = client->paints();
    EXPECT_EQ(paints[before].rects, std::vector<CefRect>{CefRect(0, 0, 320, 240)});
    EXPECT_EQ(rgbAt(paints[before], 210, 160), 0x0000feu);

    // A new view size: frames of that size, painted whole.
    client->resize(200, 100);
    browser->GetHost()->WasResized();
    ASSERT_TRUE(client->waitFor([](const std::vector<Paint>& p) { return p.back().image.width() == 200; }));
    paints = client->paints();
    EXPECT_EQ(paints.back().image.height(), 100);
    EXPECT_EQ(paints.back().rects, std::vector<CefRect>{whole(paints.back())});

    // Hidden: no paints; shown again: the page as it is now, whole.
    browser->GetHost()->WasHidden(true);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    before = client->paints().size();
    browser->GetMainFrame()->ExecuteJavaScript("document.body.style.background = '#010203'", "", 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_EQ(client->paints().size(), before);
    browser->GetHost()->WasHidden(false);
    // (The page now overflows: scroll bars take the right and bottom edges.)
    ASSERT_TRUE(client->waitForColour(170, 10, 0x010203));
    paints = client->paints();
    EXPECT_EQ(paints[before].rects, std::vector<CefRect>{whole(paints[before])});
    EXPECT_EQ(client->off_ui_thread(), 0);

    close(client);
    CefShutdown();
  });
}
