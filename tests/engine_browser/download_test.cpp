// Downloads put to the client's CefDownloadHandler.

#include <thread>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "browser_test_support.h"
#include "include/cef_download_handler.h"

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
    }
  }

 private:
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

}  // namespace
}  // namespace engine_browser_test
