#include "browser_test_support.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <thread>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace engine_browser_test {

namespace {

constexpr char kServerScript[] = R"(
import http.server, time
class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        if self.path.startswith('/slow/'):
            chunks = int(self.path[6:])
            self.send_response(200)
            self.send_header('Content-Type', 'application/octet-stream')
            self.send_header('Content-Disposition', 'attachment; filename="slow.bin"')
            self.send_header('Content-Length', str(chunks * 16384))
            self.end_headers()
            try:
                for _ in range(chunks):
                    self.wfile.write(b'x' * 16384)
                    self.wfile.flush()
                    time.sleep(0.1)
            except OSError:
                pass
            return
        code = int(self.path[8:]) if self.path.startswith('/status/') else 200
        title = self.headers.get('Accept-Language', '') if self.path == '/lang' else self.path
        body = ('<html><head><title>%s</title></head><body>%s</body></html>' % (title, self.path)).encode()
        self.send_response(code)
        self.send_header('Content-Type', 'text/html')
        self.send_header('Content-Length', str(len(body)))
        self.end_headers()
        self.wfile.write(body)
    def log_message(self, *args):
        pass
server = http.server.ThreadingHTTPServer(('127.0.0.1', 0), Handler)
print(server.server_address[1], flush=True)
server.serve_forever()
)";

bool IsChromium(int pid) {
  return QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid))
      .symLinkTarget()
      .contains(QLatin1String("chrom"));
}

}  // namespace

std::set<int> Descendants() {
  std::multimap<int, int> children;
  for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
    bool numeric = false;
    const int pid = entry.toInt(&numeric);
    if (!numeric) continue;
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly)) continue;
    const QByteArray line = stat.readAll();
    // The parent id is the second field after the parenthesised name.
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    if (fields.size() > 1) children.emplace(fields[1].toInt(), pid);
  }
  std::set<int> found;
  std::vector<int> pending = {static_cast<int>(getpid())};
  while (!pending.empty()) {
    const int parent = pending.back();
    pending.pop_back();
    auto [begin, end] = children.equal_range(parent);
    for (auto it = begin; it != end; ++it) {
      if (found.insert(it->second).second) pending.push_back(it->second);
    }
  }
  return found;
}

CefRefPtr<CefBrowser> OpenBrowser(CefRefPtr<TestClient> client, const std::string& url,
                                  CefRefPtr<CefRequestContext> context) {
  CefWindowInfo window_info;
  window_info.SetAsWindowless(kNullWindowHandle);
  const size_t before = client->count();
  if (!CefBrowserHost::CreateBrowser(window_info, client, url, CefBrowserSettings(), nullptr,
                                     context)) {
    return nullptr;
  }
  if (!client->WaitFor("created ", before)) return nullptr;
  const Events events = client->events();
  CefRefPtr<CefBrowser> browser =
      client->browser_by_id(std::stoi(events[TestClient::Find(events, "created ", before)].substr(8)));
  // The client hears of the browser before its page exists.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (browser && !Impl(browser)->devtools()) {
    if (std::chrono::steady_clock::now() > deadline) return nullptr;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return browser;
}

void StopEngine(CefRefPtr<TestClient> client) {
  while (CefRefPtr<CefBrowser> browser = client->browser()) {
    const size_t open = client->open_browsers();
    browser->GetHost()->CloseBrowser(true);
    ASSERT_TRUE(client->WaitForOpenBrowsers(open - 1));
  }
  std::set<int> chromium;
  for (int pid : Descendants()) {
    if (IsChromium(pid)) chromium.insert(pid);
  }
  CefShutdown();
  for (int attempt = 0; attempt < 100; ++attempt) {
    for (auto it = chromium.begin(); it != chromium.end();) {
      it = kill(*it, 0) != 0 || !IsChromium(*it) ? chromium.erase(it) : std::next(it);
    }
    if (chromium.empty()) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  EXPECT_TRUE(chromium.empty()) << chromium.size() << " Chromium processes outlived CefShutdown";
  EXPECT_EQ(client->off_ui_thread(), 0) << "handlers were called off the UI thread";
}

HttpServer::HttpServer() {
  process_.start(QStringLiteral("python3"), {QStringLiteral("-c"), QString::fromLatin1(kServerScript)});
  if (process_.waitForStarted(10000) && process_.waitForReadyRead(10000)) {
    port_ = process_.readLine().trimmed().toInt();
  }
}

HttpServer::~HttpServer() {
  process_.kill();
  process_.waitForFinished(5000);
}

int UnusedPort() {
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof(address);
  bind(fd, reinterpret_cast<sockaddr*>(&address), length);
  getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
  close(fd);
  return ntohs(address.sin_port);
}

}  // namespace engine_browser_test
