#pragma once

#include "include/cef_focus_handler.h"

#include <QObject>

// The page tabbed past its last or first element: the focus goes back to the host's widgets.
// Engine UI thread.
class FocusHandler : public QObject, public CefFocusHandler
{
    Q_OBJECT

public:
    void OnTakeFocus(CefRefPtr<CefBrowser> browser, bool next) override;

Q_SIGNALS:
    void focusLost(bool focusNext);

private:
    IMPLEMENT_REFCOUNTING(FocusHandler);
};
