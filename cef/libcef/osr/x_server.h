// The engine's private X server: Debian's Xvfb, started once per process for
// the X frame source, and one Xlib connection to it served by a thread of its
// own ("CefX11"), which also owns Xvfb (it dies with that thread, so with the
// host, even on SIGKILL). Frames come from the server through XComposite,
// XDamage and MIT-SHM; XTest drives what the protocol cannot reach.
//
// Xlib's types stay out of this header: windows are XIDs (unsigned long) and
// the connection an opaque pointer.

#ifndef CEF_LIBCEF_OSR_X_SERVER_H_
#define CEF_LIBCEF_OSR_X_SERVER_H_

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

struct _XDisplay;

namespace cefengine {

class XServer {
 public:
  using WindowId = unsigned long;

  // A top-level window of the server as last seen.
  struct WindowInfo {
    WindowId id = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool override_redirect = false;
    bool mapped = false;
    // _NET_WM_WINDOW_TYPE_MENU, _COMBO, _DROPDOWN_MENU or _POPUP_MENU: a
    // drop-down such as a <select> list.
    bool menu = false;
    pid_t pid = 0;  // _NET_WM_PID, 0 if none
  };

  // Everything here runs on the X thread.
  class Observer {
   public:
    virtual ~Observer() = default;
    // A top-level window was mapped, moved, resized, unmapped or destroyed.
    virtual void OnWindowChanged(const WindowInfo& info, bool destroyed) {}
    // |drawable| has damage (XDamageReportNonEmpty: once until subtracted).
    virtual void OnDamage(WindowId drawable) {}
    // A drop-down window opened that belongs to this observer's page (the
    // one with the latest input, see LastInput).
    virtual void OnMenuMapped(const WindowInfo& info) {}
    // Xvfb ended; the connection is gone.
    virtual void OnServerGone() {}
    // When this observer's page last got a click or key (steady clock ticks;
    // 0 never) and the Chromium it lives in: a new drop-down goes to the
    // page of that Chromium with the latest input.
    virtual int64_t LastInput() const { return 0; }
    virtual pid_t ChromiumPid() const { return 0; }
  };

  // The running server, started by the first call (blocks while Xvfb starts,
  // well under a second). Null with |error| set when it cannot run or has
  // died. Any thread.
  static std::shared_ptr<XServer> Get(const std::string& xvfb,
                                      std::string* error);
  // Stops a server that runs (CefShutdown, after Chromium stopped). A later
  // Get starts none.
  static void ShutdownIfRunning();

  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  // ":N". Any thread.
  const std::string& display_name() const { return display_name_; }
  bool alive() const { return alive_.load(); }
  // Alive, and Xvfb has not ended. Any thread.
  bool Running() const;

  // Runs |task| on the X thread after |delay| (in order among equal
  // deadlines). Dropped once the server is gone. Any thread.
  void Post(std::function<void()> task,
            std::chrono::milliseconds delay = std::chrono::milliseconds(0));
  bool OnXThread() const;

  // --- X thread only ---------------------------------------------------
  _XDisplay* display() const { return display_; }
  WindowId root() const { return root_; }
  void AddObserver(Observer* observer);
  void RemoveObserver(Observer* observer);
  const std::map<WindowId, WindowInfo>& windows() const { return windows_; }
  // A window taken by one observer is not offered to another.
  bool Claim(WindowId window, Observer* observer);
  void Release(WindowId window, Observer* observer);
  // Event bases of the extensions.
  int damage_event_base() const { return damage_event_base_; }
  bool has_shm() const { return has_shm_; }

 private:
  XServer() = default;

  bool Launch(const std::string& xvfb, std::string* error);
  bool Connect(std::string* error);
  void Main();
  void RunTasks();
  void HandleEvent(void* event);
  void ReadWindow(WindowId window);
  void Notify(const WindowInfo& info, bool destroyed);
  void Stop();

  std::string display_name_;
  std::atomic<bool> alive_{false};
  std::atomic<bool> stopping_{false};
  std::thread thread_;
  std::thread::id thread_id_;
  pid_t pid_ = -1;
  // Xvfb ended by itself (X thread).
  bool server_gone_ = false;
  int pid_fd_ = -1;
  // Its own copy of |pid_fd_| for Running(), closed with the object.
  int exit_fd_ = -1;
  int wake_fd_ = -1;

  // Start-up hand-shake between Get and the thread.
  std::mutex start_mutex_;
  std::condition_variable started_;
  bool start_done_ = false;
  std::string start_error_;

  struct Task {
    std::chrono::steady_clock::time_point due;
    uint64_t order;
    std::function<void()> run;
  };
  std::mutex task_mutex_;
  std::vector<Task> tasks_;
  uint64_t task_order_ = 0;

  // X thread.
  _XDisplay* display_ = nullptr;
  WindowId root_ = 0;
  int damage_event_base_ = 0;
  bool has_shm_ = false;
  std::map<WindowId, WindowInfo> windows_;
  std::map<WindowId, Observer*> claims_;
  std::vector<Observer*> observers_;
  unsigned long menu_atoms_[4] = {};
  unsigned long type_atom_ = 0;
  unsigned long pid_atom_ = 0;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_X_SERVER_H_
