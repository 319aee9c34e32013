#include "libcef/browser/render_side.h"

#include <mutex>
#include <utility>

#include "include/cef_client.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

namespace {

std::mutex& FactoryMutex() {
  static std::mutex mutex;
  return mutex;
}

RenderSideFactory& Factory() {
  static RenderSideFactory factory;
  return factory;
}

}  // namespace

void SetRenderSideFactory(RenderSideFactory factory) {
  std::lock_guard<std::mutex> lock(FactoryMutex());
  Factory() = std::move(factory);
}

RenderSideFactory GetRenderSideFactory() {
  std::lock_guard<std::mutex> lock(FactoryMutex());
  return Factory();
}

void SendToBrowserProcess(CefRefPtr<BrowserImpl> browser,
                          CefRefPtr<CefFrame> frame,
                          CefRefPtr<CefProcessMessage> message) {
  if (!browser || !message) {
    return;
  }
  PostUiTask([browser, frame, message] {
    if (!browser->IsValid()) {
      return;
    }
    if (CefRefPtr<CefClient> client = browser->client()) {
      client->OnProcessMessageReceived(browser.get(), frame, PID_RENDERER,
                                       message);
    }
  });
}

}  // namespace cefengine
