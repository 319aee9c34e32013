// What every part that plugs into a browser's page hears: the page's
// attachment, its frames' sessions, its protocol events and its end.
// NavigationPolicy and RenderSide build on it.

#ifndef CEF_LIBCEF_BROWSER_PAGE_HOOK_H_
#define CEF_LIBCEF_BROWSER_PAGE_HOOK_H_

#include <QJsonObject>
#include <QString>

namespace cefengine {

class BrowserImpl;

// One per browser, owned by it. Engine UI thread, OnAttached first and
// OnDetached last.
class PageHook {
 public:
  virtual ~PageHook() = default;

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

  // The page is going; nothing is called afterwards.
  virtual void OnDetached(BrowserImpl* browser) {}
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PAGE_HOOK_H_
