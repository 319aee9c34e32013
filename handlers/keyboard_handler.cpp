#include "handlers/keyboard_handler.h"

bool KeyboardHandler::OnPreKeyEvent(CefRefPtr<CefBrowser>, const CefKeyEvent&, CefEventHandle, bool*)
{
    return false;
}

bool KeyboardHandler::OnKeyEvent(CefRefPtr<CefBrowser>, const CefKeyEvent&, CefEventHandle)
{
    return false;
}
