#include "libcef/browser/drag_source.h"

#include <QJsonArray>

#include "include/cef_render_handler.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/input_translator.h"
#include "libcef/drag_data_impl.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

CefString Cef(const QString& text) {
  return CefString(text.toStdString());
}

}  // namespace

QString DragSource::WatcherScript() {
  return ScriptSource("drag_source.js")
      .replace(QLatin1String("__BINDING__"), QLatin1String(kBinding));
}

CefRefPtr<CefDragData> DragSource::ToDragData(const QJsonObject& data) {
  CefRefPtr<DragDataImpl> drag = new DragDataImpl();
  for (const QJsonValue& value : data.value(QLatin1String("items")).toArray()) {
    const QJsonObject item = value.toObject();
    const QString mime = item.value(QLatin1String("mimeType")).toString();
    const QString text = item.value(QLatin1String("data")).toString();
    if (mime == QLatin1String("text/plain")) {
      drag->SetFragmentText(Cef(text));
    } else if (mime == QLatin1String("text/html")) {
      drag->SetFragmentHtml(Cef(text));
      drag->SetFragmentBaseURL(
          Cef(item.value(QLatin1String("baseURL")).toString()));
    } else if (mime == QLatin1String("text/uri-list")) {
      // The first address; lines starting with # are comments.
      for (const QString& line : text.split(QLatin1Char('\n'))) {
        const QString url = line.trimmed();
        if (!url.isEmpty() && !url.startsWith(QLatin1Char('#'))) {
          drag->SetLinkURL(Cef(url));
          drag->SetLinkTitle(Cef(item.value(QLatin1String("title")).toString()));
          break;
        }
      }
    }
  }
  drag->SetReadOnly(true);
  return drag;
}

DragSource::DragSource(BrowserImpl* browser) : browser_(browser) {}

void DragSource::OnIntercepted(const QJsonObject& params, int x, int y) {
  const QJsonObject data = params.value(QLatin1String("data")).toObject();
  const auto allowed = static_cast<cef_drag_operations_mask_t>(
      data.value(QLatin1String("dragOperationsMask")).toInt());
  active_ = true;
  end_x_ = x;
  end_y_ = y;
  CefRefPtr<CefRenderHandler> handler = browser_->render_handler();
  if (!handler ||
      !handler->StartDragging(browser_, ToDragData(data), allowed, x, y)) {
    Cancel();
  }
}

void DragSource::OnDropEffect(const QString& effect) {
  CefRefPtr<CefRenderHandler> handler = browser_->render_handler();
  if (!handler) {
    return;
  }
  cef_drag_operations_mask_t operation = DRAG_OPERATION_NONE;
  if (effect == QLatin1String("copy")) {
    operation = DRAG_OPERATION_COPY;
  } else if (effect == QLatin1String("link")) {
    operation = DRAG_OPERATION_LINK;
  } else if (effect == QLatin1String("move")) {
    operation = DRAG_OPERATION_MOVE;
  }
  handler->UpdateDragCursor(browser_, operation);
}

void DragSource::EndedAt(int x, int y, cef_drag_operations_mask_t) {
  end_x_ = x;
  end_y_ = y;
}

void DragSource::SystemDragEnded() {
  if (active_) {
    Cancel();
  }
}

void DragSource::DroppedInPage() {
  active_ = false;
}

void DragSource::Cancel() {
  active_ = false;
  CefMouseEvent event;
  event.x = end_x_;
  event.y = end_y_;
  // Outside the page, nothing takes the drop: the page's dragend tells
  // "none".
  browser_->SendPageCommand(
      QStringLiteral("Input.dispatchDragEvent"),
      InputTranslator::DragEvent("dragCancel", event, DRAG_OPERATION_NONE,
                                 nullptr));
}

}  // namespace cefengine
