// Popups a page opens (window.open, links with a target): the client's
// OnBeforePopup decides, with the address, name and features the page gave,
// and a new browser takes the target Chromium made, or it is discarded.

#ifndef CEF_LIBCEF_BROWSER_POPUP_OPENER_H_
#define CEF_LIBCEF_BROWSER_POPUP_OPENER_H_

#include <deque>

#include <QJsonObject>

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its page's PageEvents.
class PopupOpener {
 public:
  explicit PopupOpener(BrowserImpl* browser);
  PopupOpener(const PopupOpener&) = delete;
  PopupOpener& operator=(const PopupOpener&) = delete;

  // Page.windowOpen: what the page asked for, ahead of the target.
  void OnWindowOpen(const QJsonObject& params);
  // Target.attachedToTarget of the popup's page.
  void OnAttached(const QJsonObject& params);
  // Forgets what the page asked for: the page went.
  void Clear();

 private:
  BrowserImpl* const browser_;
  std::deque<QJsonObject> window_opens_;  // Page.windowOpen
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_POPUP_OPENER_H_
