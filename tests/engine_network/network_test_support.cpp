#include "network_test_support.h"

#include <chrono>
#include <thread>

#include <QBuffer>
#include <QFile>
#include <QImage>

#include "include/cef_ssl_info.h"
#include "include/wrapper/cef_helpers.h"

namespace engine_network_test {

namespace {

constexpr std::chrono::seconds kWait{20};

constexpr char kHttpServerScript[] = R"(
import http.server, sys
class Handler(http.server.SimpleHTTPRequestHandler):
    def do_GET(self):
        if self.path.startswith('/redirect?to='):
            self.send_response(302)
            self.send_header('Location', self.path[len('/redirect?to='):])
            self.send_header('Content-Length', '0')
            self.end_headers()
            return
        super().do_GET()
    def log_message(self, *args):
        pass
handler = lambda *a, **k: Handler(*a, directory=sys.argv[1], **k)
server = http.server.ThreadingHTTPServer(('127.0.0.1', 0), handler)
print(server.server_address[1], flush=True)
server.serve_forever()
)";

std::string Flag(const char* name, bool value) {
  return std::string(" ") + name + "=" + (value ? "1" : "0");
}

}  // namespace

void Recorder::Record(const std::string& event) {
  std::lock_guard<std::mutex> lock(mutex_);
  events_.push_back(event);
  changed_.notify_all();
}

bool Recorder::WaitFor(const std::string& prefix) {
  return WaitUntil([&](const Events& events) {
    for (const std::string& event : events) {
      if (event.rfind(prefix, 0) == 0) return true;
    }
    return false;
  });
}

bool Recorder::WaitUntil(const std::function<bool(const Events&)>& done) {
  std::unique_lock<std::mutex> lock(mutex_);
  return changed_.wait_for(lock, kWait, [&] { return done(events_); });
}

Events Recorder::events() {
  std::lock_guard<std::mutex> lock(mutex_);
  return events_;
}

Events Recorder::Matching(const std::string& prefix) {
  Events found;
  for (const std::string& event : events()) {
    if (event.rfind(prefix, 0) == 0) found.push_back(event);
  }
  return found;
}

void NetworkClient::OnAfterCreated(CefRefPtr<CefBrowser> browser) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    browser_ = browser;
  }
  recorder.Record("created");
}

void NetworkClient::OnBeforeClose(CefRefPtr<CefBrowser> browser) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    browser_ = nullptr;
  }
  recorder.Record("closed");
}

void NetworkClient::OnLoadStart(CefRefPtr<CefBrowser> browser,
                                CefRefPtr<CefFrame> frame,
                                TransitionType transition_type) {
  NoteThread(CefCurrentlyOn(TID_UI));
  recorder.Record("load-start " + frame->GetURL().ToString());
}

void NetworkClient::OnLoadEnd(CefRefPtr<CefBrowser> browser,
                              CefRefPtr<CefFrame> frame,
                              int httpStatusCode) {
  NoteThread(CefCurrentlyOn(TID_UI));
  recorder.Record("load-end " + std::to_string(httpStatusCode) + " " +
                  frame->GetURL().ToString());
}

void NetworkClient::OnLoadError(CefRefPtr<CefBrowser> browser,
                                CefRefPtr<CefFrame> frame,
                                ErrorCode errorCode,
                                const CefString& errorText,
                                const CefString& failedUrl) {
  NoteThread(CefCurrentlyOn(TID_UI));
  recorder.Record("load-error " + std::to_string(errorCode) + " " +
                  failedUrl.ToString());
}

bool NetworkClient::OnConsoleMessage(CefRefPtr<CefBrowser> browser,
                                     cef_log_severity_t level,
                                     const CefString& message,
                                     const CefString& source,
                                     int line) {
  recorder.Record("console " + message.ToString());
  return false;
}

bool NetworkClient::OnBeforeBrowse(CefRefPtr<CefBrowser> browser,
                                   CefRefPtr<CefFrame> frame,
                                   CefRefPtr<CefRequest> request,
                                   bool user_gesture,
                                   bool is_redirect) {
  NoteThread(CefCurrentlyOn(TID_UI));
  const std::string url = request->GetURL().ToString();
  recorder.Record("browse " + url + Flag("main", frame && frame->IsMain()) +
                  Flag("redirect", is_redirect) +
                  " rt=" + std::to_string(request->GetResourceType()) +
                  " tt=" + std::to_string(request->GetTransitionType()) +
                  Flag("ro", request->IsReadOnly()));
  return cancel_browse && cancel_browse(url);
}

