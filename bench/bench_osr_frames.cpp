// Frames of an animated page through the engine's browsers, with both frame sources side by side
// (the PNG screencast and the X server), for 1280x720 at device scale 1 and 2 and 1920x1080 at
// scale 1: frames the source produced, OnPaint calls, the share delivered, this process's CPU per
// painted frame, Chromium's (and Xvfb's) CPU, CreateBrowser to the first OnPaint (cold: with the
// Chromium of a new context starting; warm: with it up), and a key press to the first frame that
// shows it.
//
// The frame source is chosen once per process (BROVIA_FRAME_SOURCE), so each source runs in a
// child process of this program ("--child SOURCE"), which prints one line of figures per size.
// Goals: the X source at least 50 fps at all sizes and 4 times the screencast at 2560x1440, at
// least 95% delivered, at most 2 ms engine CPU per frame at 2560x1440, first paint under 500 ms
// with the engine up, key to frame within 2 frame intervals.

#include <dirent.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QUrl>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <functional>
#include <future>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "include/cef_app.h"
#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/cef_request_context.h"
#include "include/cef_task.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/script_runner.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/devtools/devtools_session.h"

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

// Every pixel changes every frame while animating: the background colour cycles and forty boxes
// move. A key press recolours the marker in the top-left corner; the page counts its frames.
const char kAnimatedPage[] = R"(<html><body style="margin:0;overflow:hidden"><script>
let paused = true, frames = 0, keys = 0;
const boxes = [];
for (let i = 0; i < 40; i++) {
  const b = document.createElement('div');
  b.style.cssText = 'position:absolute;width:60px;height:60px;background:hsl(' + i * 9 + ',80%,50%)';
  document.body.appendChild(b); boxes.push(b);
}
const marker = document.createElement('div');
marker.style.cssText = 'position:absolute;left:0;top:0;width:40px;height:40px;z-index:9;background:rgb(0,0,0)';
document.body.appendChild(marker);
addEventListener('keydown', () => { keys++; marker.style.background = 'rgb(' + keys % 256 + ',7,9)'; });
function step(t) {
  requestAnimationFrame(step);
  if (paused) return;
  frames++;
  document.body.style.background = 'rgb(' + (t / 4 % 256 | 0) + ',' + (t / 7 % 256 | 0) + ',120)';
  boxes.forEach((b, i) => { b.style.left = ((t / 3 + i * 97) % (innerWidth - 60)) + 'px'; b.style.top = ((t / 5 + i * 53) % (innerHeight - 60)) + 'px'; });
}
requestAnimationFrame(step);
</script></body></html>)";

double cpuSeconds() {
  timespec ts;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
  return ts.tv_sec + ts.tv_nsec / 1e9;
}

// CPU seconds of every process in |group| (Chromium's process group), or of this process's
// children named |name|.
double groupCpuSeconds(pid_t group, const char* name) {
  double total = 0;
  const long ticks = sysconf(_SC_CLK_TCK);
  DIR* proc = opendir("/proc");
  if (!proc) return 0;
  while (dirent* entry = readdir(proc)) {
    if (entry->d_name[0] < '0' || entry->d_name[0] > '9') continue;
    std::ifstream stat(std::string("/proc/") + entry->d_name + "/stat");
    std::string line;
    std::getline(stat, line);
    const size_t open = line.find('('), close = line.rfind(')');
    if (open == std::string::npos || close == std::string::npos) continue;
    const std::string comm = line.substr(open + 1, close - open - 1);
    std::istringstream rest(line.substr(close + 2));
    std::string state;
    long ppid = 0, pgrp = 0, skip = 0;
    unsigned long utime = 0, stime = 0;
    rest >> state >> ppid >> pgrp;
    for (int i = 0; i < 8; ++i) rest >> skip;
    rest >> utime >> stime;
    const bool member = name ? (ppid == getpid() && comm == name) : (group > 0 && pgrp == group);
    if (member) total += double(utime + stime) / ticks;
  }
  closedir(proc);
  return total;
}

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

