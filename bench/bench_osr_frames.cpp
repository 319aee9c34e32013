// Frames of an animated 1280x720 page at device scale 1 and 2, through the engine's browsers:
// how many Chromium made (Page.screencastFrame), how many reached CefRenderHandler::OnPaint, what
// each painted frame cost this process in CPU, and the time from CreateBrowser to the first
// OnPaint. Goals: at least 95% painted, first paint under 500 ms.

#include <time.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QUrl>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

#include "include/cef_app.h"
#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/cef_request_context.h"
#include "include/cef_task.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/devtools/devtools_session.h"

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

// Every pixel changes every frame: the background colour cycles and forty boxes move, unless
// paused.
const char kAnimatedPage[] = R"(<html><body style="margin:0;overflow:hidden"><script>
let paused = false;
const boxes = [];
for (let i = 0; i < 40; i++) {
  const b = document.createElement('div');
  b.style.cssText = 'position:absolute;width:60px;height:60px;background:hsl(' + i * 9 + ',80%,50%)';
  document.body.appendChild(b); boxes.push(b);
}
function step(t) {
  requestAnimationFrame(step);
  if (paused) return;
  document.body.style.background = 'rgb(' + (t / 4 % 256 | 0) + ',' + (t / 7 % 256 | 0) + ',120)';
  boxes.forEach((b, i) => { b.style.left = ((t / 3 + i * 97) % 1220) + 'px'; b.style.top = ((t / 5 + i * 53) % 660) + 'px'; });
}
requestAnimationFrame(step);
</script></body></html>)";

double cpuSeconds() {
  timespec ts;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
  return ts.tv_sec + ts.tv_nsec / 1e9;
}

// A 1280x720 view that counts its paints and reads one pixel of each, as a client would.
class BenchClient : public CefClient, public CefLifeSpanHandler, public CefRenderHandler {
 public:
  explicit BenchClient(float scale) : scale_(scale) {}
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
  void GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) override { rect = CefRect(0, 0, 1280, 720); }
  bool GetScreenInfo(CefRefPtr<CefBrowser> browser, CefScreenInfo& info) override {
    info.device_scale_factor = scale_;
    return true;
  }
  void OnPaint(CefRefPtr<CefBrowser> browser, PaintElementType type, const RectList& dirtyRects,
               const void* buffer, int width, int height) override {
    pixel_ += static_cast<const uint32_t*>(buffer)[width * height - 1];
    if (paints_++ == 0) {
      std::lock_guard<std::mutex> lock(mutex_);
      first_paint_ = Clock::now();
      changed_.notify_all();
    }
  }

  template <typename Predicate>
  bool wait(Predicate done) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, 20s, done);
  }
  bool waitFirstPaint() { return wait([this] { return paints_ > 0; }); }
  bool waitClosed() { return wait([this] { return closed_; }); }
  CefRefPtr<CefBrowser> browser() {
    std::lock_guard<std::mutex> lock(mutex_);
    return browser_;
  }
  Clock::time_point first_paint() {
    std::lock_guard<std::mutex> lock(mutex_);
    return first_paint_;
  }
  uint64_t paints() const { return paints_; }

 private:
  const float scale_;
  std::mutex mutex_;
  std::condition_variable changed_;
  CefRefPtr<CefBrowser> browser_;
  bool closed_ = false;
  Clock::time_point first_paint_;
  std::atomic<uint64_t> paints_{0};
  std::atomic<uint32_t> pixel_{0};
  IMPLEMENT_REFCOUNTING(BenchClient);
};

struct Result {
  double firstPaintMs = -1;
  uint64_t produced = 0;
  uint64_t painted = 0;
  double seconds = 0;
  double cpuMsPerFrame = 0;
};

class FunctionTask : public CefTask {
 public:
  explicit FunctionTask(std::function<void()> run) : run_(std::move(run)) {}
  void Execute() override { run_(); }

 private:
  std::function<void()> run_;
  IMPLEMENT_REFCOUNTING(FunctionTask);
};

// Runs |task| on the engine UI thread and waits for it.
void onUiThread(std::function<void()> task) {
  std::promise<void> done;
  CefPostTask(TID_UI, new FunctionTask([&] {
                task();
                done.set_value();
              }));
  done.get_future().wait();
}

