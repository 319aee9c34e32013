// Drags that start in the page. Chromium runs them itself unless told
// otherwise, and headless it has no window to run them in: with
// Input.setInterceptDrags it hands each drag over as Input.dragIntercepted,
// which becomes the render handler's StartDragging. The client's end of the
// drag ends it in the page (dragend). A watcher in the engine's world tells
// the operation a drop would take while something is dragged over the page,
// for UpdateDragCursor.

#ifndef CEF_LIBCEF_BROWSER_DRAG_SOURCE_H_
#define CEF_LIBCEF_BROWSER_DRAG_SOURCE_H_

#include <QJsonObject>
#include <QString>

#include "include/cef_drag_data.h"
#include "include/internal/cef_types.h"

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class DragSource {
 public:
  static constexpr char kBinding[] = "__broviaDropEffect";
  static QString WatcherScript();
  // The drag data of Input.dragIntercepted as CEF's.
  static CefRefPtr<CefDragData> ToDragData(const QJsonObject& data);

  explicit DragSource(BrowserImpl* browser);
  DragSource(const DragSource&) = delete;
  DragSource& operator=(const DragSource&) = delete;

  // Input.dragIntercepted: the page started a drag at the last pointer
  // position, |x|, |y| in view coordinates.
  void OnIntercepted(const QJsonObject& params, int x, int y);
  // The watcher's "copy", "link", "move" or "none".
  void OnDropEffect(const QString& effect);
  // CefBrowserHost::DragSourceEndedAt and DragSourceSystemDragEnded.
  void EndedAt(int x, int y, cef_drag_operations_mask_t operation);
  void SystemDragEnded();
  // The drag was dropped on the page itself, which ends it there.
  void DroppedInPage();

 private:
  void Cancel();

  BrowserImpl* const browser_;
  bool active_ = false;
  int end_x_ = 0;
  int end_y_ = 0;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_DRAG_SOURCE_H_
