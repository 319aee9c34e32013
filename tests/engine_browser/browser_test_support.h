// A recording client and the plumbing for tests that drive real browsers:
// engine start and stop, a loopback HTTP server, and a check that no
// Chromium outlives CefShutdown.

#ifndef TESTS_ENGINE_BROWSER_BROWSER_TEST_SUPPORT_H_
#define TESTS_ENGINE_BROWSER_BROWSER_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QProcess>

#include "cef_runtime/engine_test_support.h"
#include "include/cef_app.h"
#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/wrapper/cef_helpers.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/devtools/devtools_session.h"

namespace engine_browser_test {

using cef_runtime_test::ChromiumAvailable;
using cef_runtime_test::RunInFreshProcess;
using Events = std::vector<std::string>;

// Every handler call as one line ("load-end 200 http://..."), and whether
// any came off the UI thread.
class TestClient : public CefClient,
                   public CefLifeSpanHandler,
                   public CefLoadHandler,
                   public CefDisplayHandler,
                   public CefRequestHandler,
                   public CefRenderHandler {
 public:
  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  CefRefPtr<CefLoadHandler> GetLoadHandler() override { return this; }
  CefRefPtr<CefDisplayHandler> GetDisplayHandler() override { return this; }
  CefRefPtr<CefRequestHandler> GetRequestHandler() override { return this; }
  CefRefPtr<CefRenderHandler> GetRenderHandler() override { return this; }

  // What OnBeforePopup answers.
  bool cancel_popups = true;

  bool OnBeforePopup(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                     const CefString& target_url, const CefString& target_frame_name,
                     cef_window_open_disposition_t target_disposition, bool user_gesture,
                     const CefPopupFeatures& popupFeatures, CefWindowInfo& windowInfo,
                     CefRefPtr<CefClient>& client, CefBrowserSettings& settings,
                     CefRefPtr<CefDictionaryValue>& extra_info,
                     bool* no_javascript_access) override {
    Record("popup " + target_url.ToString() + " " + target_frame_name.ToString() + " " +
           std::to_string(target_disposition) + " " + std::to_string(popupFeatures.width));
    return cancel_popups;
  }
  void OnAfterCreated(CefRefPtr<CefBrowser> browser) override {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      browsers_.push_back(browser);
    }
    Record(std::string(browser->IsPopup() ? "created-popup " : "created ") +
           std::to_string(browser->GetIdentifier()));
  }
  bool DoClose(CefRefPtr<CefBrowser> browser) override {
    Record("do-close " + std::to_string(browser->GetIdentifier()));
    return false;
  }
  void OnBeforeClose(CefRefPtr<CefBrowser> browser) override {
    Record("before-close " + std::to_string(browser->GetIdentifier()));
    std::lock_guard<std::mutex> lock(mutex_);
    for (auto it = browsers_.begin(); it != browsers_.end(); ++it) {
      if ((*it)->IsSame(browser)) {
        browsers_.erase(it);
        break;
      }
    }
    changed_.notify_all();
  }

