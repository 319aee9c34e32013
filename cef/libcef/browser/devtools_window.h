// The inspector of one page: a DevTools front end in a Chromium window of its
// own on the host's display, talking to the page through a second protocol
// session of the engine's Chromium, relayed over a loopback WebSocket.

#ifndef CEF_LIBCEF_BROWSER_DEVTOOLS_WINDOW_H_
#define CEF_LIBCEF_BROWSER_DEVTOOLS_WINDOW_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

#include "libcef/devtools/devtools_relay.h"
#include "libcef/devtools/devtools_session.h"

namespace cefengine {

class DevToolsWindow : public std::enable_shared_from_this<DevToolsWindow> {
 public:
  // Told once that the window went by itself (closed at the screen, its
  // Chromium or the page gone). Engine UI thread.
  using GoneCallback = std::function<void()>;

  // The full Chromium that carries the front end.
  static constexpr char kFrontEndChromium[] = "/usr/lib/chromium/chromium";

  // Whether an X display can be reached through $DISPLAY; |why| says why
  // not. Blocks while connecting (a remote display may take long).
  static bool DisplayReachable(std::string* why);

  // Attaches to |target_id| in |page_chromium| and opens the window once
  // attached. Engine UI thread. Null, with the reason logged, when the
  // window cannot be opened.
  static std::shared_ptr<DevToolsWindow> Open(
      std::shared_ptr<DevToolsSession> page_chromium,
      const QString& target_id,
      GoneCallback gone);

  ~DevToolsWindow();
  DevToolsWindow(const DevToolsWindow&) = delete;
  DevToolsWindow& operator=(const DevToolsWindow&) = delete;

  // Closes the window, its port and the page's session, and removes its
  // profile. Blocks the engine UI thread while that Chromium exits (well
  // under a second normally). Never calls GoneCallback.
  void Close();

  // The relay's endpoint, for diagnostics; 0 before it listens.
  uint16_t port() const { return relay_.port(); }
  std::string url() const;

 private:
  DevToolsWindow(std::shared_ptr<DevToolsSession> page_chromium,
                 QString target_id,
                 GoneCallback gone);

  // Engine UI thread.
  void OnAttached(const QJsonObject& result, const QJsonObject& error);
  void OnPageEvent(const QString& method,
                   const QJsonObject& params,
                   const QString& session_id);
  void OnWindowEvent(const QString& method, const QJsonObject& params);
  bool LaunchWindow(std::string* error);
  void Fail(const std::string& why);
  void WentAway();
  // Relay thread.
  void OnFrontEndMessage(const std::string& message);

  const std::shared_ptr<DevToolsSession> page_chromium_;
  const QString target_id_;
  GoneCallback gone_;

  // Set on the engine UI thread before the relay starts, read-only after.
  QString session_id_;

  // Engine UI thread.
  bool closed_ = false;
  int page_subscription_ = 0;
  std::set<QString> child_sessions_;
  // The front end's page in the window's Chromium.
  QString window_page_;
  DevToolsRelay relay_;
  std::unique_ptr<QTemporaryDir> profile_;
  std::unique_ptr<DevToolsSession> window_chromium_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_DEVTOOLS_WINDOW_H_
