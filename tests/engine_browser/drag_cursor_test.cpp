// The operation a drop would take, told while something is dragged over the
// page.

#include "browser_test_support.h"
#include "include/cef_drag_data.h"

namespace engine_browser_test {
namespace {

class DragCursorClient : public TestClient {
 public:
  void UpdateDragCursor(CefRefPtr<CefBrowser> browser, DragOperation operation) override {
    Record("drag-cursor " + std::to_string(operation));
  }

 private:
  IMPLEMENT_REFCOUNTING(DragCursorClient);
};

TEST(BrowserDrags, DraggingOverThePageTellsTheOperationItAccepts) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    ASSERT_TRUE(StartEngine());
    CefRefPtr<DragCursorClient> client = new DragCursorClient;
    CefRefPtr<CefBrowser> browser = OpenBrowser(
        client,
        "data:text/html,<div id=t style='position:absolute;left:0;top:0;width:100px;height:100px'"
        " ondragover=\"event.preventDefault(); event.dataTransfer.dropEffect = 'copy'\"></div>");
    ASSERT_TRUE(browser);
    ASSERT_TRUE(client->WaitFor("loading 000"));

    CefRefPtr<CefDragData> data = CefDragData::Create();
    data->SetFragmentText("words");
    CefMouseEvent over;
    over.x = 50;
    over.y = 50;
    browser->GetHost()->DragTargetDragEnter(data, over, DRAG_OPERATION_EVERY);
    browser->GetHost()->DragTargetDragOver(over, DRAG_OPERATION_EVERY);
    EXPECT_TRUE(client->WaitFor("drag-cursor " + std::to_string(DRAG_OPERATION_COPY)));
    // Outside the target nothing takes the drop.
    over.x = 300;
    over.y = 300;
    browser->GetHost()->DragTargetDragOver(over, DRAG_OPERATION_EVERY);
    EXPECT_TRUE(client->WaitFor("drag-cursor " + std::to_string(DRAG_OPERATION_NONE)));
    browser->GetHost()->DragTargetDragLeave();
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_browser_test
