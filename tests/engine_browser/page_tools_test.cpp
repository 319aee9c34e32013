// Printing, find in page and context menus, which headless Chromium has no
// user interface for: the engine puts them to the client's handlers.

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "browser_test_support.h"
#include "include/cef_menu_model.h"

namespace engine_browser_test {
namespace {

class ToolsClient : public TestClient,
                    public CefPrintHandler,
                    public CefFindHandler,
                    public CefContextMenuHandler {
 public:
  CefRefPtr<CefPrintHandler> GetPrintHandler() override { return this; }
  CefRefPtr<CefFindHandler> GetFindHandler() override { return this; }
  CefRefPtr<CefContextMenuHandler> GetContextMenuHandler() override { return this; }

  void OnPrintStart(CefRefPtr<CefBrowser>) override { Record("print-start"); }
  void OnPrintSettings(CefRefPtr<CefBrowser>, CefRefPtr<CefPrintSettings>, bool) override {}
  bool OnPrintDialog(CefRefPtr<CefBrowser>, bool has_selection,
                     CefRefPtr<CefPrintDialogCallback> callback) override {
    Record("print-dialog " + std::to_string(has_selection));
    callback->Cancel();
    return true;
  }
  bool OnPrintJob(CefRefPtr<CefBrowser>, const CefString&, const CefString&,
                  CefRefPtr<CefPrintJobCallback>) override {
    return false;
  }
  void OnPrintReset(CefRefPtr<CefBrowser>) override { Record("print-reset"); }

  void OnFindResult(CefRefPtr<CefBrowser>, int identifier, int count, const CefRect& rect,
                    int active, bool final_update) override {
    Record("find " + std::to_string(identifier) + " " + std::to_string(count) + " " +
           std::to_string(active) + " " + std::to_string(!rect.IsEmpty()) + " " +
           std::to_string(final_update));
  }

  void OnBeforeContextMenu(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>,
                           CefRefPtr<CefContextMenuParams> params,
                           CefRefPtr<CefMenuModel> model) override {
    std::string ids;
    for (size_t i = 0; i < model->GetCount(); ++i) {
      ids += " " + std::to_string(model->GetCommandIdAt(i));
    }
    Record("menu " + std::to_string(params->GetTypeFlags()) + " " +
           params->GetLinkUrl().ToString() + ids);
    if (clear_menu) model->Clear();
  }
  bool RunContextMenu(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>, CefRefPtr<CefContextMenuParams>,
                      CefRefPtr<CefMenuModel>,
                      CefRefPtr<CefRunContextMenuCallback> callback) override {
    held = callback;  // before Record, which wakes the test
    Record("run-menu");
    return true;
  }
  bool OnContextMenuCommand(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>,
                            CefRefPtr<CefContextMenuParams>, int command_id,
                            EventFlags) override {
    Record("menu-command " + std::to_string(command_id));
    return false;
  }
  void OnContextMenuDismissed(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>) override {
    Record("menu-dismissed");
  }

  bool clear_menu = false;
  CefRefPtr<CefRunContextMenuCallback> held;
};

class PdfDone : public CefPdfPrintCallback {
 public:
  explicit PdfDone(CefRefPtr<ToolsClient> client) : client_(client) {}
  void OnPdfPrintFinished(const CefString&, bool ok) override {
    client_->Record("pdf " + std::to_string(ok));
  }

 private:
  CefRefPtr<ToolsClient> client_;
  IMPLEMENT_REFCOUNTING(PdfDone);
};

CefRefPtr<CefBrowser> Open(CefRefPtr<ToolsClient> client, const std::string& url) {
  const size_t before = client->count();
  CefRefPtr<CefBrowser> browser = OpenBrowser(client, url);
  return browser && client->WaitFor("load-end", before) ? browser : nullptr;
}

void RightClick(CefRefPtr<CefBrowser> browser, int x, int y) {
  CefMouseEvent mouse;
  mouse.x = x;
  mouse.y = y;
  browser->GetHost()->SendMouseClickEvent(mouse, MBT_RIGHT, false, 1);
  browser->GetHost()->SendMouseClickEvent(mouse, MBT_RIGHT, true, 1);
}

TEST(BrowserPageTools, PrintToPdfAndWindowPrint) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<ToolsClient> client = new ToolsClient;
    CefRefPtr<CefBrowser> browser = Open(client, "data:text/html,<h1>Printed</h1>");
    ASSERT_TRUE(browser);
    QTemporaryDir dir;
    const QString path = dir.filePath("page.pdf");
    size_t before = client->count();
    CefPdfPrintSettings settings;
    settings.landscape = true;
    settings.margin_type = PDF_PRINT_MARGIN_CUSTOM;
    settings.margin_top = 0.5;
    browser->GetHost()->PrintToPDF(path.toStdString(), settings, new PdfDone(client));
    ASSERT_TRUE(client->WaitFor("pdf ", before));
    EXPECT_EQ(client->events()[TestClient::Find(client->events(), "pdf ", before)], "pdf 1");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.read(4) == "%PDF");
    // Missing folders and empty paths fail without a file.
    for (const QString& bad : {dir.filePath("missing/page.pdf"), QString()}) {
      before = client->count();
      browser->GetHost()->PrintToPDF(bad.toStdString(), CefPdfPrintSettings(), new PdfDone(client));
      ASSERT_TRUE(client->WaitFor("pdf ", before));
      EXPECT_EQ(client->events()[TestClient::Find(client->events(), "pdf ", before)], "pdf 0");
    }