// |cache|: a context of its own, so that its Chromium runs at this browser's scale.
Result run(float scale, const QTemporaryDir& cache, std::chrono::seconds duration) {
  Result result;
  CefRequestContextSettings contextSettings;
  CefString(&contextSettings.cache_path) = cache.path().toStdString();
  CefRefPtr<BenchClient> client = new BenchClient(scale);
  CefWindowInfo window;
  window.SetAsWindowless(kNullWindowHandle);
  CefBrowserSettings settings;
  settings.windowless_frame_rate = 60;
  const std::string url = "data:text/html," + QUrl::toPercentEncoding(kAnimatedPage).toStdString();

  const Clock::time_point created = Clock::now();
  if (!CefBrowserHost::CreateBrowser(window, client, url, settings, nullptr,
                                     CefRequestContext::CreateContext(contextSettings, nullptr)) ||
      !client->waitFirstPaint()) {
    std::fprintf(stderr, "no paint at scale %g\n", scale);
    return result;
  }
  result.firstPaintMs = std::chrono::duration<double, std::milli>(client->first_paint() - created).count();

  // Chromium's frames, counted on the page's own session.
  CefRefPtr<CefBrowser> browser = client->browser();
  auto* impl = static_cast<cefengine::BrowserImpl*>(browser.get());
  std::atomic<uint64_t> produced{0};
  int subscription = 0;
  onUiThread([&] {
    subscription = impl->devtools()->subscribe(impl->session_id(), [&](const QString& method, const QJsonObject&,
                                                                        const QString&) {
      if (method == QLatin1String("Page.screencastFrame")) ++produced;
    });
  });

  // The window opens and closes on a still page, so that no frame is on its way at either edge.
  auto animate = [&](bool on) {
    browser->GetMainFrame()->ExecuteJavaScript(on ? "paused = false" : "paused = true", "", 0);
    if (!on) std::this_thread::sleep_for(500ms);
  };
  std::this_thread::sleep_for(1s);  // warm up
  animate(false);
  const uint64_t producedBefore = produced;
  const uint64_t paintedBefore = client->paints();
  const double cpuBefore = cpuSeconds();
  const Clock::time_point start = Clock::now();
  animate(true);
  std::this_thread::sleep_for(duration);
  result.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  animate(false);
  const double cpu = cpuSeconds() - cpuBefore;
  result.produced = produced - producedBefore;
  result.painted = client->paints() - paintedBefore;
  result.cpuMsPerFrame = result.painted ? cpu * 1000 / result.painted : 0;

  onUiThread([&] { impl->devtools()->unsubscribe(subscription); });
  browser->GetHost()->CloseBrowser(true);
  browser = nullptr;
  client->waitClosed();
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  // Chromium writes into them until CefShutdown.
  const QTemporaryDir caches[2];
  CefSettings settings;
  settings.multi_threaded_message_loop = true;
  settings.windowless_rendering_enabled = true;
  settings.no_sandbox = true;
  if (!CefInitialize(CefMainArgs(0, nullptr), settings, nullptr, nullptr)) {
    std::fprintf(stderr, "the engine did not start\n");
    return 1;
  }
  const Result results[] = {run(1, caches[0], 8s), run(2, caches[1], 8s)};
  CefShutdown();

  std::printf("OSR frames, animated 1280x720 page, CreateBrowser .. OnPaint through the engine\n");
  std::printf("%-30s %14s %14s\n", "", "scale 1", "scale 2");
  std::printf("%-30s %14s %14s\n", "frame size", "1280x720", "2560x1440");
  std::printf("%-30s %14.0f %14.0f\n", "CreateBrowser to OnPaint ms", results[0].firstPaintMs, results[1].firstPaintMs);
  std::printf("%-30s %14.1f %14.1f\n", "Chromium frames/s", results[0].produced / results[0].seconds,
              results[1].produced / results[1].seconds);
  std::printf("%-30s %14llu %14llu\n", "Chromium frames", (unsigned long long)results[0].produced,
              (unsigned long long)results[1].produced);
  std::printf("%-30s %14llu %14llu\n", "OnPaint calls", (unsigned long long)results[0].painted,
              (unsigned long long)results[1].painted);
  std::printf("%-30s %13.1f%% %13.1f%%\n", "OnPaint / Chromium frames",
              results[0].produced ? 100.0 * results[0].painted / results[0].produced : 0,
              results[1].produced ? 100.0 * results[1].painted / results[1].produced : 0);
  std::printf("%-30s %14.2f %14.2f\n", "engine CPU ms per OnPaint", results[0].cpuMsPerFrame, results[1].cpuMsPerFrame);
  return 0;
}
