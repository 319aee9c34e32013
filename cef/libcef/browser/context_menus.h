// Context menus: headless Chromium opens none, so the page's contextmenu
// event, unless the page cancelled it, hit-tests the page and puts the menu
// to the client's CefContextMenuHandler, then runs the chosen command.

#ifndef CEF_LIBCEF_BROWSER_CONTEXT_MENUS_H_
#define CEF_LIBCEF_BROWSER_CONTEXT_MENUS_H_

#include <memory>
#include <optional>

#include <QJsonObject>
#include <QString>

#include "include/cef_context_menu_handler.h"

namespace cefengine {

class BrowserImpl;
class EngineWorld;

// Engine UI thread only. Owned by its browser.
class ContextMenus {
 public:
  // The binding a watcher in the engine's world calls with the point
  // {"x", "y"} (CSS pixels) of each contextmenu event the page let pass.
  static constexpr char kBinding[] = "__broviaContextMenu";
  static QString WatcherScript();

  explicit ContextMenus(BrowserImpl* browser);
  ~ContextMenus();
  ContextMenus(const ContextMenus&) = delete;
  ContextMenus& operator=(const ContextMenus&) = delete;

  // A report of the watcher.
  void OnPageMenu(const QString& payload);
  // The client's choice for menu |serial|; |command_id| < 0 dismisses it.
  void Answer(int serial, int command_id, cef_event_flags_t flags);
  // The browser closed or the engine shut down: lets go of the handler.
  void Release();

 private:
  struct Pending {
    int serial = 0;
    CefRefPtr<CefContextMenuHandler> handler;
    CefRefPtr<CefFrame> frame;
    CefRefPtr<CefContextMenuParams> params;
  };

  void Show(const QJsonObject& hit, int x, int y);
  void RunDefault(int command_id);

  BrowserImpl* const browser_;
  std::unique_ptr<EngineWorld> world_;
  std::optional<Pending> pending_;
  int last_serial_ = 0;
  bool warned_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_CONTEXT_MENUS_H_