    before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript("window.print()", "", 0);
    ASSERT_TRUE(client->WaitFor("print-reset", before));
    Events events = client->events();
    EXPECT_EQ(Events(events.begin() + before, events.end()),
              (Events{"print-start", "print-dialog 0", "print-reset"}));
    before = client->count();
    browser->GetHost()->Print();
    EXPECT_TRUE(client->WaitFor("print-reset", before));
    EXPECT_EQ(client->off_ui_thread(), 0);
    browser = nullptr;
    StopEngine(client);
  });
}

TEST(BrowserPageTools, FindCountsSelectsAndWraps) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<ToolsClient> client = new ToolsClient;
    CefRefPtr<CefBrowser> browser =
        Open(client, "data:text/html,<p>apple pie</p><p>Apple tart</p><p>an apple</p>");
    ASSERT_TRUE(browser);
    CefRefPtr<CefBrowserHost> host = browser->GetHost();
    const auto find = [&](const std::string& text, bool forward, bool match_case,
                          bool next) {
      const size_t before = client->count();
      host->Find(text, forward, match_case, next);
      return client->WaitFor("find ", before)
                 ? client->events()[TestClient::Find(client->events(), "find ", before)]
                 : std::string("none");
    };
    EXPECT_EQ(find("apple", true, false, false), "find 1 3 1 1 1");
    EXPECT_EQ(find("apple", true, false, true), "find 1 3 2 1 1");
    EXPECT_EQ(find("apple", true, false, true), "find 1 3 3 1 1");
    EXPECT_EQ(find("apple", true, false, true), "find 1 3 1 1 1");
    EXPECT_EQ(find("apple", false, false, true), "find 1 3 3 1 1");
    EXPECT_EQ(find("APPLE", true, true, false), "find 2 0 0 0 1");
    EXPECT_EQ(find("tart", true, false, false), "find 3 1 1 1 1");

    size_t before = client->count();
    browser->GetMainFrame()->ExecuteJavaScript(
        "console.log('selected[' + getSelection() + ']')", "", 0);
    EXPECT_TRUE(client->WaitFor("console 2 selected[tart]", before));
    host->StopFinding(true);
    browser->GetMainFrame()->ExecuteJavaScript(
        "console.log('selected[' + getSelection() + ']')", "", 0);
    EXPECT_TRUE(client->WaitFor("console 2 selected[]", before));
    EXPECT_EQ(client->off_ui_thread(), 0);
    browser = nullptr;
    StopEngine(client);
  });
}

TEST(BrowserPageTools, RightClickOpensTheClientsMenu) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<ToolsClient> client = new ToolsClient;
    CefRefPtr<CefBrowser> browser = Open(
        client,
        "data:text/html,<a href='http://example.test/x' style='display:block;height:100px'>"
        "link</a><input style='position:absolute;top:200px;left:0;width:200px'>");
    ASSERT_TRUE(browser);
    const std::string page_items = std::to_string(MENU_ID_BACK) + " " +
                                   std::to_string(MENU_ID_FORWARD) + " -1 " +
                                   std::to_string(MENU_ID_RELOAD);
    size_t before = client->count();
    RightClick(browser, 20, 20);
    ASSERT_TRUE(client->WaitFor("run-menu", before));
    EXPECT_GE(TestClient::Find(client->events(),
                               "menu " + std::to_string(CM_TYPEFLAG_PAGE | CM_TYPEFLAG_LINK) +
                                   " http://example.test/x " + page_items,
                               before),
              0);
    ASSERT_TRUE(client->held);
    before = client->count();
    client->held->Continue(MENU_ID_RELOAD, EVENTFLAG_NONE);
    client->held->Cancel();  // ignored
    client->held = nullptr;
    ASSERT_TRUE(client->WaitFor("load-end", before));
    Events events = client->events();
    EXPECT_EQ(Events(events.begin() + before, events.begin() + before + 2),
              (Events{"menu-command " + std::to_string(MENU_ID_RELOAD), "menu-dismissed"}));
    EXPECT_GE(TestClient::Find(events, "load-start " + std::to_string(TT_RELOAD), before), 0);

    // An emptied model shows nothing.
    client->clear_menu = true;
    before = client->count();
    RightClick(browser, 20, 20);
    ASSERT_TRUE(client->WaitFor("menu ", before));
    browser->GetMainFrame()->ExecuteJavaScript("console.log('mark')", "", 0);
    ASSERT_TRUE(client->WaitFor("console 2 mark", before));
    EXPECT_EQ(TestClient::Find(client->events(), "run-menu", before), -1);
    client->clear_menu = false;

    // A field: the edit items; a dropped callback only dismisses.
    before = client->count();
    RightClick(browser, 20, 205);
    ASSERT_TRUE(client->WaitFor("run-menu", before));
    const std::string editable =
        "menu " + std::to_string(CM_TYPEFLAG_PAGE | CM_TYPEFLAG_EDITABLE) + "  " +
        std::to_string(MENU_ID_UNDO) + " " + std::to_string(MENU_ID_REDO) + " -1 " +
        std::to_string(MENU_ID_CUT) + " " + std::to_string(MENU_ID_COPY) + " " +
        std::to_string(MENU_ID_PASTE) + " " + std::to_string(MENU_ID_DELETE) + " -1 " +
        std::to_string(MENU_ID_SELECT_ALL);
    EXPECT_GE(TestClient::Find(client->events(), editable, before), 0);
    before = client->count();
    client->held = nullptr;
    EXPECT_TRUE(client->WaitFor("menu-dismissed", before));
    EXPECT_EQ(TestClient::Find(client->events(), "menu-command", before), -1);
    EXPECT_EQ(client->off_ui_thread(), 0);
    browser = nullptr;
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
