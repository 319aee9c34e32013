// File choosers through CefDialogHandler: a page's <input type=file> and
// CefBrowserHost::RunFileDialog.

#include <atomic>
#include <map>

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QTemporaryDir>

#include "browser_test_support.h"
#include "include/base/cef_callback.h"
#include "include/wrapper/cef_closure_task.h"

namespace engine_browser_test {
namespace {

std::string Join(const std::vector<CefString>& values) {
  std::string joined;
  for (const CefString& value : values) joined += (joined.empty() ? "" : ",") + value.ToString();
  return joined;
}

// Answers each chooser from another thread with |answer| (Cancel when
// empty), or holds its callback.
class FileClient : public TestClient, public CefDialogHandler, public CefRunFileDialogCallback {
 public:
  CefRefPtr<CefDialogHandler> GetDialogHandler() override { return handles ? this : nullptr; }
  bool OnFileDialog(CefRefPtr<CefBrowser>, FileDialogMode mode, const CefString& title,
                    const CefString& default_file_path, const std::vector<CefString>& filters,
                    const std::vector<CefString>& extensions,
                    const std::vector<CefString>& descriptions,
                    CefRefPtr<CefFileDialogCallback> callback) override {
    if (filters.size() == extensions.size() && filters.size() == descriptions.size()) {
      for (size_t i = 0; i < filters.size(); ++i) {
        expansions[filters[i]] = extensions[i].ToString() + "|" + descriptions[i].ToString();
      }
    }
    if (hold) held = callback;
    Record("file-dialog " + std::to_string(mode) + " " + title.ToString() + "|" +
           default_file_path.ToString() + " " + Join(filters));
    if (hold) return true;
    CefPostDelayedTask(TID_IO,
                       base::BindOnce(
                           [](CefRefPtr<CefFileDialogCallback> callback,
                              std::vector<CefString> answer) {
                             if (answer.empty()) {
                               callback->Cancel();
                             } else {
                               callback->Continue(answer);
                             }
                             callback->Continue({"/ignored"});
                           },
                           callback, answer),
                       30);
    return true;
  }
  void OnFileDialogDismissed(const std::vector<CefString>& paths) override {
    Record("dismissed " + Join(paths));
  }

