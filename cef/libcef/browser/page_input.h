// The client's input for a browser's page: focus, keys, mouse, touch, the
// input method's composition and drags over the view, as Input domain
// commands, and the end of drags the page started.
// The state the protocol wants repeated (touch points held down, the
// composition, the dragged data) is kept here.

#ifndef CEF_LIBCEF_BROWSER_PAGE_INPUT_H_
#define CEF_LIBCEF_BROWSER_PAGE_INPUT_H_

#include <functional>
#include <map>
#include <mutex>
#include <vector>

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include "include/cef_browser.h"

namespace cefengine {

class BrowserImpl;

// Any thread. Owned by its browser.
class PageInput {
 public:
  explicit PageInput(BrowserImpl* browser);
  PageInput(const PageInput&) = delete;
  PageInput& operator=(const PageInput&) = delete;

  // Whether the page has the focus, as the host's view has it.
  void SetFocus(bool focus);
  void SendKeyEvent(const CefKeyEvent& event);
  void SendMouseClickEvent(const CefMouseEvent& event,
                           cef_mouse_button_type_t type,
                           bool mouse_up,
                           int click_count);
  void SendMouseMoveEvent(const CefMouseEvent& event, bool mouse_leave);
  void SendMouseWheelEvent(const CefMouseEvent& event,
                           int delta_x,
                           int delta_y);
  void SendTouchEvent(const CefTouchEvent& event);
  // An editing command ("copy", "selectAll", ...) on the focused element.
  void RunEditCommand(const char* command);
  // Where the last mouse event was sent, in view coordinates.
  CefPoint last_mouse_point() const;

  void ImeSetComposition(const CefString& text,
                         const CefRange& replacement_range,
                         const CefRange& selection_range);
  void ImeCommitText(const CefString& text, const CefRange& replacement_range);
  void ImeFinishComposingText();
  void ImeCancelComposition();

  // A drag from outside over the view.
  void DragTargetDragEnter(CefRefPtr<CefDragData> drag_data,
                           const CefMouseEvent& event,
                           cef_drag_operations_mask_t allowed_ops);
  void DragTargetDragOver(const CefMouseEvent& event,
                          cef_drag_operations_mask_t allowed_ops);
  void DragTargetDragLeave();
  void DragTargetDrop(const CefMouseEvent& event);
  // A drag the page started, out of the view, ended.
  void DragSourceEndedAt(int x, int y, cef_drag_operations_mask_t op);
  void DragSourceSystemDragEnded();

  // CefShutdown came with the browser open: lets go of the dragged data.
  void Release();

 private:
  // Input.dispatchMouseEvent with |params|; with a full Chromium the
  // renderer may route it to an open drop-down instead.
  void SendMouseInput(const CefMouseEvent& event,
                      int button,
                      bool up,
                      int wheel_x,
                      int wheel_y,
                      QJsonObject params);
  // Touch points held down, for Input.dispatchTouchEvent's full lists.
  // Under |mutex_|.
  QJsonArray TouchPoints() const;
  QJsonObject ToPagePoint(QJsonObject params) const;

  BrowserImpl* const browser_;
  mutable std::mutex mutex_;
  // Guarded by |mutex_|.
  QString composition_;
  std::map<int, QJsonObject> touch_points_;
  CefRefPtr<CefDragData> drag_data_;
  // What the drag over the page last allowed: the drop may take no more.
  cef_drag_operations_mask_t drag_allowed_ops_ = DRAG_OPERATION_EVERY;
  CefPoint last_mouse_point_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PAGE_INPUT_H_
