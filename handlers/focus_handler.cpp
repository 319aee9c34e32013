#include "handlers/focus_handler.h"

void FocusHandler::OnTakeFocus(CefRefPtr<CefBrowser>, bool next)
{
    Q_EMIT focusLost(next);
}