  std::atomic<bool> handles{true};
  bool hold = false;
  std::vector<CefString> answer;
  CefRefPtr<CefFileDialogCallback> held;
  // Each filter's extensions and description, as "ext;ext|description".
  std::map<std::string, std::string> expansions;
};

constexpr char kPage[] =
    "data:text/html,<style>body{margin:0} input{display:block;width:300px;height:50px}</style>"
    "<input id=one type=file accept=' .PNG, image/jpeg,bogus'>"
    "<input id=many type=file multiple><input id=dir type=file webkitdirectory><script>"
    "for (const input of document.querySelectorAll('input')) input.onchange = () =>"
    "  console.log(input.id, [...input.files].map(f =>"
    "      (f.webkitRelativePath || f.name) + ':' + f.size).join(' '));</script>";

void Click(CefRefPtr<CefBrowser> browser, int y) {
  CefMouseEvent mouse;
  mouse.x = 100;
  mouse.y = y;
  browser->GetHost()->SendMouseClickEvent(mouse, MBT_LEFT, false, 1);
  browser->GetHost()->SendMouseClickEvent(mouse, MBT_LEFT, true, 1);
}

TEST(BrowserDialogs, FileChoosersAreTheClients) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::string png = dir.filePath("pic.png").toStdString();
    const std::string txt = dir.filePath("notes.txt").toStdString();
    for (const auto& [path, text] : {std::pair{png, "hello"}, std::pair{txt, "abc"}}) {
      QFile file(QString::fromStdString(path));
      ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) > 0);
    }
    const bool mime_known = QMimeDatabase().mimeTypeForName("image/jpeg").isValid();
    ASSERT_TRUE(StartEngine());
    CefRefPtr<FileClient> client = new FileClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, kPage);
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("load-end"));

    // Cancelled: the input stays empty, and the next click asks again.
    size_t before = client->count();
    Click(browser, 25);
    ASSERT_TRUE(client->WaitFor("file-dialog 0 | image/jpeg,.png", before));
    EXPECT_EQ(client->expansions[".png"], ".png|");
    EXPECT_TRUE(!mime_known || client->expansions["image/jpeg"].find(".jpg;") != std::string::npos);
    browser->GetMainFrame()->ExecuteJavaScript(
        "setTimeout(() => console.log('count', one.files.length), 300)", "", 0);
    ASSERT_TRUE(client->WaitFor("console 2 count 0", before));
    client->answer = {png, txt};
    Click(browser, 25);
    // One file only, as the input takes one.
    ASSERT_TRUE(client->WaitFor("console 2 one", before));
    EXPECT_EQ(TestClient::Find(client->events(), "console 2 one pic.png:5 @", before),
              TestClient::Find(client->events(), "console 2 one", before));

    before = client->count();
    client->answer = {"", png, txt};  // the empty path is no file
    Click(browser, 75);
    ASSERT_TRUE(client->WaitFor("file-dialog 1 | ", before));
    EXPECT_TRUE(client->WaitFor("console 2 many pic.png:5 notes.txt:3", before));

    before = client->count();
    client->answer = {dir.path().toStdString()};
    Click(browser, 125);
    ASSERT_TRUE(client->WaitFor("file-dialog 2 | ", before));
    EXPECT_TRUE(client->WaitFor("console 2 dir " + QFileInfo(dir.path()).fileName().toStdString() +
                                "/", before));

    // Without a handler the chooser is cancelled and the page goes on.
    client->handles = false;
    before = client->count();
    Click(browser, 25);
    browser->GetMainFrame()->ExecuteJavaScript("setTimeout(() => console.log('alive'), 300)",
                                               "", 0);
    ASSERT_TRUE(client->WaitFor("console 2 alive", before));
    EXPECT_EQ(TestClient::Find(client->events(), "file-dialog", before), -1);
    client->handles = true;

    // A chooser whose page went no longer holds the browser's one dialog, and
    // its answer is ignored.
    client->hold = true;
    before = client->count();
    Click(browser, 25);
    ASSERT_TRUE(client->WaitFor("file-dialog 0", before));
    browser->GetMainFrame()->LoadURL(std::string(kPage) + "<p>again");
    ASSERT_TRUE(client->WaitFor("load-end", before));
    CefRefPtr<CefFileDialogCallback> stale = client->held;

    // RunFileDialog asks the same handler; a callback dropped cancels.
    browser->GetHost()->RunFileDialog(FILE_DIALOG_OPEN_MULTIPLE, "Pick", "/tmp/x",
                                      {"image/*", ".txt"}, client.get());
    ASSERT_TRUE(client->WaitFor("file-dialog 1 Pick|/tmp/x image/*,.txt", before));
    const std::string images = client->expansions["image/*"];
    EXPECT_EQ(images.substr(images.find('|')), "|Image Files");
    EXPECT_TRUE(!mime_known || images.find(".png;") != std::string::npos);
    stale->Continue({png});
    stale = client->held = nullptr;
    EXPECT_TRUE(client->WaitFor("dismissed ", before));
    client->hold = false;
    client->answer = {png, txt};
    browser->GetHost()->RunFileDialog(FILE_DIALOG_OPEN, "", "", {}, client.get());
    EXPECT_TRUE(client->WaitFor("dismissed " + png, before));
    EXPECT_EQ(client->events().back(), "dismissed " + png);
    client->handles = false;
    const size_t unhandled = client->count();
    browser->GetHost()->RunFileDialog(FILE_DIALOG_SAVE, "", "", {}, client.get());
    EXPECT_TRUE(client->WaitFor("dismissed ", unhandled));
    EXPECT_EQ(TestClient::Find(client->events(), "file-dialog", unhandled), -1);
    EXPECT_EQ(TestClient::Find(client->events(), "console 2 one", before), -1);

    EXPECT_EQ(client->off_ui_thread(), 0);
    browser = nullptr;
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
