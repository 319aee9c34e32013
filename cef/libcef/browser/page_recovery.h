// A browser whose page went while the browser stays: Chromium died, or a
// page that did not answer was dropped. The client hears that the renderer
// ended, and the next LoadURL or Reload brings a new page, in a new
// Chromium if need be.

#ifndef CEF_LIBCEF_BROWSER_PAGE_RECOVERY_H_
#define CEF_LIBCEF_BROWSER_PAGE_RECOVERY_H_

#include <string>

#include "include/internal/cef_types.h"

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class PageRecovery {
 public:
  explicit PageRecovery(BrowserImpl* browser);
  PageRecovery(const PageRecovery&) = delete;
  PageRecovery& operator=(const PageRecovery&) = delete;

  // Chromium died: the page is reported terminated and the browser waits,
  // without a page, for Reload or LoadURL to bring it back in a new
  // Chromium. A browser being closed or still being made ends instead.
  void OnChromiumGone(cef_termination_status_t status,
                      int error_code,
                      const std::string& description);
  // Closes a page whose renderer cannot even be crashed, reports it killed,
  // and leaves the browser for Reload or LoadURL to give a new page.
  void DropPage();
  // Lets go of a page whose Chromium is gone, or that was dropped; the
  // browser stays.
  void Detach();
  // A new page for a browser whose page went, showing |url|.
  void Revive(const std::string& url);
  // Revive at the main frame's last address; false unless the page went.
  bool ReviveAtCurrentUrl();

 private:
  // CefRequestHandler::OnRenderProcessTerminated.
  void ReportTerminated(cef_termination_status_t status,
                        int error_code,
                        const std::string& text);

  BrowserImpl* const browser_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PAGE_RECOVERY_H_
