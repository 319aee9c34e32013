// The inspector: a DevTools window on the host's display, its front end
// reaching the page through a loopback WebSocket that only it can name.

#include <signal.h>
#include <unistd.h>

#include <future>
#include <map>
#include <thread>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTcpSocket>

#include "browser_test_support.h"
#include "include/cef_task.h"
#include "libcef/logging_impl.h"
#include "support/private_x_server.h"

namespace engine_browser_test {
namespace {

// Port -> address of every TCP socket this process listens on.
std::map<int, QString> ListeningPorts() {
  std::set<QByteArray> inodes;
  const QDir fds(QStringLiteral("/proc/self/fd"));
  for (const QString& fd : fds.entryList(QDir::System)) {
    char buffer[64] = {};
    const ssize_t n = readlink(fds.filePath(fd).toLocal8Bit().constData(), buffer, sizeof(buffer) - 1);
    const QByteArray name(buffer, n > 0 ? static_cast<int>(n) : 0);
    if (name.startsWith("socket:[")) inodes.insert(name.mid(8, name.size() - 9));
  }
  std::map<int, QString> ports;
  for (const char* table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
    QFile file(QString::fromLatin1(table));
    if (!file.open(QIODevice::ReadOnly)) continue;
    file.readLine();
    while (!file.atEnd()) {
      const QList<QByteArray> fields = file.readLine().simplified().split(' ');
      if (fields.size() < 10 || fields[3] != "0A" || !inodes.count(fields[9])) continue;
      const QList<QByteArray> local = fields[1].split(':');
      const uint32_t ip = local[0].size() == 8 ? local[0].toUInt(nullptr, 16) : 0;
      ports[local[1].toInt(nullptr, 16)] =
          local[0].size() == 8 ? QStringLiteral("%1.%2.%3.%4")
                                     .arg(ip & 255).arg((ip >> 8) & 255)
                                     .arg((ip >> 16) & 255).arg(ip >> 24)
                               : QStringLiteral("ipv6 ") + QString::fromLatin1(local[0]);
    }
  }
  return ports;
}

// The Chromium carrying a front end, with the switches it was given.
struct FrontEnd {
  int pid = 0;
  QString profile;  // --user-data-dir
};
FrontEnd FindFrontEnd() {
  for (int pid : Descendants()) {
    QFile file(QStringLiteral("/proc/%1/cmdline").arg(pid));
    if (!file.open(QIODevice::ReadOnly)) continue;
    FrontEnd found;
    bool helper = false;
    for (const QByteArray& arg : file.readAll().split('\0')) {
      const QString text = QString::fromLocal8Bit(arg);
      helper = helper || text.startsWith(QLatin1String("--type="));
      if (text == QLatin1String("--no-startup-window")) found.pid = pid;
      if (text.startsWith(QLatin1String("--user-data-dir="))) found.profile = text.section('=', 1);
    }
    if (found.pid && !helper) {
      found.pid = pid;
      return found;
    }
  }
  return {};
}

// The status line a WebSocket upgrade request for |path| gets.
QByteArray Upgrade(int port, const QString& path) {
  QTcpSocket socket;
  socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(port));
  if (!socket.waitForConnected(5000)) return "no connection";
  socket.write("GET " + path.toLatin1() +
               " HTTP/1.1\r\nHost: 127.0.0.1\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
               "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n");
  socket.waitForBytesWritten(5000);
  if (!socket.waitForReadyRead(5000)) return "no answer";
  return socket.readLine().trimmed();
}

// The names of the top-level windows on the display.
QString WindowNames() {
  QProcess list;
  list.start(QStringLiteral("xwininfo"), {QStringLiteral("-root"), QStringLiteral("-tree")});
  list.waitForFinished(5000);
  return QString::fromLocal8Bit(list.readAllStandardOutput());
}

bool Eventually(const std::function<bool()>& done, int ms = 20000) {
  for (int waited = 0; waited < ms; waited += 50) {
    if (done()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return done();
}

// Returns once the engine UI thread ran everything queued before.
void FlushUiThread() {
  class Mark : public CefTask {
   public:
    void Execute() override { done.set_value(); }
    std::promise<void> done;
    IMPLEMENT_REFCOUNTING(Mark);
  };
  CefRefPtr<Mark> mark = new Mark;
  std::future<void> done = mark->done.get_future();
  ASSERT_TRUE(CefPostTask(TID_UI, mark.get()));
  ASSERT_EQ(done.wait_for(std::chrono::seconds(10)), std::future_status::ready);
}

void ShowInspector(CefRefPtr<CefBrowser> browser, CefRefPtr<TestClient> client) {
  browser->GetHost()->ShowDevTools(CefWindowInfo(), client, CefBrowserSettings(), CefPoint());
}

// Opens the inspector and returns the popup browser its client was told of
// after |skip| events, or null.
CefRefPtr<CefBrowser> ShowInspectorBrowser(CefRefPtr<CefBrowser> browser,
                                           CefRefPtr<TestClient> client) {
  const size_t skip = client->count();
  ShowInspector(browser, client);
  if (!client->WaitFor("created-popup ", skip)) return nullptr;
  const Events events = client->events();
  return client->browser_by_id(
      std::stoi(events[TestClient::Find(events, "created-popup ", skip)].substr(14)));
}

// The life span events of browser |id| after |skip|, in order.
std::vector<std::string> LifeSpanOf(CefRefPtr<TestClient> client, int id, size_t skip = 0) {
  std::vector<std::string> found;
  const Events events = client->events();
  for (size_t i = skip; i < events.size(); ++i) {
    const std::string& event = events[i];
    const size_t space = event.rfind(' ');
    if (space != std::string::npos && event.substr(space + 1) == std::to_string(id) &&
        (event.rfind("created", 0) == 0 || event.rfind("do-close", 0) == 0 ||
         event.rfind("before-close", 0) == 0)) {
      found.push_back(event.substr(0, space));
    }
  }
  return found;
}

TEST(BrowserInspector, OpensAWindowOnTheDisplayThatInspectsThePageAndCloses) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  if (!QFile::exists(QStringLiteral("/usr/lib/chromium/chromium"))) GTEST_SKIP() << "no full Chromium";
  // The child that runs the scenario re-executes this test: it finds the
  // server running and must not start one of its own, which would outlive it.
  std::unique_ptr<brovia_test::PrivateXServer> server;
  if (!qEnvironmentVariableIsSet("BROVIA_TEST_XVFB")) {
    server = std::make_unique<brovia_test::PrivateXServer>();
    ASSERT_FALSE(server->display().isEmpty()) << "Xvfb did not start";
    qputenv("BROVIA_TEST_XVFB", "1");
    qputenv("DISPLAY", server->display().toLatin1());
  }
  RunInFreshProcess([] {
    HttpServer http;
    ASSERT_TRUE(http.running());
    ASSERT_TRUE(StartEngine());
    CefRefPtr<TestClient> client = new TestClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, http.Url("/inspected-page"));
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("loading 000"));
    const std::map<int, QString> before = ListeningPorts();
    EXPECT_FALSE(browser->GetHost()->HasDevTools());

    // The client meets the inspector as a popup browser of its own.
    CefRefPtr<CefBrowser> inspector = ShowInspectorBrowser(browser, client);
    ASSERT_TRUE(inspector);
    EXPECT_TRUE(browser->GetHost()->HasDevTools());
    EXPECT_TRUE(inspector->IsPopup());
    EXPECT_TRUE(inspector->IsValid());
    EXPECT_NE(inspector->GetIdentifier(), browser->GetIdentifier());
    EXPECT_FALSE(inspector->IsSame(browser));
    EXPECT_TRUE(inspector->GetHost()->GetClient() == CefRefPtr<CefClient>(client));
    FrontEnd front;
    ASSERT_TRUE(Eventually([&] { return (front = FindFrontEnd()).pid > 0; }));
    const std::map<int, QString> open = ListeningPorts();
    ASSERT_EQ(open.size(), before.size() + 1);
    int port = 0;
    for (const auto& [number, address] : open) {
      if (!before.count(number)) {
        port = number;
        EXPECT_EQ(address, QStringLiteral("127.0.0.1"));
      }
    }

    // The front end names its window after the page it reached through the
    // relay: it connected, and the page's session answered it.
    EXPECT_TRUE(Eventually([] {
      return WindowNames().contains(
          QRegularExpression(QStringLiteral("\"DevTools - [^\"]*/inspected-page")));
    })) << WindowNames().toStdString();
    EXPECT_EQ(Upgrade(port, QStringLiteral("/") + QString(32, QLatin1Char('0'))),
              "HTTP/1.1 404 Not Found");
    EXPECT_EQ(Upgrade(port, QStringLiteral("/json")), "HTTP/1.1 404 Not Found");
    // Asking again opens no second window.
    const size_t created = client->count();
    ShowInspector(browser, client);
    FlushUiThread();
    EXPECT_EQ(ListeningPorts().size(), open.size());
    EXPECT_EQ(TestClient::Find(client->events(), "created", created), -1);

    browser->GetHost()->CloseDevTools();
    FlushUiThread();
    EXPECT_FALSE(browser->GetHost()->HasDevTools());
    EXPECT_EQ(LifeSpanOf(client, inspector->GetIdentifier()),
              (std::vector<std::string>{"created-popup", "do-close", "before-close"}));
    EXPECT_FALSE(inspector->IsValid());
    EXPECT_TRUE(inspector->GetHost()->GetClient() == nullptr) << "a closed inspector holds its client";
    inspector = nullptr;
    EXPECT_EQ(ListeningPorts(), before);
    EXPECT_TRUE(Eventually([&] { return kill(front.pid, 0) != 0; })) << "the window's Chromium lives on";
    EXPECT_FALSE(QDir(front.profile).exists()) << front.profile.toStdString();

    // Opened again and closed at the screen: its Chromium goes, and so does the port.
    inspector = ShowInspectorBrowser(browser, client);
    ASSERT_TRUE(inspector);
    FrontEnd again;
    ASSERT_TRUE(Eventually([&] { return (again = FindFrontEnd()).pid > 0; }));
    ASSERT_TRUE(Eventually([] { return WindowNames().contains(QLatin1String("DevTools - ")); }));
    kill(again.pid, SIGTERM);
    EXPECT_TRUE(Eventually([&] { return !browser->GetHost()->HasDevTools(); }));
    EXPECT_TRUE(Eventually([&] { return ListeningPorts() == before; }));
    EXPECT_TRUE(client->WaitFor("before-close " + std::to_string(inspector->GetIdentifier())));

    // Closing the inspector's own browser closes its window.
    inspector = ShowInspectorBrowser(browser, client);
    ASSERT_TRUE(inspector);
    ASSERT_TRUE(Eventually([&] { return (again = FindFrontEnd()).pid > 0; }));
    inspector->GetHost()->CloseBrowser(false);
    EXPECT_TRUE(client->WaitFor("before-close " + std::to_string(inspector->GetIdentifier())));
    EXPECT_FALSE(browser->GetHost()->HasDevTools());
    EXPECT_TRUE(Eventually([&] { return kill(again.pid, 0) != 0; })) << "the window's Chromium lives on";
    EXPECT_EQ(ListeningPorts(), before);

    // A browser that closes takes its inspector along, and the client hears
    // of the inspector's end before its own.
    inspector = ShowInspectorBrowser(browser, client);
    ASSERT_TRUE(inspector);
    ASSERT_TRUE(Eventually([&] { return FindFrontEnd().pid > 0; }));
    const size_t closing = client->count();
    browser->GetHost()->CloseBrowser(true);
    ASSERT_TRUE(client->WaitForOpenBrowsers(0));
    const Events events = client->events();
    EXPECT_LT(TestClient::Find(events, "before-close " + std::to_string(inspector->GetIdentifier()), closing),
              TestClient::Find(events, "before-close " + std::to_string(browser->GetIdentifier()), closing));
    inspector = nullptr;
    EXPECT_TRUE(Eventually([] { return FindFrontEnd().pid == 0; }));
    EXPECT_EQ(ListeningPorts(), before);
    StopEngine(client);
  });
  qunsetenv("BROVIA_TEST_XVFB");
}

