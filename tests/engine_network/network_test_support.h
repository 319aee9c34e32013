// A client that records what the navigation gate asks and reports, a
// loopback HTTP server, and engine start and stop for tests that drive the
// real Chromium.

#ifndef TESTS_ENGINE_NETWORK_NETWORK_TEST_SUPPORT_H_
#define TESTS_ENGINE_NETWORK_NETWORK_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include "cef_runtime/engine_test_support.h"
#include "include/cef_app.h"
#include "include/cef_browser.h"
#include "include/cef_client.h"

namespace engine_network_test {

using cef_runtime_test::ChromiumAvailable;
using cef_runtime_test::RunInFreshProcess;
using Events = std::vector<std::string>;

// Thread-safe list of what happened, one line per event.
class Recorder {
 public:
  void Record(const std::string& event);
  // Waits (20 s at most) until an event starts with |prefix|.
  bool WaitFor(const std::string& prefix);
  // Waits (20 s at most) until |done| holds for the events.
  bool WaitUntil(const std::function<bool(const Events&)>& done);
  Events events();
  // The events that start with |prefix|.
  Events Matching(const std::string& prefix);

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  Events events_;
};

// A client whose request handler cancels what |cancel_browse| says and
// answers certificate errors as |certificate_action| says; everything it is
// told becomes an event: "browse URL main=1 redirect=0 rt=0 tt=1 ro=1",
// "load-end 200 URL", "load-error -3 URL", "console TEXT", "cert -202 URL".
class NetworkClient : public CefClient,
                      public CefLifeSpanHandler,
                      public CefLoadHandler,
                      public CefDisplayHandler,
                      public CefRequestHandler,
                      public CefRenderHandler {
 public:
  enum class CertificateAction { kContinue, kCancel, kRefuse };

  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  CefRefPtr<CefLoadHandler> GetLoadHandler() override { return this; }
  CefRefPtr<CefDisplayHandler> GetDisplayHandler() override { return this; }
  CefRefPtr<CefRequestHandler> GetRequestHandler() override { return this; }
  CefRefPtr<CefRenderHandler> GetRenderHandler() override { return this; }

  void OnAfterCreated(CefRefPtr<CefBrowser> browser) override;
  void OnBeforeClose(CefRefPtr<CefBrowser> browser) override;
  void OnLoadStart(CefRefPtr<CefBrowser> browser,
                   CefRefPtr<CefFrame> frame,
                   TransitionType transition_type) override;
  void OnLoadEnd(CefRefPtr<CefBrowser> browser,
                 CefRefPtr<CefFrame> frame,
                 int httpStatusCode) override;
  void OnLoadError(CefRefPtr<CefBrowser> browser,
                   CefRefPtr<CefFrame> frame,
                   ErrorCode errorCode,
                   const CefString& errorText,
                   const CefString& failedUrl) override;
  bool OnConsoleMessage(CefRefPtr<CefBrowser> browser,
                        cef_log_severity_t level,
                        const CefString& message,
                        const CefString& source,
                        int line) override;
  bool OnBeforeBrowse(CefRefPtr<CefBrowser> browser,
                      CefRefPtr<CefFrame> frame,
                      CefRefPtr<CefRequest> request,
                      bool user_gesture,
                      bool is_redirect) override;
  CefRefPtr<CefResourceRequestHandler> GetResourceRequestHandler(
      CefRefPtr<CefBrowser> browser,
      CefRefPtr<CefFrame> frame,
      CefRefPtr<CefRequest> request,
      bool is_navigation,
      bool is_download,
      const CefString& request_initiator,
      bool& disable_default_handling) override;
  bool OnCertificateError(CefRefPtr<CefBrowser> browser,
                          cef_errorcode_t cert_error,
                          const CefString& request_url,
                          CefRefPtr<CefSSLInfo> ssl_info,
                          CefRefPtr<CefCallback> callback) override;
  void GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) override;
  void OnPaint(CefRefPtr<CefBrowser> browser,
               PaintElementType type,
               const RectList& dirtyRects,
               const void* buffer,
               int width,
               int height) override {}

  CefRefPtr<CefBrowser> browser();
  // Counts calls made on a thread CEF does not use for them.
  int wrong_thread_calls() const { return wrong_thread_calls_; }
  void NoteThread(bool right) {
    if (!right) ++wrong_thread_calls_;
  }

  Recorder recorder;
  // Set before the browser exists.
  std::function<bool(const std::string& url)> cancel_browse;
  CefRefPtr<CefResourceRequestHandler> resource_handler;
  CertificateAction certificate_action = CertificateAction::kContinue;
  // What the last certificate error showed.
  std::string certificate_pem;
  std::string certificate_subject;
  cef_cert_status_t certificate_status = CERT_STATUS_NONE;

 private:
  std::mutex mutex_;
  CefRefPtr<CefBrowser> browser_;
  std::atomic<int> wrong_thread_calls_{0};
  IMPLEMENT_REFCOUNTING(NetworkClient);
};

// Starts the engine off-screen with its own UI thread, as the library does.
bool StartEngine(CefRefPtr<CefApp> app = nullptr);
// Creates a browser on |url| and waits for it; null if none came.
CefRefPtr<CefBrowser> OpenBrowser(CefRefPtr<NetworkClient> client,
                                  const std::string& url,
                                  CefRefPtr<CefRequestContext> context = nullptr);
// Closes the browser and shuts the engine down.
void StopEngine(CefRefPtr<NetworkClient> client);

// A 37x5 PNG.
QByteArray TestPng();

// Serves the files of a temporary directory on 127.0.0.1; /redirect?to=PATH
// answers 302 to PATH.
class HttpServer {
 public:
  HttpServer();
  ~HttpServer();
  bool running() const { return port_ > 0; }
  void AddFile(const QString& name, const QByteArray& content);
  std::string Url(const std::string& path) const;

 private:
  QTemporaryDir dir_;
  QProcess process_;
  int port_ = 0;
};

}  // namespace engine_network_test

#endif  // TESTS_ENGINE_NETWORK_NETWORK_TEST_SUPPORT_H_
