// The inspector ShowDevTools opens on a browser's page: DevTools' front end
// in a Chromium window of its own on the display, which the client sees as
// a popup browser.

#ifndef CEF_LIBCEF_BROWSER_INSPECTOR_H_
#define CEF_LIBCEF_BROWSER_INSPECTOR_H_

#include <atomic>

#include "include/cef_client.h"

namespace cefengine {

class BrowserImpl;
class DevToolsBrowser;

// Owned by its browser; the thread of each call is named below.
class Inspector {
 public:
  explicit Inspector(BrowserImpl* browser);
  ~Inspector();
  Inspector(const Inspector&) = delete;
  Inspector& operator=(const Inspector&) = delete;

  // CefBrowserHost::ShowDevTools (for |client|, or the page's client) and
  // CloseDevTools. Any thread.
  void Show(CefRefPtr<CefClient> client);
  void Close();
  // Whether a window is open. Any thread.
  bool IsOpen() const { return open_; }
  // Closes the inspector if one is open, telling its client unless the
  // engine threads ended. Engine UI thread.
  void CloseNow(bool tell_client = true);

 private:
  BrowserImpl* const browser_;
  // Engine UI thread. It holds its browser until it closes, never longer.
  CefRefPtr<DevToolsBrowser> window_;
  // Whether |window_| is there, for any thread.
  std::atomic<bool> open_{false};
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_INSPECTOR_H_
