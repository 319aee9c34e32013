#pragma once

#include "include/cef_browser.h"
#include "include/cef_task.h"

#include <future>

// Reads a browser's zoom level on the engine UI thread, where the engine answers it, for a
// caller on another thread that waits on the future.
class GetZoomLevelTask : public CefTask
{
public:
    explicit GetZoomLevelTask(CefRefPtr<CefBrowser> browser)
        : browser(std::move(browser))
    {
    }

    // Engine UI thread.
    void Execute() override { promise.set_value(browser->GetHost()->GetZoomLevel()); }

    CefRefPtr<CefBrowser> browser;
    std::promise<double> promise;

private:
    IMPLEMENT_REFCOUNTING(GetZoomLevelTask);
};
