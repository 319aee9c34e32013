#include "libcef/browser/page_input.h"

#include <utility>

#include "libcef/browser/browser_impl.h"
#include "libcef/browser/browser_view.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/drag_source.h"
#include "libcef/browser/input_translator.h"
#include "libcef/browser/render_observer.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

PageInput::PageInput(BrowserImpl* browser) : browser_(browser) {}

QJsonObject PageInput::ToPagePoint(QJsonObject params) const {
  return browser_->view()->ToPagePoint(std::move(params));
}

void PageInput::SetFocus(bool focus) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, focus] {
    // A headless page has no window focus of its own: emulating it is what
    // makes document.hasFocus() and focus events follow the host.
    self->SendPageCommand(QStringLiteral("Emulation.setFocusEmulationEnabled"),
                          QJsonObject{{"enabled", focus}});
    if (focus) {
      self->SendPageCommand(QStringLiteral("Page.bringToFront"), {});
    }
  });
}

void PageInput::SendKeyEvent(const CefKeyEvent& event) {
  if (browser_->chromium()->uses_x11() && event.type != KEYEVENT_KEYUP) {
    CefRefPtr<BrowserImpl> self(browser_);
    RunOnUiThread([self] {
      if (RenderObserver* observer = self->render_observer()) {
        observer->OnKeyInput(self.get());
      }
    });
  }
  browser_->SendPageCommand(QStringLiteral("Input.dispatchKeyEvent"),
                            InputTranslator::KeyEvent(event));
}

void PageInput::SendMouseInput(const CefMouseEvent& event,
                               int button,
                               bool up,
                               int wheel_x,
                               int wheel_y,
                               QJsonObject params) {
  if (!browser_->chromium()->uses_x11()) {
    browser_->SendPageCommand(QStringLiteral("Input.dispatchMouseEvent"),
                              params);
    return;
  }
  // An open drop-down of a full Chromium takes its own input, through the
  // X server: the decision is the renderer's, on the engine UI thread.
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, event, button, up, wheel_x, wheel_y,
                 params = std::move(params)] {
    RenderObserver* observer = self->render_observer();
    if (observer && observer->OnMouseEvent(self.get(), event, button, up,
                                           wheel_x, wheel_y)) {
      return;
    }
    self->SendPageCommand(QStringLiteral("Input.dispatchMouseEvent"), params);
  });
}

void PageInput::SendMouseClickEvent(const CefMouseEvent& event,
                                    cef_mouse_button_type_t type,
                                    bool mouse_up,
                                    int click_count) {
  SendMouseInput(event, type == MBT_LEFT ? 1 : type == MBT_MIDDLE ? 2 : 3,
                 mouse_up, 0, 0,
                 ToPagePoint(InputTranslator::MouseClick(event, type, mouse_up,
                                                         click_count)));
}

void PageInput::SendMouseMoveEvent(const CefMouseEvent& event,
                                   bool mouse_leave) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    last_mouse_point_ = CefPoint(event.x, event.y);
  }
  SendMouseInput(event, 0, false, 0, 0,
                 ToPagePoint(InputTranslator::MouseMove(event, mouse_leave)));
}

void PageInput::SendMouseWheelEvent(const CefMouseEvent& event,
                                    int delta_x,
                                    int delta_y) {
  SendMouseInput(
      event, 0, false, delta_x, delta_y,
      ToPagePoint(InputTranslator::MouseWheel(event, delta_x, delta_y)));
}

CefPoint PageInput::last_mouse_point() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return last_mouse_point_;
}

QJsonArray PageInput::TouchPoints() const {
  QJsonArray points;
  for (const auto& [id, point] : touch_points_) {
    points.append(point);
  }
  return points;
}

void PageInput::SendTouchEvent(const CefTouchEvent& event) {
  // The protocol wants every point still down in each event; a release
  // ends the touch only when it was the last point.
  QString type;
  QJsonArray points;
  const QJsonObject point = ToPagePoint(InputTranslator::TouchPoint(event));
  {
    std::lock_guard<std::mutex> lock(mutex_);
    switch (event.type) {
      case CEF_TET_PRESSED:
        touch_points_[event.id] = point;
        type = QStringLiteral("touchStart");
        break;
      case CEF_TET_MOVED:
        touch_points_[event.id] = point;
        type = QStringLiteral("touchMove");
        break;
      case CEF_TET_RELEASED:
        touch_points_.erase(event.id);
        type = touch_points_.empty() ? QStringLiteral("touchEnd")
                                     : QStringLiteral("touchMove");
        break;
      case CEF_TET_CANCELLED:
        touch_points_.clear();
        type = QStringLiteral("touchCancel");
        break;
    }
    points = TouchPoints();
  }
  browser_->SendPageCommand(
      QStringLiteral("Input.dispatchTouchEvent"),
      QJsonObject{{"type", type},
                  {"touchPoints", points},
                  {"modifiers", InputTranslator::Modifiers(event.modifiers)}});
}

