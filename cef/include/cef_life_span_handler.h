// Creation, popups and closing of browsers.

#ifndef CEF_INCLUDE_CEF_LIFE_SPAN_HANDLER_H_
#define CEF_INCLUDE_CEF_LIFE_SPAN_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"

class CefClient;

// Called on the UI thread unless noted.
class CefLifeSpanHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_window_open_disposition_t WindowOpenDisposition;

  // The page opens a popup. True cancels it. Otherwise |windowInfo|,
  // |client|, |settings| and |extra_info| (preset from the opener) describe
  // the new browser and may be changed; |*no_javascript_access| cuts the
  // popup off from its opener's scripts.
  virtual bool OnBeforePopup(CefRefPtr<CefBrowser> browser,
                             CefRefPtr<CefFrame> frame,
                             const CefString& target_url,
                             const CefString& target_frame_name,
                             WindowOpenDisposition target_disposition,
                             bool user_gesture,
                             const CefPopupFeatures& popupFeatures,
                             CefWindowInfo& windowInfo,
                             CefRefPtr<CefClient>& client,
                             CefBrowserSettings& settings,
                             CefRefPtr<CefDictionaryValue>& extra_info,
                             bool* no_javascript_access) {
    return false;
  }

  // A DevTools window is about to open for |browser|; same idea as
  // OnBeforePopup. Clearing |*use_default_window| keeps the engine from
  // giving it a window of its own.
  virtual void OnBeforeDevToolsPopup(CefRefPtr<CefBrowser> browser,
                                     CefWindowInfo& windowInfo,
                                     CefRefPtr<CefClient>& client,
                                     CefBrowserSettings& settings,
                                     CefRefPtr<CefDictionaryValue>& extra_info,
                                     bool* use_default_window) {}

  // The browser exists; first call that has it.
  virtual void OnAfterCreated(CefRefPtr<CefBrowser> browser) {}

  // The browser is about to close (the page's unload handlers agreed).
  // False lets the engine go on; true means the client closes the hosting
  // window itself.
  virtual bool DoClose(CefRefPtr<CefBrowser> browser) { return false; }

  // Last call for the browser; drop every reference to it here.
  virtual void OnBeforeClose(CefRefPtr<CefBrowser> browser) {}
};

#endif  // CEF_INCLUDE_CEF_LIFE_SPAN_HANDLER_H_
