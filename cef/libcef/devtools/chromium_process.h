// One Chromium process driven over --remote-debugging-pipe: spawning, the
// NUL-framed message pipe, and a clean end with no process left behind.

#ifndef CEF_LIBCEF_DEVTOOLS_CHROMIUM_PROCESS_H_
#define CEF_LIBCEF_DEVTOOLS_CHROMIUM_PROCESS_H_

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <QByteArray>

namespace cefengine {

class ChromiumProcess {
 public:
  struct Options {
    // The Chromium program. A Debian wrapper script is replaced by the binary
    // it runs (see resolveProgram).
    std::string program;
    // --user-data-dir; empty leaves Chromium's default.
    std::string userDataDir;
    // --force-device-scale-factor when > 0. Frames come in device pixels
    // only this way, so the factor is per process.
    double deviceScaleFactor = 0;
    // Further switches, "name" or "name=value", with or without the leading
    // "--"; passed after the engine's own.
    std::vector<std::string> extraSwitches;
    // False runs a Chromium with windows, on the process's $DISPLAY.
    bool headless = true;
    // Non-empty: a full (not headless) Chromium on this X display (":N"),
    // which also becomes its DISPLAY; the program must then be Debian's
    // /usr/lib/chromium/chromium binary or the like, not the headless shell.
    std::string x11Display;
  };

  // How the process ended. exitCode is -1 when it died of a signal or the
  // status could not be read (a host that reaps every child).
  struct ExitStatus {
    int exitCode = -1;
    int signal = 0;
    std::string describe() const;
  };

  // Both run on the reader thread ("CefDevToolsIO"). |message| is one
  // complete message without its NUL.
  using MessageCallback = std::function<void(const QByteArray& message)>;
  // Called once when the pipe ends (Chromium died or was stopped), after the
  // last message and after the process was reaped.
  using DisconnectCallback = std::function<void(const ExitStatus& status)>;

  static constexpr std::chrono::milliseconds kDefaultStopTimeout{5000};

  ChromiumProcess();
  ChromiumProcess(const ChromiumProcess&) = delete;
  ChromiumProcess& operator=(const ChromiumProcess&) = delete;
  // Stops the process; must not run on the reader thread.
  ~ChromiumProcess();

  // Spawns Chromium and its reader thread. Returns false with a readable
  // |error| when the program is missing, not executable or cannot be run.
  // A Chromium that starts and then dies at once is reported through
  // |onDisconnect|. One start per object. Blocks until exec has happened.
  bool start(const Options& options,
             MessageCallback onMessage,
             DisconnectCallback onDisconnect,
             std::string* error);

  // Writes one message and its NUL. Any thread; never blocks for good: a
  // Chromium that takes no input for a while is killed (its stream is broken
  // then), which ends in the disconnect callback. False if not running or
  // the write failed.
  bool send(const QByteArray& message);

  // Closes the command pipe (Chromium quits on it), then SIGTERMs its process
  // group, then SIGKILLs it, spending up to |timeout| before the kill; joins
  // the reader and reaps the child. Blocks the caller; from the owner's
  // thread. On the reader thread (inside a callback) it kills at once and
  // returns. No effect unless running.
  void stop(std::chrono::milliseconds timeout = kDefaultStopTimeout);

  // The Chromium process id (also its process group), -1 before start; kept
  // after the process ended.
  pid_t pid() const { return pid_.load(); }

  bool isReaderThread() const {
    return std::this_thread::get_id() == readerId_.load();
  }

  // A Debian wrapper script such as /usr/bin/chromium-headless-shell runs
  // /usr/lib/chromium/<same name> as its child; exec'ing that binary directly
  // keeps Chromium our own child, so that it dies with us. Other paths come
  // back unchanged.
  static std::string resolveProgram(const std::string& path);

 private:
  // The switches Chromium gets, program first.
  static std::vector<std::string> commandLine(const Options& options);

  void readerMain(const Options& options);
  bool spawn(const Options& options, std::string* error);
  void readMessages();
  ExitStatus reap();
  void waitReaped(std::chrono::steady_clock::time_point deadline);
  void wake();

  MessageCallback onMessage_;
  DisconnectCallback onDisconnect_;
  std::thread reader_;
  std::atomic<std::thread::id> readerId_{};
  std::atomic<pid_t> pid_{-1};
  std::atomic<bool> stopping_{false};

  // Our end of Chromium's command pipe (its fd 3); guarded by writeMutex_.
  std::mutex writeMutex_;
  int commandFd_ = -1;
  // Our end of Chromium's reply pipe (its fd 4); reader thread only.
  int replyFd_ = -1;
  // Readable when the process has exited (-1 if the kernel lacks pidfds).
  int pidFd_ = -1;
  // Signalled by stop() so that pollers give up waiting.
  int wakeFd_ = -1;

  std::mutex stateMutex_;
  std::condition_variable stateChanged_;
  bool spawnDone_ = false;
  std::string spawnError_;
  bool reaped_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_DEVTOOLS_CHROMIUM_PROCESS_H_
