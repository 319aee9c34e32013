// The launcher page of a full Chromium in the engine's X server. Chromium
// starts with it as an app window; window.open from it gives every page a
// frameless window of its own (windows Chromium makes for new targets come
// with a toolbar).

#ifndef CEF_LIBCEF_BROWSER_WINDOW_LAUNCHER_H_
#define CEF_LIBCEF_BROWSER_WINDOW_LAUNCHER_H_

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>

#include <QString>

namespace cefengine {

class DevToolsSession;

class WindowLauncher : public std::enable_shared_from_this<WindowLauncher> {
 public:
  using OpenedCallback =
      std::function<void(const QString& target_id, const QString& error)>;

  // The page Chromium starts with (--app=).
  static const char kUrl[];

  // Finds the launcher page of a Chromium that just answered and attaches
  // it. False if none came within |timeout|. Blocks the calling thread (the
  // starter thread).
  static bool Find(DevToolsSession* session,
                   std::chrono::seconds timeout,
                   QString* target_id,
                   QString* session_id);

  // The launcher of the Chromium that now runs; empty ids when none does.
  // Any thread: a start sets it before anyone opens a window.
  void Reset(const QString& target_id, const QString& session_id);

  // Everything below: engine UI thread.

  // Fails the windows still asked for with |why|, and forgets the launcher.
  void Fail(const QString& why);

  bool IsLauncher(const QString& target_id) const;

  // A place for a new window on the X screen, in Chromium's screen pixels
  // (DIP), different from the windows opened lately.
  void NextPlace(int* left, int* top);
  // Opens a window of |width| x |height| DIP at (left, top) with a held
  // about:blank page; |opened| hears of it through TakeLaunch, or gets the
  // reason it failed.
  void Open(std::shared_ptr<DevToolsSession> running,
            int left,
            int top,
            int width,
            int height,
            OpenedCallback opened);
  // The same, blocking until the target exists (CreateBrowserSync), for at
  // most |timeout|. |known| tells targets that are already someone's.
  QString OpenSync(std::shared_ptr<DevToolsSession> running,
                   int left,
                   int top,
                   int width,
                   int height,
                   const std::function<bool(const QString&)>& known,
                   std::chrono::seconds timeout);
  // A window of the launcher attached: the Open call it answers, in the
  // order asked, or an empty callback when nobody asked for it.
  OpenedCallback TakeLaunch(const QString& target_id);

 private:
  QString Script(int left, int top, int width, int height) const;

  // The launcher's ids, copied under |mutex_|.
  void Ids(QString* target_id, QString* session_id) const;

  mutable std::mutex mutex_;
  QString target_id_;
  QString session_id_;
  // Open calls waiting for their window's target, in order.
  std::deque<OpenedCallback> launches_;
  // Targets the launcher opened, so far.
  std::set<QString> opened_;
  int slot_ = 0;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_WINDOW_LAUNCHER_H_
