// Where decisions about a page's navigations and requests plug in
// (OnBeforeBrowse, OnOpenURLFromTab, certificate errors, request
// interception): the browser core only routes to it.

#ifndef CEF_LIBCEF_BROWSER_NAVIGATION_POLICY_H_
#define CEF_LIBCEF_BROWSER_NAVIGATION_POLICY_H_

#include <functional>
#include <memory>

#include <QString>

#include "libcef/browser/page_hook.h"

namespace cefengine {

class BrowserImpl;

// One per browser, owned by it. Engine UI thread.
class NavigationPolicy : public PageHook {
 public:
  // The engine is about to navigate |frame_id| (empty: the main frame) to
  // |url|, for CefFrame::LoadURL; true drops the navigation, which the policy
  // has then reported itself.
  virtual bool OnNavigate(BrowserImpl* browser,
                          const QString& frame_id,
                          const QString& url) {
    return false;
  }

  // A document load failed with |error_text| ("net::ERR_ABORTED"; the
  // loader id is empty when the protocol named none), before the client
  // hears of it: returns the error to report instead, or an empty string to
  // report nothing.
  virtual QString OnLoadFailed(BrowserImpl* browser,
                               const QString& loader_id,
                               const QString& error_text) {
    return error_text;
  }
};

using NavigationPolicyFactory =
    std::function<std::unique_ptr<NavigationPolicy>(BrowserImpl* browser)>;

// For browsers created afterwards. Any thread.
void SetNavigationPolicyFactory(NavigationPolicyFactory factory);
NavigationPolicyFactory GetNavigationPolicyFactory();

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_NAVIGATION_POLICY_H_
