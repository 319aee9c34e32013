#include "paint_client.h"

#include <QUrl>

#include "cef_runtime/engine_test_support.h"
#include "include/cef_request_context.h"

using namespace std::chrono_literals;

namespace engine_osr_test {

void PaintClient::OnRenderProcessTerminated(CefRefPtr<CefBrowser>, TerminationStatus, int, const CefString&) {
  update([&] { ++terminated; });
}

void PaintClient::OnAfterCreated(CefRefPtr<CefBrowser> created) {
  update([&] { browser = created; });
}

void PaintClient::OnBeforeClose(CefRefPtr<CefBrowser>) {
  update([&] { browser = nullptr; });
}

bool PaintClient::GetScreenInfo(CefRefPtr<CefBrowser>, CefScreenInfo& info) {
  info.device_scale_factor = scale;
  return true;
}

void PaintClient::OnPaint(CefRefPtr<CefBrowser>, PaintElementType type, const RectList& rects, const void* buffer,
                          int w, int h) {
  if (type != PET_VIEW) return;
  const QImage lent(static_cast<const uchar*>(buffer), w, h, w * 4, QImage::Format_ARGB32_Premultiplied);
  update([&] { paints.push_back({lent.copy(), rects, CefCurrentlyOn(TID_UI)}); });
}

bool PaintClient::waitFor(const std::function<bool()>& done) {
  std::unique_lock<std::mutex> lock(mutex);
  return changed.wait_for(lock, 20s, done);
}

bool PaintClient::waitForColour(int x, int y, QRgb rgb) {
  return waitFor([&] {
    return !paints.empty() && paints.back().image.rect().contains(x, y) &&
           paints.back().image.pixel(x, y) == (rgb | 0xff000000u);
  });
}

std::vector<Paint> PaintClient::snapshot() {
  std::lock_guard<std::mutex> lock(mutex);
  return paints;
}

CefRefPtr<CefBrowser> PaintClient::currentBrowser() {
  std::lock_guard<std::mutex> lock(mutex);
  return browser;
}

void PaintClient::update(const std::function<void()>& change) {
  std::lock_guard<std::mutex> lock(mutex);
  change();
  changed.notify_all();
}

bool startEngine() {
  CefSettings settings = cef_runtime_test::MakeSettings(true, false);
  settings.windowless_rendering_enabled = true;
  return CefInitialize(CefMainArgs(0, nullptr), settings, nullptr, nullptr);
}

bool openPage(CefRefPtr<PaintClient> client, const QTemporaryDir& cache, const char* html) {
  CefRequestContextSettings contextSettings;
  CefString(&contextSettings.cache_path) = cache.path().toStdString();
  CefWindowInfo window;
  window.SetAsWindowless(kNullWindowHandle);
  CefBrowserSettings settings;
  settings.windowless_frame_rate = 60;
  return CefBrowserHost::CreateBrowser(window, client, "data:text/html," + QUrl::toPercentEncoding(html).toStdString(),
                                       settings, nullptr, CefRequestContext::CreateContext(contextSettings, nullptr)) &&
         client->waitFor([&] { return client->browser != nullptr; });
}

}  // namespace engine_osr_test