TEST(BrowserInspector, WithoutADisplayNothingOpens) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  for (const char* display : {"", ":1234"}) {
    SCOPED_TRACE(display);
    qputenv("DISPLAY", display);
    RunInFreshProcess([] {
      const std::string log = ::testing::TempDir() + "inspector_without_display.log";
      std::remove(log.c_str());
      ASSERT_TRUE(cefengine::SetLogFile(log));
      ASSERT_TRUE(StartEngine());
      CefRefPtr<TestClient> client = new TestClient;
      CefRefPtr<CefBrowser> browser = OpenBrowser(client, "data:text/html,<p>page");
      ASSERT_TRUE(browser);
      ASSERT_TRUE(client->WaitFor("loading 000"));
      const std::map<int, QString> before = ListeningPorts();
      const std::set<int> processes = Descendants();
      const size_t skip = client->count();
      for (int click = 0; click < 3; ++click) ShowInspector(browser, client);
      FlushUiThread();
      EXPECT_FALSE(browser->GetHost()->HasDevTools());
      EXPECT_EQ(ListeningPorts(), before);
      EXPECT_EQ(Descendants(), processes);
      EXPECT_EQ(TestClient::Find(client->events(), "created", skip), -1);
      browser->GetHost()->CloseDevTools();
      StopEngine(client);
      cefengine::SetLogFile("");
      QFile written(QString::fromStdString(log));
      ASSERT_TRUE(written.open(QIODevice::ReadOnly));
      // One line says why, however often the host asks.
      EXPECT_EQ(written.readAll().count("no inspector window is opened"), 1);
    });
  }
}

}  // namespace
}  // namespace engine_browser_test
