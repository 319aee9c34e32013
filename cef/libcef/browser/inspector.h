// The inspector window ShowDevTools opens on a browser's page: DevTools'
// front end in a Chromium window of its own on the display.

#ifndef CEF_LIBCEF_BROWSER_INSPECTOR_H_
#define CEF_LIBCEF_BROWSER_INSPECTOR_H_

#include <atomic>
#include <memory>

namespace cefengine {

class BrowserImpl;
class DevToolsWindow;

// Owned by its browser; the thread of each call is named below.
class Inspector {
 public:
  explicit Inspector(BrowserImpl* browser);
  ~Inspector();
  Inspector(const Inspector&) = delete;
  Inspector& operator=(const Inspector&) = delete;

  // CefBrowserHost::ShowDevTools and CloseDevTools. Any thread.
  void Show();
  void Close();
  // Whether a window is open. Any thread.
  bool IsOpen() const { return open_; }
  // Closes the window if one is open. Engine UI thread.
  void CloseNow();

 private:
  BrowserImpl* const browser_;
  // Engine UI thread.
  std::shared_ptr<DevToolsWindow> window_;
  // Whether |window_| is there, for any thread.
  std::atomic<bool> open_{false};
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_INSPECTOR_H_
