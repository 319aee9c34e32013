#pragma once

#include "include/cef_keyboard_handler.h"

// Keys are decided in the view before they reach the engine; nothing is taken here.
class KeyboardHandler : public CefKeyboardHandler
{
public:
    bool OnPreKeyEvent(CefRefPtr<CefBrowser> browser, const CefKeyEvent& event, CefEventHandle os_event,
                       bool* is_keyboard_shortcut) override;
    bool OnKeyEvent(CefRefPtr<CefBrowser> browser, const CefKeyEvent& event, CefEventHandle os_event) override;

private:
    IMPLEMENT_REFCOUNTING(KeyboardHandler);
};
