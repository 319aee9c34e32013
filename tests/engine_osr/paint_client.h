// A client that keeps every view paint of its browser, for the engine's frame tests, and how they
// start the engine and open a page.

#pragma once

#include <QImage>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "include/cef_client.h"

namespace engine_osr_test {

struct Paint {
  QImage image;  // a copy of the lent buffer
  std::vector<CefRect> rects;
  bool onUiThread;
};

class PaintClient : public CefClient, public CefLifeSpanHandler, public CefRenderHandler, public CefRequestHandler {
 public:
  explicit PaintClient(int scale) : scale(scale) {}
  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  CefRefPtr<CefRenderHandler> GetRenderHandler() override { return this; }
  CefRefPtr<CefRequestHandler> GetRequestHandler() override { return this; }
  void OnRenderProcessTerminated(CefRefPtr<CefBrowser>, TerminationStatus, int, const CefString&) override;
  void OnAfterCreated(CefRefPtr<CefBrowser> created) override;
  void OnBeforeClose(CefRefPtr<CefBrowser>) override;
  void GetViewRect(CefRefPtr<CefBrowser>, CefRect& rect) override { rect = CefRect(0, 0, width, 240); }
  bool GetScreenInfo(CefRefPtr<CefBrowser>, CefScreenInfo& info) override;
  void OnPaint(CefRefPtr<CefBrowser>, PaintElementType type, const RectList& rects, const void* buffer, int w,
               int h) override;

  // Waits (20 s at most) for |done|, which reads the members under the lock.
  bool waitFor(const std::function<bool()>& done);
  // The device pixel (x, y) of the last paint shows |rgb|.
  bool waitForColour(int x, int y, QRgb rgb);
  std::vector<Paint> snapshot();
  CefRefPtr<CefBrowser> currentBrowser();
  void update(const std::function<void()>& change);

  std::atomic<int> scale;
  std::atomic<int> width{320};
  std::mutex mutex;
  std::condition_variable changed;
  // Guarded by |mutex|.
  CefRefPtr<CefBrowser> browser;
  std::vector<Paint> paints;
  int terminated = 0;
  IMPLEMENT_REFCOUNTING(PaintClient);
};

// Starts the engine off-screen, as the library does.
bool startEngine();

// Opens |html| in a request context of its own (so that its Chromium runs at the client's scale)
// at 60 frames a second; false unless the client had OnAfterCreated.
bool openPage(CefRefPtr<PaintClient> client, const QTemporaryDir& cache, const char* html);

}  // namespace engine_osr_test
