// Downloads put to the client's CefDownloadHandler.

#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "browser_test_support.h"
#include "include/cef_download_handler.h"
#include "support/engine_downloads.h"

namespace engine_browser_test {
namespace {

class DownloadClient : public TestClient, public CefDownloadHandler {
 public:
  CefRefPtr<CefDownloadHandler> GetDownloadHandler() override { return this; }

  // Where OnBeforeDownload saves, without a dialog; CanDownload refuses
  // every URL when |refuse| is set.
  std::string target;
  bool refuse = false;

  bool CanDownload(CefRefPtr<CefBrowser> browser, const CefString& url,
                   const CefString& request_method) override {
    Record("can " + request_method.ToString());
    return !refuse;
  }
  bool OnBeforeDownload(CefRefPtr<CefBrowser> browser, CefRefPtr<CefDownloadItem> item,
                        const CefString& suggested_name,
                        CefRefPtr<CefBeforeDownloadCallback> callback) override {
    Record("before " + std::to_string(item->GetId()) + " " + item->GetMimeType().ToString() +
           " " + std::to_string(!suggested_name.empty()));
    callback->Continue(target, false);
    return true;
  }
  void OnDownloadUpdated(CefRefPtr<CefBrowser> browser, CefRefPtr<CefDownloadItem> item,
                         CefRefPtr<CefDownloadItemCallback> callback) override {
    if (item->IsComplete()) {
      Record("complete " + std::to_string(item->GetReceivedBytes()) + " " +
             item->GetFullPath().ToString());
    } else if (item->IsCanceled()) {
      Record("canceled " + std::to_string(item->GetReceivedBytes()));
    } else if (item->IsInProgress()) {
      std::lock_guard<std::mutex> lock(progress_mutex_);
      progress_.push_back({item->GetReceivedBytes(), item->GetTotalBytes()});
      if (cancel_at > 0 && item->GetReceivedBytes() >= cancel_at) callback->Cancel();
    }
  }

  // In-progress updates cancel the download once this much arrived; 0:
  // never.
  int64_t cancel_at = 0;
  // Received and total bytes of each in-progress update.
  std::vector<std::pair<int64_t, int64_t>> progress() {
    std::lock_guard<std::mutex> lock(progress_mutex_);
    return progress_;
  }

 private:
  std::mutex progress_mutex_;
  std::vector<std::pair<int64_t, int64_t>> progress_;
  IMPLEMENT_REFCOUNTING(DownloadClient);
};

TEST(BrowserDownloads, StartDownloadSavesWhereTheClientSaysUnlessItRefuses) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    QTemporaryDir folder;
    CefRefPtr<DownloadClient> client = new DownloadClient;
    client->target = folder.filePath("notes.txt").toStdString();
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, "data:text/html,<p>downloads</p>");
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("loading 000"));

    browser->GetHost()->StartDownload("data:text/plain,hello%20there");
    ASSERT_TRUE(client->WaitFor("complete 11 " + client->target));
    EXPECT_GE(TestClient::Find(client->events(), "can GET"), 0);
    EXPECT_GE(TestClient::Find(client->events(), "before 1 text/plain 1"), 0);
    QFile saved(folder.filePath("notes.txt"));
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), "hello there");
    EXPECT_EQ(client->off_ui_thread(), 0);

    // Refused, the download never starts.
    client->refuse = true;
    const size_t before = client->count();
    browser->GetHost()->StartDownload("data:text/plain,refused");
    ASSERT_TRUE(client->WaitFor("can GET", before));
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_LT(TestClient::Find(client->events(), "before ", before), 0);
    StopEngine(client);
  });
}

TEST(BrowserDownloads, ASlowDownloadReportsItsProgressAndACancelMidwayLeavesNoFile) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    HttpServer http;
    ASSERT_TRUE(http.running());
    ASSERT_TRUE(StartEngine());
    QTemporaryDir folder;
    CefRefPtr<DownloadClient> client = new DownloadClient;
    client->target = folder.filePath("slow.bin").toStdString();
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, http.Url("/page"));
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("loading 000"));

    // 1 MiB in about six seconds: several updates, each further along.
    constexpr int64_t kSize = 64 * 16384;
    browser->GetHost()->StartDownload(http.Url("/slow/64"));
    ASSERT_TRUE(client->WaitFor("complete " + std::to_string(kSize)));
    const auto progress = client->progress();
    ASSERT_GE(progress.size(), 3u);
    int increases = 0;
    for (size_t i = 0; i < progress.size(); ++i) {
      // Unknown (-1) only before Chromium's first report.
      EXPECT_TRUE(progress[i].second == kSize || (progress[i].second == -1 && progress[i].first == 0))
          << i << ": " << progress[i].first << " of " << progress[i].second;
      if (i > 0) {
        EXPECT_GE(progress[i].first, progress[i - 1].first);
        increases += progress[i].first > progress[i - 1].first;
      }
    }
    EXPECT_GE(increases, 2);
    EXPECT_LT(progress.front().first, kSize);
    EXPECT_EQ(QFileInfo(folder.filePath("slow.bin")).size(), kSize);
    ASSERT_TRUE(QFile::remove(folder.filePath("slow.bin")));

    // Cancelled midway: the engine's partial file goes, and nothing arrives
    // at the target.
    const QStringList before = brovia_test::engineDownloadFiles();
    client->cancel_at = 4 * 16384;
    const size_t skip = client->count();
    browser->GetHost()->StartDownload(http.Url("/slow/64"));
    bool begun = false;
    for (int waited = 0; waited < 5000 && !begun; waited += 20) {
      begun = brovia_test::engineDownloadFiles() != before;
      if (!begun) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_TRUE(begun) << "no partial file was seen";
    ASSERT_TRUE(client->WaitFor("canceled ", skip));
    const Events events = client->events();
    const std::string canceled = events[TestClient::Find(events, "canceled ", skip)];
    EXPECT_GE(std::stoll(canceled.substr(9)), client->cancel_at);
    EXPECT_LT(std::stoll(canceled.substr(9)), kSize);
    bool gone = false;
    for (int waited = 0; waited < 5000 && !gone; waited += 100) {
      gone = brovia_test::engineDownloadFiles() == before;
      if (!gone) std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    EXPECT_TRUE(gone) << brovia_test::engineDownloadFiles().join(' ').toStdString();
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList());
    EXPECT_LT(TestClient::Find(client->events(), "complete ", skip), 0);
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
