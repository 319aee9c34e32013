#include "handlers/drag_handler.h"

bool DragHandler::OnDragEnter(CefRefPtr<CefBrowser>, CefRefPtr<CefDragData>, DragOperationsMask)
{
    return false;
}

void DragHandler::OnDraggableRegionsChanged(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>,
                                            const std::vector<CefDraggableRegion>&)
{
}