// A view that counts its paints and watches the marker pixel, as a client would.
class BenchClient : public CefClient, public CefLifeSpanHandler, public CefRenderHandler {
 public:
  BenchClient(int width, int height, float scale) : width_(width), height_(height), scale_(scale) {}
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
  void GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) override { rect = CefRect(0, 0, width_, height_); }
  bool GetScreenInfo(CefRefPtr<CefBrowser> browser, CefScreenInfo& info) override {
    info.device_scale_factor = scale_;
    return true;
  }
  void OnPaint(CefRefPtr<CefBrowser> browser, PaintElementType type, const RectList& dirtyRects,
               const void* buffer, int width, int height) override {
    const uint32_t marker = static_cast<const uint32_t*>(buffer)[width * 2 + 2];
    std::lock_guard<std::mutex> lock(mutex_);
    if (paints_++ == 0) first_paint_ = Clock::now();
    marker_ = marker;
    changed_.notify_all();
  }

  template <typename Predicate>
  bool wait(Predicate done, std::chrono::milliseconds timeout = 30s) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, timeout, done);
  }
  bool waitFirstPaint() { return wait([this] { return paints_ > 0; }); }
  bool waitClosed() { return wait([this] { return closed_; }); }
  // Waits until the marker pixel shows |rgb|; when it did.
  bool waitMarker(uint32_t rgb, Clock::time_point* when) {
    const bool shown = wait([&] { return (marker_ | 0xff000000u) == (rgb | 0xff000000u); }, 2s);
    *when = Clock::now();
    return shown;
  }
  CefRefPtr<CefBrowser> browser() {
    std::lock_guard<std::mutex> lock(mutex_);
    return browser_;
  }
  // For wait predicates, which run under the lock.
  CefRefPtr<CefBrowser> browserLocked() { return browser_; }
  Clock::time_point first_paint() {
    std::lock_guard<std::mutex> lock(mutex_);
    return first_paint_;
  }
  uint64_t paints() {
    std::lock_guard<std::mutex> lock(mutex_);
    return paints_;
  }

 private:
  const int width_, height_;
  const float scale_;
  std::mutex mutex_;
  std::condition_variable changed_;
  CefRefPtr<CefBrowser> browser_;
  bool closed_ = false;
  Clock::time_point first_paint_;
  uint64_t paints_ = 0;
  uint32_t marker_ = 0;
  IMPLEMENT_REFCOUNTING(BenchClient);
};

struct Result {
  double coldMs = -1, warmMs = -1;
  double pageFps = 0, sourceFps = 0, paintFps = 0;
  double delivered = 0, cpuMsPerFrame = 0, chromiumCpu = 0, xvfbCpu = 0;
  double keyMs = -1;
};

CefRefPtr<CefBrowser> open(CefRefPtr<BenchClient> client, CefRefPtr<CefRequestContext> context, double* ms) {
  CefWindowInfo window;
  window.SetAsWindowless(kNullWindowHandle);
  CefBrowserSettings settings;
  settings.windowless_frame_rate = 60;
  const std::string url = "data:text/html," + QUrl::toPercentEncoding(kAnimatedPage).toStdString();
  const Clock::time_point created = Clock::now();
  if (!CefBrowserHost::CreateBrowser(window, client, url, settings, nullptr, context) || !client->waitFirstPaint() ||
      !client->wait([&] { return client->browserLocked() != nullptr; }))
    return nullptr;
  *ms = std::chrono::duration<double, std::milli>(client->first_paint() - created).count();
  return client->browser();
}

double evaluateNumber(CefRefPtr<CefBrowser> browser, const char* expression) {
  auto* impl = static_cast<cefengine::BrowserImpl*>(browser.get());
  std::promise<double> value;
  impl->scripts()->Evaluate(QString(), QString::fromLatin1(expression), [&](const QJsonValue& result, const QString&) {
    value.set_value(result.toDouble());
  });
  return value.get_future().get();
}

void closeBrowser(CefRefPtr<BenchClient> client, CefRefPtr<CefBrowser>& browser) {
  browser->GetHost()->CloseBrowser(true);
  browser = nullptr;
  client->waitClosed();
}

