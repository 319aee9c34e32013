// The engine parts that plug into every page of a browser: the navigation
// policy, the render side and the render observer, made by their factories
// when a page is attached and let go when it goes.

#ifndef CEF_LIBCEF_BROWSER_PAGE_HOOKS_H_
#define CEF_LIBCEF_BROWSER_PAGE_HOOKS_H_

#include <functional>
#include <memory>
#include <vector>

#include <QJsonObject>
#include <QString>

namespace cefengine {

class BrowserImpl;
class NavigationPolicy;
class RenderObserver;
class RenderSide;

// Engine UI thread only. Owned by its browser.
class PageHooks {
 public:
  explicit PageHooks(BrowserImpl* browser);
  ~PageHooks();
  PageHooks(const PageHooks&) = delete;
  PageHooks& operator=(const PageHooks&) = delete;

  // Null while the page is not attached, or no factory is set.
  NavigationPolicy* navigation_policy() const {
    return navigation_policy_.get();
  }
  RenderSide* render_side() const { return render_side_.get(); }
  RenderObserver* render_observer() const { return render_observer_.get(); }

  // The page is attached: each part is made and told.
  void Attach();
  // The page goes: each part is told and let go.
  void Detach();
  // CefShutdown came with the browser open: let go, untold.
  void Release();

  // A page event, before the browser's own handling: true when a part took
  // it.
  bool TakeEvent(const QString& method, const QJsonObject& params);

  // Hands |delivery| to the render side: at once while the page is
  // attached; once it is, while the browser's first page is being made (a
  // render process takes what was sent before it ran); else never.
  void ToRenderSide(std::function<void(RenderSide*)> delivery);

 private:
  BrowserImpl* const browser_;
  std::unique_ptr<NavigationPolicy> navigation_policy_;
  std::unique_ptr<RenderSide> render_side_;
  std::unique_ptr<RenderObserver> render_observer_;
  // A page was attached before.
  bool attached_before_ = false;
  // Deliveries waiting for the first page.
  std::vector<std::function<void(RenderSide*)>> waiting_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PAGE_HOOKS_H_
