#pragma once

#include "include/cef_drag_handler.h"

// Drags into the view are never refused here; the view decides what it accepts.
class DragHandler : public CefDragHandler
{
public:
    bool OnDragEnter(CefRefPtr<CefBrowser> browser, CefRefPtr<CefDragData> dragData, DragOperationsMask mask) override;
    void OnDraggableRegionsChanged(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                   const std::vector<CefDraggableRegion>& regions) override;

private:
    IMPLEMENT_REFCOUNTING(DragHandler);
};
