#include "libcef/osr/x_server.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "include/base/cef_logging.h"
#include "libcef/osr/xvfb_process.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xcomposite.h>
#include <X11/extensions/Xdamage.h>
#include <X11/extensions/Xfixes.h>

namespace cefengine {

namespace {

std::string ErrnoText(int error) {
  char buffer[256];
  return strerror_r(error, buffer, sizeof(buffer));
}

// Errors of our own connection are expected (a window that went between an
// event and a request); others go to whoever handled them before.
XErrorHandler g_previous_error_handler = nullptr;
std::atomic<Display*> g_our_display{nullptr};

int OnXError(Display* display, XErrorEvent* event) {
  if (display == g_our_display.load())
    return 0;
  return g_previous_error_handler ? g_previous_error_handler(display, event)
                                  : 0;
}

// Xlib's default I/O error handler exits the process; ours returns for our
// connection, and then its exit handler lets the X thread notice and end.
std::atomic<bool> g_io_error{false};
XIOErrorHandler g_previous_io_handler = nullptr;
void OnXIoErrorExit(Display*, void*) {
  g_io_error = true;
}
int OnXIoError(Display* display) {
  if (display == g_our_display.load()) {
    g_io_error = true;
    return 0;
  }
  return g_previous_io_handler ? g_previous_io_handler(display) : 0;
}

std::mutex g_server_mutex;
std::shared_ptr<XServer>& ServerSlot() {
  // Never destroyed: the X thread may still run while the process exits.
  static auto* slot = new std::shared_ptr<XServer>();
  return *slot;
}
bool g_shut_down = false;

}  // namespace

std::shared_ptr<XServer> XServer::Get(const std::string& xvfb,
                                      std::string* error) {
  std::lock_guard<std::mutex> lock(g_server_mutex);
  std::shared_ptr<XServer>& slot = ServerSlot();
  if (g_shut_down) {
    *error = "the engine is shut down";
    return nullptr;
  }
  if (slot && slot->Running())
    return slot;
  if (slot) {
    // A dead one: its thread has ended or is ending.
    if (slot->thread_.joinable() && !slot->OnXThread())
      slot->thread_.join();
    slot.reset();
  }
  std::shared_ptr<XServer> server(new XServer());
  server->wake_fd_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (server->wake_fd_ < 0) {
    *error = "eventfd: " + ErrnoText(errno);
    return nullptr;
  }
  XServer* raw = server.get();
  // The thread forks Xvfb: PR_SET_PDEATHSIG follows the forking thread,
  // which lives exactly as long as the server is ours.
  server->thread_ = std::thread([raw, xvfb] {
    raw->thread_id_ = std::this_thread::get_id();
    pthread_setname_np(pthread_self(), "CefX11");
    std::string failure;
    const bool ok = raw->Launch(xvfb, &failure) && raw->Connect(&failure);
    {
      std::lock_guard<std::mutex> start_lock(raw->start_mutex_);
      raw->start_done_ = true;
      raw->start_error_ = failure;
      raw->alive_ = ok;
    }
    raw->started_.notify_all();
    if (ok)
      raw->Main();
    raw->Stop();
  });
  {
    std::unique_lock<std::mutex> start_lock(server->start_mutex_);
    server->started_.wait(start_lock, [&] { return server->start_done_; });
  }
  if (!server->alive()) {
    *error = server->start_error_;
    server->thread_.join();
    return nullptr;
  }
  slot = server;
  return server;
}

void XServer::ShutdownIfRunning() {
  std::shared_ptr<XServer> server;
  {
    std::lock_guard<std::mutex> lock(g_server_mutex);
    g_shut_down = true;
    server.swap(ServerSlot());
  }
  if (!server)
    return;
  server->stopping_ = true;
  const uint64_t one = 1;
  ssize_t ignored = write(server->wake_fd_, &one, sizeof(one));
  (void)ignored;
  if (server->thread_.joinable() && !server->OnXThread())
    server->thread_.join();
}

XServer::~XServer() {
  if (thread_.joinable()) {
    if (OnXThread()) {
      thread_.detach();
    } else {
      stopping_ = true;
      const uint64_t one = 1;
      ssize_t ignored = write(wake_fd_, &one, sizeof(one));
      (void)ignored;
      thread_.join();
    }
  }
  if (wake_fd_ >= 0)
    close(wake_fd_);
  if (exit_fd_ >= 0)
    close(exit_fd_);
}

bool XServer::Running() const {
  if (!alive_)
    return false;
  // The X thread may not have seen Xvfb's end yet, while Chromium has.
  pollfd ended = {exit_fd_, POLLIN, 0};
  return exit_fd_ < 0 || poll(&ended, 1, 0) == 0;
}

bool XServer::OnXThread() const {
  return std::this_thread::get_id() == thread_id_;
}

void XServer::Post(std::function<void()> task,
                   std::chrono::milliseconds delay) {
  {
    std::lock_guard<std::mutex> lock(task_mutex_);
    if (!alive_)
      return;
    tasks_.push_back(
        {std::chrono::steady_clock::now() + delay, task_order_++,
         std::move(task)});
  }
  const uint64_t one = 1;
  ssize_t ignored = write(wake_fd_, &one, sizeof(one));
  (void)ignored;
}

bool XServer::Launch(const std::string& xvfb, std::string* error) {
  XvfbProcess process;
  const bool started = XvfbProcess::Spawn(xvfb, &process, error);
  // Kept even when it failed: Stop() ends what still runs.
  pid_ = process.pid;
  pid_fd_ = process.pid_fd;
  if (pid_fd_ >= 0)
    exit_fd_ = fcntl(pid_fd_, F_DUPFD_CLOEXEC, 0);
  display_name_ = process.display_name;
  return started;
}

bool XServer::Connect(std::string* error) {
  // The connection to a server that died before this one is over.
  g_io_error = false;
  display_ = XOpenDisplay(display_name_.c_str());
  if (!display_) {
    *error = "cannot connect to Xvfb on " + display_name_;
    return false;
  }
  g_our_display = display_;
  {
    static std::once_flag handlers;
    std::call_once(handlers, [] {
      g_previous_error_handler = XSetErrorHandler(OnXError);
      g_previous_io_handler = XSetIOErrorHandler(OnXIoError);
    });
  }
  XSetIOErrorExitHandler(display_, OnXIoErrorExit, nullptr);
  int event_base = 0, error_base = 0, major = 0, minor = 0;
  if (!XCompositeQueryExtension(display_, &event_base, &error_base) ||
      !XDamageQueryExtension(display_, &damage_event_base_, &error_base) ||
      !XFixesQueryExtension(display_, &event_base, &error_base) ||
      !XTestQueryExtension(display_, &event_base, &error_base, &major,
                           &minor)) {
    *error = "Xvfb lacks Composite, DAMAGE, XFIXES or XTEST";
    return false;
  }
  // Versions must be announced before the requests are used.
  major = 0;
  minor = 4;
  XCompositeQueryVersion(display_, &major, &minor);
  major = 1;
  minor = 1;
  XDamageQueryVersion(display_, &major, &minor);
  major = 5;
  minor = 0;
  XFixesQueryVersion(display_, &major, &minor);
  has_shm_ = XShmQueryExtension(display_);
  root_ = DefaultRootWindow(display_);
  // Every top-level window paints into a pixmap of its own, none onto the
  // screen: windows may overlap and reach beyond the screen.
  XCompositeRedirectSubwindows(display_, root_, CompositeRedirectManual);
  XSelectInput(display_, root_, SubstructureNotifyMask);
  // The pointer rests in the corner, away from the windows, which lie near
  // the top left: only drop-downs get X pointer input (XTest).
  XWarpPointer(display_, 0, root_, 0, 0, 0, 0,
               DisplayWidth(display_, DefaultScreen(display_)) - 1,
               DisplayHeight(display_, DefaultScreen(display_)) - 1);
  type_atom_ = XInternAtom(display_, "_NET_WM_WINDOW_TYPE", False);
  pid_atom_ = XInternAtom(display_, "_NET_WM_PID", False);
  const char* menus[4] = {
      "_NET_WM_WINDOW_TYPE_MENU", "_NET_WM_WINDOW_TYPE_COMBO",
      "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", "_NET_WM_WINDOW_TYPE_POPUP_MENU"};
  for (int i = 0; i < 4; ++i)
    menu_atoms_[i] = XInternAtom(display_, menus[i], False);
  XSync(display_, False);
  return true;
}

void XServer::Main() {
  Display* display = display_;
  const int x_fd = ConnectionNumber(display);
  for (;;) {
    RunTasks();
    while (!g_io_error && XPending(display)) {
      XEvent event;
      XNextEvent(display, &event);
      HandleEvent(&event);
    }
    if (stopping_)
      return;
    if (g_io_error) {
      LOG(ERROR) << "The engine's X server (Xvfb " << display_name_
                 << ") broke its connection";
      return;
    }
    XFlush(display);
    int timeout = -1;
    {
      std::lock_guard<std::mutex> lock(task_mutex_);
      const auto now = std::chrono::steady_clock::now();
      for (const Task& task : tasks_) {
        const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(
                              task.due - now)
                              .count();
        const int ms = wait <= 0 ? 0 : static_cast<int>(wait) + 1;
        timeout = timeout < 0 ? ms : std::min(timeout, ms);
      }
    }
    pollfd fds[3] = {{x_fd, POLLIN, 0}, {wake_fd_, POLLIN, 0},
                     {pid_fd_, POLLIN, 0}};
    const int ready = poll(fds, pid_fd_ >= 0 ? 3 : 2, timeout);
    if (ready < 0 && errno != EINTR)
      return;
    if (fds[1].revents) {
      uint64_t count;
      ssize_t ignored = read(wake_fd_, &count, sizeof(count));
      (void)ignored;
    }
    if (pid_fd_ >= 0 && fds[2].revents) {
      server_gone_ = true;
      LOG(ERROR) << "The engine's X server (Xvfb " << display_name_
                 << ") ended unexpectedly";
      return;
    }
  }
}

void XServer::RunTasks() {
  for (;;) {
    std::function<void()> run;
    {
      std::lock_guard<std::mutex> lock(task_mutex_);
      const auto now = std::chrono::steady_clock::now();
      auto due = tasks_.end();
      for (auto it = tasks_.begin(); it != tasks_.end(); ++it) {
        if (it->due <= now &&
            (due == tasks_.end() || it->due < due->due ||
             (it->due == due->due && it->order < due->order)))
          due = it;
      }
      if (due == tasks_.end())
        return;
      run = std::move(due->run);
      tasks_.erase(due);
    }
    run();
    if (g_io_error)
      return;
  }
}

void XServer::Stop() {
  const bool was_alive = alive_.exchange(false);
  {
    std::lock_guard<std::mutex> lock(task_mutex_);
    tasks_.clear();
  }
  if (was_alive) {
    std::vector<Observer*> observers = observers_;
    for (Observer* observer : observers)
      observer->OnServerGone();
  }
  observers_.clear();
  claims_.clear();
  windows_.clear();
  if (display_) {
    // After an I/O error, or with the server gone, Xlib's display cannot be
    // closed safely (closing talks to the server); it leaks.
    if (!g_io_error && !server_gone_)
      XCloseDisplay(display_);
    g_our_display = nullptr;
    display_ = nullptr;
  }
  if (pid_ > 0) {
    kill(-pid_, SIGTERM);
    for (int i = 0; i < 50; ++i) {
      if (waitpid(pid_, nullptr, WNOHANG) == pid_) {
        pid_ = -1;
        break;
      }
      usleep(10000);
    }
    if (pid_ > 0) {
      kill(-pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
      pid_ = -1;
    }
  }
  if (pid_fd_ >= 0) {
    close(pid_fd_);
    pid_fd_ = -1;
  }
}

void XServer::AddObserver(Observer* observer) {
  observers_.push_back(observer);
}

void XServer::RemoveObserver(Observer* observer) {
  observers_.erase(std::remove(observers_.begin(), observers_.end(), observer),
                   observers_.end());
  for (auto it = claims_.begin(); it != claims_.end();) {
    it = it->second == observer ? claims_.erase(it) : std::next(it);
  }
}

bool XServer::Claim(WindowId window, Observer* observer) {
  auto it = claims_.find(window);
  if (it != claims_.end())
    return it->second == observer;
  claims_[window] = observer;
  return true;
}

void XServer::Release(WindowId window, Observer* observer) {
  auto it = claims_.find(window);
  if (it != claims_.end() && it->second == observer)
    claims_.erase(it);
}

void XServer::ReadWindow(WindowId window) {
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(display_, window, &attributes))
    return;
  WindowInfo& info = windows_[window];
  info.id = window;
  info.x = attributes.x;
  info.y = attributes.y;
  info.width = attributes.width;
  info.height = attributes.height;
  info.override_redirect = attributes.override_redirect;
  info.mapped = attributes.map_state != IsUnmapped;
  Atom type;
  int format;
  unsigned long count, after;
  unsigned char* data = nullptr;
  info.menu = false;
  if (XGetWindowProperty(display_, window, type_atom_, 0, 8, False, XA_ATOM,
                         &type, &format, &count, &after, &data) == Success &&
      data) {
    const Atom* atoms = reinterpret_cast<const Atom*>(data);
    for (unsigned long i = 0; i < count; ++i) {
      for (unsigned long menu : menu_atoms_)
        info.menu = info.menu || atoms[i] == menu;
    }
    XFree(data);
  }
  data = nullptr;
  if (XGetWindowProperty(display_, window, pid_atom_, 0, 1, False,
                         XA_CARDINAL, &type, &format, &count, &after,
                         &data) == Success &&
      data) {
    if (count == 1)
      info.pid = static_cast<pid_t>(*reinterpret_cast<const long*>(data));
    XFree(data);
  }
}

void XServer::Notify(const WindowInfo& info, bool destroyed) {
  std::vector<Observer*> observers = observers_;
  for (Observer* observer : observers) {
    if (std::find(observers_.begin(), observers_.end(), observer) !=
        observers_.end())
      observer->OnWindowChanged(info, destroyed);
  }
}

void XServer::HandleEvent(void* raw) {
  XEvent* event = static_cast<XEvent*>(raw);
  if (event->type == damage_event_base_ + XDamageNotify) {
    const auto* damage = reinterpret_cast<XDamageNotifyEvent*>(event);
    std::vector<Observer*> observers = observers_;
    for (Observer* observer : observers) {
      if (std::find(observers_.begin(), observers_.end(), observer) !=
          observers_.end())
        observer->OnDamage(damage->drawable);
    }
    return;
  }
  switch (event->type) {
    case CreateNotify: {
      const XCreateWindowEvent& create = event->xcreatewindow;
      if (create.parent != root_)
        return;
      WindowInfo& info = windows_[create.window];
      info.id = create.window;
      info.x = create.x;
      info.y = create.y;
      info.width = create.width;
      info.height = create.height;
      info.override_redirect = create.override_redirect;
      return;
    }
    case MapNotify: {
      if (event->xmap.event != root_)
        return;
      ReadWindow(event->xmap.window);
      auto it = windows_.find(event->xmap.window);
      if (it == windows_.end())
        return;
      it->second.mapped = true;
      const WindowInfo info = it->second;
      Notify(info, false);
      if (info.menu && info.override_redirect && !claims_.count(info.id)) {
        // A drop-down: the page of its Chromium that last had input.
        Observer* owner = nullptr;
        for (Observer* observer : observers_) {
          if (observer->LastInput() > 0 &&
              (info.pid == 0 || observer->ChromiumPid() == info.pid) &&
              (!owner || observer->LastInput() > owner->LastInput()))
            owner = observer;
        }
        if (owner)
          owner->OnMenuMapped(info);
      }
      return;
    }
    case UnmapNotify: {
      if (event->xunmap.event != root_)
        return;
      auto it = windows_.find(event->xunmap.window);
      if (it == windows_.end())
        return;
      it->second.mapped = false;
      const WindowInfo info = it->second;
      Notify(info, false);
      return;
    }
    case ConfigureNotify: {
      if (event->xconfigure.event != root_)
        return;
      auto it = windows_.find(event->xconfigure.window);
      if (it == windows_.end())
        return;
      it->second.x = event->xconfigure.x;
      it->second.y = event->xconfigure.y;
      it->second.width = event->xconfigure.width;
      it->second.height = event->xconfigure.height;
      it->second.override_redirect = event->xconfigure.override_redirect;
      const WindowInfo info = it->second;
      Notify(info, false);
      return;
    }
    case DestroyNotify: {
      if (event->xdestroywindow.event != root_)
        return;
      auto it = windows_.find(event->xdestroywindow.window);
      if (it == windows_.end())
        return;
      WindowInfo info = it->second;
      info.mapped = false;
      windows_.erase(it);
      claims_.erase(info.id);
      Notify(info, true);
      return;
    }
    default:
      return;
  }
}

}  // namespace cefengine
