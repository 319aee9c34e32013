#pragma once

#include "include/cef_life_span_handler.h"

#include <atomic>
#include <list>
#include <mutex>

// The life span handler of one view: keeps the view's main browser and its popups, and is the
// single holder of the view's CefBrowser reference. Everyone else asks getBrowser().
class LifeSpanHandler : public CefLifeSpanHandler
{
public:
    LifeSpanHandler();
    ~LifeSpanHandler() override;

    // Engine UI thread. Opens the target in the requesting frame instead of a popup window.
    bool OnBeforePopup(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, const CefString& target_url,
                       const CefString& target_frame_name, WindowOpenDisposition target_disposition,
                       bool user_gesture, const CefPopupFeatures& popupFeatures, CefWindowInfo& windowInfo,
                       CefRefPtr<CefClient>& client, CefBrowserSettings& settings,
                       CefRefPtr<CefDictionaryValue>& extra_info, bool* no_javascript_access) override;
    // Engine UI thread. The first browser to arrive while none is held becomes the main one.
    void OnAfterCreated(CefRefPtr<CefBrowser> browser) override;
    // Engine UI thread. Never takes over the close.
    bool DoClose(CefRefPtr<CefBrowser> browser) override;
    // Engine UI thread.
    void OnBeforeClose(CefRefPtr<CefBrowser> browser) override;

    // Any thread. Null before OnAfterCreated and after the main browser's OnBeforeClose.
    CefRefPtr<CefBrowser> getBrowser();
    // Any thread; 0 before OnAfterCreated.
    int getBrowserId();
    // Any thread; meaningful only once DoClose has run for the main browser.
    bool getIsClosing();

    // Any thread: off the engine UI thread the close is posted there and this returns at once.
    void closeAllPopups(bool forceClose);
    // Any thread, like closeAllPopups; closes the popups, then the main browser.
    void closeAllBrowsers(bool forceClose);

private:
    // 0 and false until OnAfterCreated and DoClose set them.
    int m_browserId = 0;
    std::atomic<bool> m_isClosing{false};
    // Guards m_browserId and m_browser, only for reading or replacing them.
    std::mutex m_mutex;
    CefRefPtr<CefBrowser> m_browser;
    // In order of creation. Engine UI thread only, hence no lock.
    std::list<CefRefPtr<CefBrowser>> m_popups;

    IMPLEMENT_REFCOUNTING(LifeSpanHandler);
};