  void OnLoadingStateChange(CefRefPtr<CefBrowser> browser, bool isLoading, bool canGoBack,
                            bool canGoForward) override {
    Record("loading " + std::to_string(isLoading) + std::to_string(canGoBack) +
           std::to_string(canGoForward));
  }
  void OnLoadStart(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                   TransitionType transition_type) override {
    Record("load-start " + std::to_string(transition_type & TT_SOURCE_MASK) + " " +
           frame->GetURL().ToString());
  }
  void OnLoadEnd(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                 int httpStatusCode) override {
    Record("load-end " + std::to_string(httpStatusCode) + " " + frame->GetURL().ToString());
  }
  void OnLoadError(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                   ErrorCode errorCode, const CefString& errorText,
                   const CefString& failedUrl) override {
    Record("load-error " + std::to_string(errorCode) + " " + errorText.ToString() + " " +
           failedUrl.ToString());
  }
  void OnAddressChange(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                       const CefString& url) override {
    Record("address " + url.ToString());
  }
  void OnTitleChange(CefRefPtr<CefBrowser> browser, const CefString& title) override {
    Record("title " + title.ToString());
  }
  bool OnConsoleMessage(CefRefPtr<CefBrowser> browser, cef_log_severity_t level,
                        const CefString& message, const CefString& source,
                        int line) override {
    Record("console " + std::to_string(level) + " " + message.ToString() + " @" +
           source.ToString() + ":" + std::to_string(line));
    return false;
  }
  void OnRenderProcessTerminated(CefRefPtr<CefBrowser> browser, TerminationStatus status,
                                 int error_code, const CefString& error_string) override {
    Record("terminated " + std::to_string(status) + " " + std::to_string(error_code));
  }
  void GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) override {
    rect = CefRect(0, 0, 800, 600);
  }
  void OnPaint(CefRefPtr<CefBrowser> browser, PaintElementType type,
               const RectList& dirtyRects, const void* buffer, int width,
               int height) override {}

  // Waits (20 s at most) until an event starts with |prefix|; true if one
  // did. Counts only events after the |skip| first ones.
  bool WaitFor(const std::string& prefix, size_t skip = 0) {
    return WaitUntil([&](const Events& events) { return Find(events, prefix, skip) >= 0; });
  }
  // Waits until at most |count| browsers are open.
  bool WaitForOpenBrowsers(size_t count) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20),
                             [&] { return browsers_.size() <= count; });
  }
  // |done| runs with the client's lock held: it may only look at |events|.
  bool WaitUntil(const std::function<bool(const Events&)>& done) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return done(events_); });
  }
  // Index of the first event from |skip| on that starts with |prefix|, or -1.
  static int Find(const Events& events, const std::string& prefix, size_t skip = 0) {
    for (size_t i = skip; i < events.size(); ++i) {
      if (events[i].rfind(prefix, 0) == 0) return static_cast<int>(i);
    }
    return -1;
  }
  Events events() {
    std::lock_guard<std::mutex> lock(mutex_);
    return events_;
  }
  size_t count() {
    std::lock_guard<std::mutex> lock(mutex_);
    return events_.size();
  }
  int off_ui_thread() {
    std::lock_guard<std::mutex> lock(mutex_);
    return off_ui_thread_;
  }
  // The first open browser, or the one that is not |other|.
  CefRefPtr<CefBrowser> browser(CefRefPtr<CefBrowser> other = nullptr) {
    std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& browser : browsers_) {
      if (!other || !browser->IsSame(other)) return browser;
    }
    return nullptr;
  }
  CefRefPtr<CefBrowser> browser_by_id(int id) {
    std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& browser : browsers_) {
      if (browser->GetIdentifier() == id) return browser;
    }
    return nullptr;
  }
  size_t open_browsers() {
    std::lock_guard<std::mutex> lock(mutex_);
    return browsers_.size();
  }

  // For handlers that subclasses add.
  void Record(const std::string& event) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!CefCurrentlyOn(TID_UI)) ++off_ui_thread_;
    events_.push_back(event);
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  Events events_;
  int off_ui_thread_ = 0;
  std::vector<CefRefPtr<CefBrowser>> browsers_;
  IMPLEMENT_REFCOUNTING(TestClient);
};

// Starts the engine as the library does: own UI thread, off-screen.
inline bool StartEngine(const std::function<void(CefSettings&)>& adjust = {}) {
  CefSettings settings = cef_runtime_test::MakeSettings(true, false);
  settings.windowless_rendering_enabled = true;
  if (adjust) adjust(settings);
  return CefInitialize(CefMainArgs(0, nullptr), settings, nullptr, nullptr);
}

// Creates a browser and waits for OnAfterCreated and then for its page to
// be attached; null if either never came.
CefRefPtr<CefBrowser> OpenBrowser(CefRefPtr<TestClient> client, const std::string& url,
                                  CefRefPtr<CefRequestContext> context = nullptr);

// Process ids of this process's descendants.
std::set<int> Descendants();

// Closes what is open, shuts the engine down and checks that every
// Chromium process is gone.
void StopEngine(CefRefPtr<TestClient> client);

// A page's protocol session, to reach Chromium behind the engine's back.
// Whether something listens on loopback |port|.
inline bool Listening(int port) {
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const bool connected = connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
  close(fd);
  return connected;
}

inline cefengine::BrowserImpl* Impl(CefRefPtr<CefBrowser> browser) {
  return static_cast<cefengine::BrowserImpl*>(browser.get());
}

// A loopback HTTP server in a Python child: /status/N answers N, /lang
// answers a page titled with the request's Accept-Language, /slow/N sends a
// download of N 16 KiB pieces, one every 100 ms, anything else 200 with a
// page titled with its path.
class HttpServer {
 public:
  HttpServer();
  ~HttpServer();
  bool running() const { return port_ > 0; }
  std::string Url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(port_) + path;
  }

 private:
  QProcess process_;
  int port_ = 0;
};

// A port nothing listens on.
int UnusedPort();

}  // namespace engine_browser_test

#endif  // TESTS_ENGINE_BROWSER_BROWSER_TEST_SUPPORT_H_
