// The inspector as the client sees it: a popup browser whose window is a
// DevToolsWindow on the host's display. Closing it works; everything else
// answers quietly (QuietBrowser), since the front end lives in another
// Chromium that the engine does not drive.

#ifndef CEF_LIBCEF_BROWSER_DEVTOOLS_BROWSER_H_
#define CEF_LIBCEF_BROWSER_DEVTOOLS_BROWSER_H_

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include <QString>

#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "libcef/browser/quiet_browser.h"

namespace cefengine {

class DevToolsSession;
class DevToolsWindow;

class DevToolsBrowser : public QuietBrowser {
 public:
  // Told once when the inspector goes by itself or through CloseBrowser, so
  // that the inspected browser lets go of it; not when it is closed by
  // Close(). Engine UI thread.
  using ClosedCallback = std::function<void()>;

  // Opens the inspector of |target_id| in |page_chromium|, on behalf of
  // |client|. Null, with the reason logged, when no window can be opened.
  // The client hears of it from NotifyCreated. Engine UI thread.
  static CefRefPtr<DevToolsBrowser> Open(
      std::shared_ptr<DevToolsSession> page_chromium,
      const QString& target_id,
      CefRefPtr<CefClient> client,
      ClosedCallback closed);

  ~DevToolsBrowser() override;

  // OnAfterCreated to the client's life span handler. Engine UI thread.
  void NotifyCreated();

  // Closes the window. With |tell_client| the client's life span handler
  // hears DoClose and OnBeforeClose first; without, nothing is called (for
  // CefShutdown, after the engine threads ended). Either way the client is
  // let go of. Blocks while the window's Chromium exits. Engine UI thread.
  void Close(bool tell_client);

  // --- What the inspector really does; the rest is quiet -------------
  bool IsValid() override;
  CefRefPtr<CefBrowserHost> GetHost() override;
  int GetIdentifier() override;
  bool IsSame(CefRefPtr<CefBrowser> that) override;
  bool IsPopup() override;
  CefRefPtr<CefBrowser> GetBrowser() override;
  void CloseBrowser(bool force_close) override;
  bool TryCloseBrowser() override;
  CefRefPtr<CefClient> GetClient() override;

 private:
  DevToolsBrowser(CefRefPtr<CefClient> client, ClosedCallback closed);

  // The window went, or CloseBrowser came: the inspected browser lets go,
  // then the client hears of the close. Engine UI thread.
  void Finish();
  CefRefPtr<CefLifeSpanHandler> LifeSpanHandler() const;

  const int id_;
  // Engine UI thread, but for |valid_| and |client_|, guarded for the
  // client's calls from any thread.
  ClosedCallback closed_;
  std::shared_ptr<DevToolsWindow> window_;
  mutable std::mutex mutex_;
  bool valid_ = true;
  CefRefPtr<CefClient> client_;

  IMPLEMENT_REFCOUNTING(DevToolsBrowser);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_DEVTOOLS_BROWSER_H_