void PageInput::RunEditCommand(const char* command) {
  browser_->SendPageCommand(
      QStringLiteral("Input.dispatchKeyEvent"),
      QJsonObject{{"type", "rawKeyDown"},
                  {"commands", QJsonArray{QLatin1String(command)}}});
}

void PageInput::ImeSetComposition(const CefString& text,
                                  const CefRange& replacement_range,
                                  const CefRange& selection_range) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    composition_ = QString::fromStdString(text.ToString());
  }
  browser_->SendPageCommand(
      QStringLiteral("Input.imeSetComposition"),
      InputTranslator::ImeComposition(text, replacement_range,
                                      selection_range));
}

void PageInput::ImeCommitText(const CefString& text,
                              const CefRange& replacement_range) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    composition_.clear();
  }
  // The protocol inserts at the selection only: text that replaces a range
  // is first made the composition over that range, which the insertion
  // then commits.
  const QJsonObject composition = InputTranslator::ImeComposition(
      text, replacement_range, CefRange::InvalidRange());
  if (composition.contains(QLatin1String("replacementStart"))) {
    browser_->SendPageCommand(QStringLiteral("Input.imeSetComposition"),
                              composition);
  }
  browser_->SendPageCommand(
      QStringLiteral("Input.insertText"),
      QJsonObject{{"text", QString::fromStdString(text.ToString())}});
}

void PageInput::ImeFinishComposingText() {
  QString composition;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    composition.swap(composition_);
  }
  if (!composition.isEmpty()) {
    browser_->SendPageCommand(QStringLiteral("Input.insertText"),
                              QJsonObject{{"text", composition}});
  }
}

void PageInput::ImeCancelComposition() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    composition_.clear();
  }
  browser_->SendPageCommand(
      QStringLiteral("Input.imeSetComposition"),
      QJsonObject{{"text", ""}, {"selectionStart", 0}, {"selectionEnd", 0}});
}

void PageInput::DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                                    const CefMouseEvent& event,
                                    cef_drag_operations_mask_t allowed_ops) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    drag_data_ = drag_data;
    drag_allowed_ops_ = allowed_ops;
  }
  browser_->SendPageCommand(
      QStringLiteral("Input.dispatchDragEvent"),
      ToPagePoint(InputTranslator::DragEvent("dragEnter", event, allowed_ops,
                                             drag_data)));
}

void PageInput::DragTargetDragOver(const CefMouseEvent& event,
                                   cef_drag_operations_mask_t allowed_ops) {
  CefRefPtr<CefDragData> data;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    data = drag_data_;
    drag_allowed_ops_ = allowed_ops;
  }
  browser_->SendPageCommand(
      QStringLiteral("Input.dispatchDragEvent"),
      ToPagePoint(
          InputTranslator::DragEvent("dragOver", event, allowed_ops, data)));
}

void PageInput::DragTargetDragLeave() {
  CefRefPtr<CefDragData> data;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    data.swap(drag_data_);
  }
  browser_->SendPageCommand(
      QStringLiteral("Input.dispatchDragEvent"),
      InputTranslator::DragEvent("dragCancel", CefMouseEvent(),
                                 DRAG_OPERATION_NONE, data));
}

void PageInput::DragTargetDrop(const CefMouseEvent& event) {
  CefRefPtr<CefDragData> data;
  cef_drag_operations_mask_t allowed = DRAG_OPERATION_EVERY;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    data.swap(drag_data_);
    std::swap(allowed, drag_allowed_ops_);
  }
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self] { self->drag_source()->DroppedInPage(); });
  browser_->SendPageCommand(
      QStringLiteral("Input.dispatchDragEvent"),
      ToPagePoint(InputTranslator::DragEvent("drop", event, allowed, data)));
}

void PageInput::DragSourceEndedAt(int x,
                                  int y,
                                  cef_drag_operations_mask_t op) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, x, y, op] { self->drag_source()->EndedAt(x, y, op); });
}

void PageInput::DragSourceSystemDragEnded() {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self] { self->drag_source()->SystemDragEnded(); });
}

void PageInput::Release() {
  CefRefPtr<CefDragData> data;
  std::lock_guard<std::mutex> lock(mutex_);
  data.swap(drag_data_);
}

}  // namespace cefengine
