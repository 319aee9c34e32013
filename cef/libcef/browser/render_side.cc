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

// Deliveries to a client running on this thread.
thread_local int tls_client_deliveries = 0;

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
  auto deliver = [browser, frame, message] {
    if (!browser->IsValid()) {
      return;
    }
    if (CefRefPtr<CefClient> client = browser->client()) {
      ++tls_client_deliveries;
      client->OnProcessMessageReceived(browser.get(), frame, PID_RENDERER,
                                       message);
      --tls_client_deliveries;
    }
  };
  // At once when the render side answers on the engine UI thread (a script's
  // result goes out without another turn of the queue), but never into a
  // delivery that is still running.
  if (tls_client_deliveries == 0 && OnUiThread()) {
    deliver();
  } else {
    PostUiTask(std::move(deliver));
  }
}

}  // namespace cefengine