Result run(int width, int height, float scale, bool x11, std::chrono::seconds duration) {
  Result result;
  QTemporaryDir cache;  // a context of its own: its Chromium runs at this scale
  CefRequestContextSettings contextSettings;
  CefString(&contextSettings.cache_path) = cache.path().toStdString();
  CefRefPtr<CefRequestContext> context = CefRequestContext::CreateContext(contextSettings, nullptr);

  // Cold: the context's Chromium starts with the first browser. Warm: a second one.
  {
    CefRefPtr<BenchClient> first = new BenchClient(width, height, scale);
    CefRefPtr<CefBrowser> browser = open(first, context, &result.coldMs);
    if (!browser) return result;
    closeBrowser(first, browser);
  }
  CefRefPtr<BenchClient> client = new BenchClient(width, height, scale);
  CefRefPtr<CefBrowser> browser = open(client, context, &result.warmMs);
  if (!browser) return result;
  auto* impl = static_cast<cefengine::BrowserImpl*>(browser.get());
  const pid_t chromium = impl->chromium()->chromium_pid();

  std::atomic<uint64_t> screencastFrames{0};
  int subscription = 0;
  onUiThread([&] {
    subscription = impl->devtools()->subscribe(impl->session_id(), [&](const QString& method, const QJsonObject&,
                                                                        const QString&) {
      if (method == QLatin1String("Page.screencastFrame")) ++screencastFrames;
    });
  });

  // The window opens and closes on a still page, so that no frame is on its way at either edge.
  auto animate = [&](bool on) {
    browser->GetMainFrame()->ExecuteJavaScript(on ? "paused = false" : "paused = true", "", 0);
    if (!on) std::this_thread::sleep_for(500ms);
  };
  animate(true);
  std::this_thread::sleep_for(1s);  // warm up
  animate(false);
  const double pageBefore = evaluateNumber(browser, "frames");
  const uint64_t sourceBefore = screencastFrames;
  const uint64_t paintedBefore = client->paints();
  const double cpuBefore = cpuSeconds();
  const double chromiumBefore = groupCpuSeconds(chromium, nullptr);
  const double xvfbBefore = groupCpuSeconds(0, "Xvfb");
  const Clock::time_point start = Clock::now();
  animate(true);
  std::this_thread::sleep_for(duration);
  const double chromiumCpu = groupCpuSeconds(chromium, nullptr) - chromiumBefore;
  const double xvfbCpu = groupCpuSeconds(0, "Xvfb") - xvfbBefore;
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  animate(false);
  const double cpu = cpuSeconds() - cpuBefore;
  const double pageFrames = evaluateNumber(browser, "frames") - pageBefore;
  const uint64_t painted = client->paints() - paintedBefore;
  // What the source produced: the screencast's frames, or for the X source every frame the page
  // drew (each changes pixels, so each is damage to copy).
  const double produced = x11 ? pageFrames : double(screencastFrames - sourceBefore);
  result.pageFps = pageFrames / seconds;
  result.sourceFps = produced / seconds;
  result.paintFps = painted / seconds;
  result.delivered = produced > 0 ? std::min(100.0, 100.0 * painted / produced) : 0;
  result.cpuMsPerFrame = painted ? cpu * 1000 / painted : 0;
  result.chromiumCpu = 100 * chromiumCpu / seconds;
  result.xvfbCpu = 100 * xvfbCpu / seconds;
  onUiThread([&] { impl->devtools()->unsubscribe(subscription); });

  // Key press to the first frame that shows it, on the still page: the median of ten.
  std::vector<double> keys;
  for (int i = 1; i <= 10; ++i) {
    CefKeyEvent key;
    key.type = KEYEVENT_RAWKEYDOWN;
    key.windows_key_code = 'A';
    key.character = key.unmodified_character = 'a';
    const Clock::time_point pressed = Clock::now();
    browser->GetHost()->SendKeyEvent(key);
    key.type = KEYEVENT_KEYUP;
    browser->GetHost()->SendKeyEvent(key);
    Clock::time_point shown;
    // BGRA in memory: rgb(i,7,9) reads as 0xffRRGGBB.
    if (client->waitMarker((uint32_t(i) << 16) | (7 << 8) | 9, &shown))
      keys.push_back(std::chrono::duration<double, std::milli>(shown - pressed).count());
    std::this_thread::sleep_for(100ms);
  }
  if (!keys.empty()) {
    std::sort(keys.begin(), keys.end());
    result.keyMs = keys[keys.size() / 2];
  }
  closeBrowser(client, browser);
  return result;
}

struct Size {
  int width, height;
  float scale;
};
const Size kSizes[] = {{1280, 720, 1}, {1280, 720, 2}, {1920, 1080, 1}};

