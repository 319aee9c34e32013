#include "engine/life_span_handler.h"

#include "include/base/cef_callback.h"
#include "include/cef_task.h"
#include "include/wrapper/cef_closure_task.h"

#include <vector>

LifeSpanHandler::LifeSpanHandler() = default;

// Members go in reverse order: the popups first, then the main browser.
LifeSpanHandler::~LifeSpanHandler() = default;

bool LifeSpanHandler::OnBeforePopup(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                    const CefString& target_url, const CefString& target_frame_name,
                                    WindowOpenDisposition target_disposition, bool user_gesture,
                                    const CefPopupFeatures& popupFeatures, CefWindowInfo& windowInfo,
                                    CefRefPtr<CefClient>& client, CefBrowserSettings& settings,
                                    CefRefPtr<CefDictionaryValue>& extra_info, bool* no_javascript_access)
{
    // No window ever comes from a page: the target opens in place, and true cancels the popup.
    frame->LoadURL(target_url);
    return true;
}

void LifeSpanHandler::OnAfterCreated(CefRefPtr<CefBrowser> browser)
{
    CefRefPtr<CefBrowser> current = getBrowser();
    if (!current)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_browser = browser;
        m_browserId = browser->GetIdentifier();
        return;
    }
    current = nullptr;
    if (!browser->IsPopup())
        return;
    m_popups.push_back(browser);
    CefPostTask(TID_UI, base::BindOnce(&CefBrowserHost::SetFocus, browser->GetHost(), true));
}

bool LifeSpanHandler::DoClose(CefRefPtr<CefBrowser> browser)
{
    if (browser->GetIdentifier() == getBrowserId())
        m_isClosing = true;
    return false;
}

void LifeSpanHandler::OnBeforeClose(CefRefPtr<CefBrowser> browser)
{
    if (browser->GetIdentifier() == getBrowserId())
    {
        // Forces the popups closed, and asks a forced close of the closing browser as well.
        closeAllBrowsers(true);
        std::lock_guard<std::mutex> lock(m_mutex);
        m_browser = nullptr;
        return;
    }
    if (!browser->IsPopup())
        return;
    for (auto it = m_popups.begin(); it != m_popups.end(); ++it)
    {
        if ((*it)->IsSame(browser))
        {
            m_popups.erase(it);
            return;
        }
    }
}

CefRefPtr<CefBrowser> LifeSpanHandler::getBrowser()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_browser;
}

int LifeSpanHandler::getBrowserId()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_browserId;
}

bool LifeSpanHandler::getIsClosing()
{
    return m_isClosing;
}

void LifeSpanHandler::closeAllPopups(bool forceClose)
{
    if (!CefCurrentlyOn(TID_UI))
    {
        CefPostTask(TID_UI, base::BindOnce(&LifeSpanHandler::closeAllPopups, CefRefPtr<LifeSpanHandler>(this),
                                           forceClose));
        return;
    }
    // A close may come back into OnBeforeClose, which unlinks from the list: walk a copy.
    const std::vector<CefRefPtr<CefBrowser>> popups(m_popups.begin(), m_popups.end());
    for (const CefRefPtr<CefBrowser>& popup : popups)
        popup->GetHost()->CloseBrowser(forceClose);
}

void LifeSpanHandler::closeAllBrowsers(bool forceClose)
{
    if (!CefCurrentlyOn(TID_UI))
    {
        CefPostTask(TID_UI, base::BindOnce(&LifeSpanHandler::closeAllBrowsers, CefRefPtr<LifeSpanHandler>(this),
                                           forceClose));
        return;
    }
    closeAllPopups(forceClose);
    // Without the lock: only the engine UI thread replaces the member while a browser exists.
    if (m_browser)
        m_browser->GetHost()->CloseBrowser(forceClose);
}
