#include "libcef/osr/osr_renderer.h"

#include <cmath>

#include <QJsonObject>

#include "include/base/cef_logging.h"
#include "include/cef_render_handler.h"
#include "include/cef_request_handler.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/ui_task.h"
#include "libcef/devtools/devtools_session.h"

namespace cefengine {

namespace {

// Every browser paints through an OsrRenderer.
[[maybe_unused]] const bool kRegistered = [] {
  SetRenderObserverFactory([](BrowserImpl*) -> std::unique_ptr<RenderObserver> {
    return std::make_unique<OsrRenderer>();
  });
  return true;
}();

}  // namespace

CefSize OsrRenderer::DeviceSize(BrowserImpl* browser) {
  // Rounded up, as the client promises its size (CEF does the same).
  const CefSize size = browser->view_size();
  const float scale = browser->device_scale_factor();
  return CefSize(
      std::max(1, static_cast<int>(std::ceil(static_cast<float>(size.width) * scale))),
      std::max(1, static_cast<int>(std::ceil(static_cast<float>(size.height) * scale))));
}

void OsrRenderer::OnAttached(BrowserImpl* browser) {
  // No page, or nobody to paint for: Chromium need not make frames at all.
  DevToolsSession* session = browser->devtools();
  if (!session || !browser->render_handler())
    return;
  if (browser->chromium()->uses_x11()) {
    AttachX11(browser);
    return;
  }
  source_ = std::make_unique<ScreencastSource>(
      session, browser->session_id(),
      [](std::function<void()> task, int64_t delayMs) {
        PostUiTask(std::move(task), delayMs);
      },
      [this, browser](const QImage& image,
                      const std::vector<CefRect>& dirtyRects) {
        Paint(browser, PET_VIEW, image, dirtyRects);
      });
  source_->SetFrameRate(browser->windowless_frame_rate());
  if (!browser->is_hidden())
    source_->Start();
}

void OsrRenderer::AttachX11(BrowserImpl* browser) {
  std::shared_ptr<XServer> server = browser->chromium()->x_server();
  if (!server)
    return;
  X11Source::Sinks sinks;
  sinks.paint = [this, browser](cef_paint_element_type_t type,
                                const QImage& image,
                                const std::vector<CefRect>& rects) {
    Paint(browser, type, image, rects);
  };
  sinks.popup = [browser](bool show, const CefRect& rect) {
    CefRefPtr<CefRenderHandler> handler = browser->render_handler();
    if (!handler)
      return;
    handler->OnPopupShow(browser, show);
    if (show) {
      // CEF's popup rectangle is in view coordinates.
      const float scale = browser->device_scale_factor();
      handler->OnPopupSize(
          browser, CefRect(static_cast<int>(std::lround(rect.x / scale)),
                           static_cast<int>(std::lround(rect.y / scale)),
                           static_cast<int>(std::lround(rect.width / scale)),
                           static_cast<int>(std::lround(rect.height / scale))));
    }
  };
  sinks.lost = [browser](const std::string& why) {
    LOG(ERROR) << "The page's window in the engine's X server is lost: "
               << why;
    browser->OnChromiumGone(TS_ABNORMAL_TERMINATION, 0, why);
  };
  x11_ = std::make_unique<X11Source>(
      server, browser->chromium()->chromium_pid(),
      [](std::function<void()> task, int64_t delayMs) {
        PostUiTask(std::move(task), delayMs);
      },
      std::move(sinks));
  x11_->SetFrameRate(browser->windowless_frame_rate());
  const CefSize size = DeviceSize(browser);
  x11_->SetSize(size.width, size.height);
  if (!browser->is_hidden())
    x11_->Start();

  // The page's window is found by where it is: moved to a place of its own
  // first (a popup the page opened lies where the page wanted it).
  DevToolsSession* session = browser->devtools();
  CefRefPtr<BrowserImpl> self(browser);
  // The replies may come after the page, and this renderer with it, went.
  std::weak_ptr<bool> alive = alive_;
  const QString target = browser->target_id();
  const float scale = browser->chromium()->scale_factor();
  int left = 0, top = 0;
  browser->chromium()->NextWindowPlace(&left, &top);
  session->sendCommand(
      QStringLiteral("Browser.getWindowForTarget"),
      QJsonObject{{"targetId", target}}, QString(),
      [self, this, alive, left, top, scale, target](const QJsonObject& result,
                                            const QJsonObject& error) {
        DevToolsSession* session = self->devtools();
        if (alive.expired() || !x11_ || !session || !error.isEmpty())
          return;
        const int window = result.value(QLatin1String("windowId")).toInt();
        session->sendCommand(
            QStringLiteral("Browser.setWindowBounds"),
            QJsonObject{{"windowId", window},
                        {"bounds", QJsonObject{{"left", left}, {"top", top}}}},
            QString(),
            [self, this, alive, target, scale](const QJsonObject&,
                                        const QJsonObject&) {
              DevToolsSession* session = self->devtools();
              if (alive.expired() || !x11_ || !session)
                return;
              session->sendCommand(
                  QStringLiteral("Browser.getWindowForTarget"),
                  QJsonObject{{"targetId", target}}, QString(),
                  [self, this, alive, scale](const QJsonObject& result,
                                      const QJsonObject& error) {
                    if (alive.expired() || !x11_ || !error.isEmpty())
                      return;
                    const QJsonObject bounds =
                        result.value(QLatin1String("bounds")).toObject();
                    x11_->Claim(
                        static_cast<int>(std::lround(
                            bounds.value(QLatin1String("left")).toInt() *
                            scale)),
                        static_cast<int>(std::lround(
                            bounds.value(QLatin1String("top")).toInt() *
                            scale)));
                  });
            });
      });
}

void OsrRenderer::OnAfterCreated(BrowserImpl* browser) {
  if (!*owe_frame_)
    return;
  // The next frame goes out whole; if none comes soon (a still page), one
  // is asked for.
  CefRefPtr<BrowserImpl> self(browser);
  std::weak_ptr<bool> owed = owe_frame_;
  PostUiTask(
      [self, owed] {
        std::shared_ptr<bool> owe = owed.lock();
        if (owe && *owe)
          self->Invalidate(PET_VIEW);
      },
      50);
}

void OsrRenderer::OnViewChanged(BrowserImpl* browser) {
  if (source_)
    source_->ExpectFrame();
  if (x11_) {
    const CefSize size = DeviceSize(browser);
    x11_->SetSize(size.width, size.height);
  }
}

void OsrRenderer::OnVisibilityChanged(BrowserImpl* browser, bool hidden) {
  if (source_) {
    if (hidden)
      source_->Stop();
    else
      source_->Start();
  }
  if (x11_) {
    if (hidden)
      x11_->Stop();
    else
      x11_->Start();
  }
}

void OsrRenderer::OnInvalidate(BrowserImpl* browser,
                               cef_paint_element_type_t type) {
  // Headless Chromium draws no <select> list: no popup to paint there.
  if (source_ && type == PET_VIEW)
    source_->Invalidate();
  if (x11_)
    x11_->Invalidate();
}

void OsrRenderer::OnFrameRateChanged(BrowserImpl* browser, int frame_rate) {
  if (source_)
    source_->SetFrameRate(frame_rate);
  if (x11_)
    x11_->SetFrameRate(frame_rate);
}

bool OsrRenderer::OnMouseEvent(BrowserImpl* browser,
                               const CefMouseEvent& event,
                               int button,
                               bool up,
                               int wheel_x,
                               int wheel_y) {
  if (!x11_)
    return false;
  if (button > 0 && !up)
    x11_->NoteInput();
  const float scale = browser->device_scale_factor();
  const int x = static_cast<int>(std::floor(event.x * scale));
  const int y = static_cast<int>(std::floor(event.y * scale));
  const X11Source::Route route =
      wheel_x || wheel_y ? x11_->RouteWheel(x, y, wheel_x, wheel_y)
                         : x11_->RouteMouse(x, y, button, up);
  if (route == X11Source::Route::kClosePopupFirst) {
    // As CEF does: a press beside the drop-down closes it and reaches the
    // page.
    for (const char* type : {"rawKeyDown", "keyUp"}) {
      browser->SendPageCommand(
          QStringLiteral("Input.dispatchKeyEvent"),
          QJsonObject{{"type", type},
                      {"key", "Escape"},
                      {"code", "Escape"},
                      {"windowsVirtualKeyCode", 27},
                      {"nativeVirtualKeyCode", 27}});
    }
  }
  return route == X11Source::Route::kTaken;
}

void OsrRenderer::OnKeyInput(BrowserImpl* browser) {
  if (x11_)
    x11_->NoteInput();
}

void OsrRenderer::OnDetached(BrowserImpl* browser) {
  if (source_) {
    source_->Detach();
    source_.reset();
  }
  x11_.reset();
}

void OsrRenderer::Paint(BrowserImpl* browser,
                        cef_paint_element_type_t type,
                        const QImage& image,
                        const std::vector<CefRect>& dirtyRects) {
  CefRefPtr<CefRenderHandler> handler = browser->render_handler();
  if (!handler)
    return;
  if (!browser->after_created()) {
    // As in CEF, no paint comes before OnAfterCreated (a client would drop
    // it): the page is painted whole once the client knows it.
    *owe_frame_ = true;
    return;
  }
  if (*owe_frame_ && type == PET_VIEW) {
    *owe_frame_ = false;
    handler->OnPaint(browser, type, {CefRect(0, 0, image.width(), image.height())},
                     image.constBits(), image.width(), image.height());
    return;
  }
  // The buffer is ours again when OnPaint returns; the image keeps it alive
  // until then.
  handler->OnPaint(browser, type, dirtyRects, image.constBits(),
                   image.width(), image.height());
}

}  // namespace cefengine