int child(const char* source, int argc, char** argv) {
  setenv("BROVIA_FRAME_SOURCE", source, 1);
  QCoreApplication app(argc, argv);
  CefSettings settings;
  settings.multi_threaded_message_loop = true;
  settings.windowless_rendering_enabled = true;
  settings.no_sandbox = true;
  if (!CefInitialize(CefMainArgs(0, nullptr), settings, nullptr, nullptr)) {
    std::fprintf(stderr, "the engine did not start\n");
    return 1;
  }
  const bool x11 = std::strcmp(source, "x11") == 0;
  for (const Size& size : kSizes) {
    const Result r = run(size.width, size.height, size.scale, x11, 5s);
    std::printf("RESULT %d %d %g %f %f %f %f %f %f %f %f %f %f %f\n", size.width, size.height, size.scale, r.coldMs,
                r.warmMs, r.pageFps, r.sourceFps, r.paintFps, r.delivered, r.cpuMsPerFrame, r.chromiumCpu, r.xvfbCpu,
                r.keyMs, 0.0);
    std::fflush(stdout);
  }
  CefShutdown();
  return 0;
}

// Runs this program as a child for |source| and reads its figures.
std::vector<Result> measure(const char* self, const char* source) {
  std::vector<Result> results(std::size(kSizes));
  int out[2];
  if (pipe(out) != 0) return results;
  const pid_t pid = fork();
  if (pid == 0) {
    dup2(out[1], 1);
    close(out[0]);
    close(out[1]);
    execl(self, self, "--child", source, static_cast<char*>(nullptr));
    _exit(127);
  }
  close(out[1]);
  std::string text;
  char buffer[4096];
  ssize_t got;
  while ((got = read(out[0], buffer, sizeof(buffer))) > 0) text.append(buffer, size_t(got));
  close(out[0]);
  waitpid(pid, nullptr, 0);
  std::istringstream lines(text);
  std::string line;
  size_t i = 0;
  while (std::getline(lines, line) && i < results.size()) {
    if (line.rfind("RESULT ", 0) != 0) continue;
    Result& r = results[i++];
    int w, h;
    float s;
    double unused;
    std::sscanf(line.c_str(), "RESULT %d %d %g %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf", &w, &h, &s, &r.coldMs,
                &r.warmMs, &r.pageFps, &r.sourceFps, &r.paintFps, &r.delivered, &r.cpuMsPerFrame, &r.chromiumCpu,
                &r.xvfbCpu, &r.keyMs, &unused);
  }
  return results;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--child") == 0) return child(argv[2], argc, argv);

  const char* sources[2] = {"x11", "screencast"};
  std::vector<Result> results[2];
  for (int s = 0; s < 2; ++s) results[s] = measure("/proc/self/exe", sources[s]);

  std::printf("OSR frames of an animated page through the engine, X server against PNG screencast\n");
  std::printf("%-34s", "");
  for (const Size& size : kSizes) {
    char label[64];
    std::snprintf(label, sizeof(label), "%dx%d@%g", size.width, size.height, size.scale);
    std::printf(" %11s x11 %11s sc", label, "");
  }
  std::printf("\n");
  auto row = [&](const char* name, const char* format, auto field) {
    std::printf("%-34s", name);
    for (size_t i = 0; i < std::size(kSizes); ++i) {
      for (int s = 0; s < 2; ++s) {
        char cell[32];
        std::snprintf(cell, sizeof(cell), format, field(results[s][i]));
        std::printf(" %14s", cell);
      }
    }
    std::printf("\n");
  };
  row("page frames/s (rAF)", "%.1f", [](const Result& r) { return r.pageFps; });
  row("frames/s the source produced", "%.1f", [](const Result& r) { return r.sourceFps; });
  row("OnPaint calls/s", "%.1f", [](const Result& r) { return r.paintFps; });
  row("share delivered %", "%.1f", [](const Result& r) { return r.delivered; });
  row("engine CPU ms per frame", "%.2f", [](const Result& r) { return r.cpuMsPerFrame; });
  row("Chromium CPU %", "%.0f", [](const Result& r) { return r.chromiumCpu; });
  row("Xvfb CPU %", "%.0f", [](const Result& r) { return r.xvfbCpu; });
  row("CreateBrowser to OnPaint ms, cold", "%.0f", [](const Result& r) { return r.coldMs; });
  row("CreateBrowser to OnPaint ms, warm", "%.0f", [](const Result& r) { return r.warmMs; });
  row("key press to frame ms (median)", "%.1f", [](const Result& r) { return r.keyMs; });
  for (size_t i = 0; i < std::size(kSizes); ++i) {
    const double a = results[0][i].paintFps, b = results[1][i].paintFps;
    std::printf("x11 vs screencast %dx%d@%g: %.1f fps vs %.1f fps (ratio %.2f)\n", kSizes[i].width,
                kSizes[i].height, kSizes[i].scale, a, b, b > 0 ? a / b : 0.0);
  }
  return 0;
}
