// Where decisions about a page's navigations and requests plug in
// (OnBeforeBrowse, OnOpenURLFromTab, certificate errors, request
// interception): the browser core only routes to it.

#ifndef CEF_LIBCEF_BROWSER_NAVIGATION_POLICY_H_
#define CEF_LIBCEF_BROWSER_NAVIGATION_POLICY_H_

#include <functional>
#include <memory>

#include <QJsonObject>
#include <QString>

namespace cefengine {

class BrowserImpl;

// One per browser, owned by it. Engine UI thread.
class NavigationPolicy {
 public:
  virtual ~NavigationPolicy() = default;

  // The page is attached and still held: commands sent now on the browser's
  // session (e.g. Fetch.enable) take effect before its first navigation.
  virtual void OnAttached(BrowserImpl* browser) {}

  // An out-of-process frame's session, still held: as OnAttached, for the
  // frames it serves.
  virtual void OnFrameSessionAttached(BrowserImpl* browser,
                                      const QString& session_id) {}

  // Each protocol event of the page before the browser core sees it; true
  // consumes it (e.g. Fetch.requestPaused).
  virtual bool OnPageEvent(BrowserImpl* browser,
                           const QString& method,
                           const QJsonObject& params) {
    return false;
  }

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

  // The page is going; nothing is called afterwards.
  virtual void OnDetached(BrowserImpl* browser) {}
};

using NavigationPolicyFactory =
    std::function<std::unique_ptr<NavigationPolicy>(BrowserImpl* browser)>;

// For browsers created afterwards. Any thread.
void SetNavigationPolicyFactory(NavigationPolicyFactory factory);
NavigationPolicyFactory GetNavigationPolicyFactory();

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_NAVIGATION_POLICY_H_
