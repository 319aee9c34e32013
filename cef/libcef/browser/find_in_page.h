// CefBrowserHost::Find and StopFinding: a script in the engine's own world
// searches the page's text, selects the active match and scrolls to it.

#ifndef CEF_LIBCEF_BROWSER_FIND_IN_PAGE_H_
#define CEF_LIBCEF_BROWSER_FIND_IN_PAGE_H_

#include <memory>

#include <QString>

namespace cefengine {

class BrowserImpl;
class EngineWorld;

// Engine UI thread only. Owned by its browser.
class FindInPage {
 public:
  explicit FindInPage(BrowserImpl* browser);
  ~FindInPage();
  FindInPage(const FindInPage&) = delete;
  FindInPage& operator=(const FindInPage&) = delete;

  void Find(const QString& text, bool forward, bool match_case,
            bool find_next);
  void Stop(bool clear_selection);

 private:
  BrowserImpl* const browser_;
  std::unique_ptr<EngineWorld> world_;
  // The search the client last started, for OnFindResult's identifier.
  QString text_;
  bool match_case_ = false;
  int identifier_ = 0;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_FIND_IN_PAGE_H_