CefRefPtr<CefResourceRequestHandler> NetworkClient::GetResourceRequestHandler(
    CefRefPtr<CefBrowser> browser,
    CefRefPtr<CefFrame> frame,
    CefRefPtr<CefRequest> request,
    bool is_navigation,
    bool is_download,
    const CefString& request_initiator,
    bool& disable_default_handling) {
  NoteThread(CefCurrentlyOn(TID_IO));
  recorder.Record("resource " + request->GetURL().ToString() +
                  Flag("nav", is_navigation));
  return resource_handler;
}

bool NetworkClient::OnCertificateError(CefRefPtr<CefBrowser> browser,
                                       cef_errorcode_t cert_error,
                                       const CefString& request_url,
                                       CefRefPtr<CefSSLInfo> ssl_info,
                                       CefRefPtr<CefCallback> callback) {
  NoteThread(CefCurrentlyOn(TID_UI));
  CefRefPtr<CefX509Certificate> certificate = ssl_info->GetX509Certificate();
  if (certificate) {
    CefRefPtr<CefBinaryValue> pem = certificate->GetPEMEncoded();
    certificate_pem.resize(pem->GetSize());
    pem->GetData(certificate_pem.data(), certificate_pem.size(), 0);
    certificate_subject = certificate->GetSubject()->GetDisplayName().ToString();
  }
  certificate_status = ssl_info->GetCertStatus();
  recorder.Record("cert " + std::to_string(cert_error) + " " +
                  request_url.ToString());
  switch (certificate_action) {
    case CertificateAction::kRefuse:
      return false;
    case CertificateAction::kCancel:
      // Decided later and elsewhere, as a prompt would.
      std::thread([callback] { callback->Cancel(); }).detach();
      return true;
    case CertificateAction::kContinue:
      callback->Continue();
      return true;
  }
  return false;
}

void NetworkClient::GetViewRect(CefRefPtr<CefBrowser> browser, CefRect& rect) {
  rect = CefRect(0, 0, 800, 600);
}

CefRefPtr<CefBrowser> NetworkClient::browser() {
  std::lock_guard<std::mutex> lock(mutex_);
  return browser_;
}

bool StartEngine(CefRefPtr<CefApp> app) {
  CefSettings settings = cef_runtime_test::MakeSettings(true, false);
  settings.windowless_rendering_enabled = true;
  return CefInitialize(CefMainArgs(0, nullptr), settings, app, nullptr);
}

CefRefPtr<CefBrowser> OpenBrowser(CefRefPtr<NetworkClient> client,
                                  const std::string& url,
                                  CefRefPtr<CefRequestContext> context) {
  CefWindowInfo window_info;
  window_info.SetAsWindowless(kNullWindowHandle);
  if (!CefBrowserHost::CreateBrowser(window_info, client, url,
                                     CefBrowserSettings(), nullptr, context) ||
      !client->recorder.WaitFor("created")) {
    return nullptr;
  }
  return client->browser();
}

void StopEngine(CefRefPtr<NetworkClient> client) {
  if (CefRefPtr<CefBrowser> browser = client->browser()) {
    browser->GetHost()->CloseBrowser(true);
    EXPECT_TRUE(client->recorder.WaitFor("closed"));
  }
  CefShutdown();
  EXPECT_EQ(client->wrong_thread_calls(), 0)
      << "handlers were called on the wrong thread";
}

QByteArray TestPng() {
  QImage image(37, 5, QImage::Format_RGB32);
  image.fill(Qt::red);
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return png;
}

HttpServer::HttpServer() {
  process_.start(QStringLiteral("python3"),
                 {QStringLiteral("-c"), QString::fromLatin1(kHttpServerScript),
                  dir_.path()});
  if (process_.waitForStarted(10000) && process_.waitForReadyRead(10000)) {
    port_ = process_.readLine().trimmed().toInt();
  }
}

HttpServer::~HttpServer() {
  process_.kill();
  process_.waitForFinished(5000);
}

void HttpServer::AddFile(const QString& name, const QByteArray& content) {
  QFile file(dir_.filePath(name));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(content);
}

std::string HttpServer::Url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

}  // namespace engine_network_test
