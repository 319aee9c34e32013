#include "libcef/devtools/chromium_process.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

extern char** environ;

namespace cefengine {

namespace {

// How long a write may wait for Chromium to take input before it counts as
// hung.
constexpr std::chrono::seconds kWriteTimeout{10};
// How long a Chromium that closed its pipe may take to exit by itself.
constexpr std::chrono::seconds kExitGrace{2};

std::string errnoText(int error) {
  char buffer[256];
  return strerror_r(error, buffer, sizeof(buffer));
}

std::string baseName(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

int remainingMs(std::chrono::steady_clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      deadline - std::chrono::steady_clock::now());
  if (left.count() <= 0)
    return 0;
  return left.count() > INT_MAX ? INT_MAX : static_cast<int>(left.count());
}

void closeFd(int& fd) {
  if (fd >= 0)
    close(fd);
  fd = -1;
}

// Writes to a pipe whose reader died raise SIGPIPE, which kills a host that
// keeps the default action. Blocking it in this thread turns it into EPIPE;
// a SIGPIPE this write raised is then consumed so that it never reaches the
// host once the mask is restored.
class SigpipeGuard {
 public:
  SigpipeGuard() {
    sigemptyset(&pipeSet_);
    sigaddset(&pipeSet_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipeSet_, &previous_);
    sigset_t pending;
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
  }
  ~SigpipeGuard() {
    if (raised_ && !wasPending_) {
      const timespec zero{};
      sigtimedwait(&pipeSet_, nullptr, &zero);
    }
    pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
  }
  void noteEpipe() { raised_ = true; }

 private:
  sigset_t pipeSet_;
  sigset_t previous_;
  bool wasPending_ = false;
  bool raised_ = false;
};

// What the forked child needs, prepared before fork: after it only
// async-signal-safe calls are allowed.
struct ChildSetup {
  pid_t parent;
  char* const* argv;
  int stdinFd;
  int outputFd;
  int commandFd;  // becomes 3
  int replyFd;    // becomes 4
  int statusFd;   // close-on-exec; carries errno if exec fails
  long maxFd;
  char* const* envp;
};

[[noreturn]] void childFail(int statusFd) {
  const int error = errno;
  ssize_t ignored = write(statusFd, &error, sizeof(error));
  (void)ignored;
  _exit(127);
}

void closeRange(unsigned first, unsigned last, long maxFd) {
  if (first > last)
    return;
  if (close_range(first, last, 0) == 0)
    return;
  for (long fd = first; fd <= static_cast<long>(last) && fd < maxFd; ++fd)
    close(static_cast<int>(fd));
}

[[noreturn]] void runChild(const ChildSetup& setup) {
  // Dies with the spawning thread. If the parent is already gone, the
  // signal was set too late to fire.
  if (prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || getppid() != setup.parent)
    _exit(127);
  // Own group, so that stopping reaches Chromium's helpers too.
  if (setpgid(0, 0) != 0)
    childFail(setup.statusFd);

  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  // exec keeps ignored signals ignored; Chromium expects default actions.
  for (int sig = 1; sig < NSIG; ++sig) {
    struct sigaction action;
    if (sigaction(sig, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
      action.sa_handler = SIG_DFL;
      sigaction(sig, &action, nullptr);
    }
  }

  // Move everything above the target numbers first: any of them may sit on
  // 0..4 and would be clobbered by the dup2 calls below.
  const int status = fcntl(setup.statusFd, F_DUPFD_CLOEXEC, 10);
  if (status < 0)
    childFail(setup.statusFd);
  const int in = fcntl(setup.stdinFd, F_DUPFD_CLOEXEC, 10);
  const int out = fcntl(setup.outputFd, F_DUPFD_CLOEXEC, 10);
  const int command = fcntl(setup.commandFd, F_DUPFD_CLOEXEC, 10);
  const int reply = fcntl(setup.replyFd, F_DUPFD_CLOEXEC, 10);
  if (in < 0 || out < 0 || command < 0 || reply < 0)
    childFail(status);
  // dup2 leaves the targets inheritable.
  if (dup2(in, 0) < 0 || dup2(out, 1) < 0 || dup2(out, 2) < 0 ||
      dup2(command, 3) < 0 || dup2(reply, 4) < 0) {
    childFail(status);
  }
  closeRange(5, static_cast<unsigned>(status) - 1, setup.maxFd);
  closeRange(static_cast<unsigned>(status) + 1, ~0U, setup.maxFd);

  execve(setup.argv[0], setup.argv, setup.envp);
  childFail(status);
}

bool waitExited(pid_t pid, int pidFd, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    siginfo_t info{};
    const int result = waitid(P_PID, static_cast<id_t>(pid), &info,
                              WEXITED | WNOHANG | WNOWAIT);
    if (result < 0 && errno == EINTR)
      continue;
    // ECHILD: someone else reaped it (a host that ignores SIGCHLD).
    if (result < 0 || info.si_pid == pid)
      return true;
    const int left = remainingMs(deadline);
    if (left == 0)
      return false;
    if (pidFd >= 0) {
      pollfd fds{pidFd, POLLIN, 0};
      poll(&fds, 1, left);
    } else {
      usleep(10000);
    }
  }
}

}  // namespace

std::string ChromiumProcess::ExitStatus::describe() const {
  if (signal > 0) {
    const char* name = sigdescr_np(signal);
    return "killed by signal " + std::to_string(signal) + " (" +
           (name ? name : "?") + ")";
  }
  if (exitCode >= 0)
    return "exited with code " + std::to_string(exitCode);
  return "exit status unknown";
}

ChromiumProcess::ChromiumProcess() = default;

ChromiumProcess::~ChromiumProcess() {
  stop();
  closeFd(wakeFd_);
}

std::string ChromiumProcess::resolveProgram(const std::string& path) {
  const std::string binary = "/usr/lib/chromium/" + baseName(path);
  if (path == binary || access(binary.c_str(), X_OK) != 0)
    return path;
  std::ifstream script(path, std::ios::binary);
  std::string head(4096, '\0');
  script.read(&head[0], static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<size_t>(script.gcount()));
  if (head.compare(0, 2, "#!") == 0 && head.find(binary) != std::string::npos)
    return binary;
  return path;
}

std::vector<std::string> ChromiumProcess::commandLine(const Options& options) {
  std::vector<std::string> args = {
      resolveProgram(options.program),
      "--remote-debugging-pipe",
  };
  if (options.x11Display.empty()) {
    // The headless shell is headless anyway; a full Chromium needs it, unless
    // it is to show windows on the process's own display.
    if (options.headless)
      args.push_back("--headless");
  } else {
    // A full Chromium in the engine's own X server. --test-type keeps the
    // warning bar about --no-sandbox away, which would eat the page's top.
    for (const char* x11 :
         {"--ozone-platform=x11", "--no-default-browser-check",
          "--password-store=basic", "--test-type",
          "--disable-session-crashed-bubble", "--hide-crash-restore-bubble",
          "--disable-infobars", "--disable-notifications",
          "--autoplay-policy=no-user-gesture-required",
          // As CEF: no popup blocker (the headless shell has none).
          "--disable-popup-blocking"})
      args.push_back(x11);
  }
  for (const char* common : {
      "--disable-gpu",
      "--no-first-run",
      // Without these Chromium keeps reaching for the network.
      "--disable-background-networking",
      "--disable-component-update",
      "--disable-sync",
      "--disable-default-apps",
      "--mute-audio",
  })
    args.push_back(common);
  // Chromium's sandbox refuses to run as root.
  if (geteuid() == 0)
    args.push_back("--no-sandbox");
  if (!options.userDataDir.empty())
    args.push_back("--user-data-dir=" + options.userDataDir);
  if (options.deviceScaleFactor > 0) {
    // QByteArray::number ignores the C locale, which a Qt host may have set.
    args.push_back(
        "--force-device-scale-factor=" +
        QByteArray::number(options.deviceScaleFactor, 'g', 6).toStdString());
  }
  for (const std::string& extra : options.extraSwitches) {
    if (extra.empty())
      continue;
    args.push_back(extra[0] == '-' ? extra : "--" + extra);
  }
  // No URL: the shell then opens no page, and the engine creates its own
  // targets.
  return args;
}

bool ChromiumProcess::start(const Options& options,
                            MessageCallback onMessage,
                            DisconnectCallback onDisconnect,
                            std::string* error) {
  if (reader_.joinable() || spawnDone_) {
    *error = "this ChromiumProcess was already started";
    return false;
  }
  if (options.program.empty()) {
    *error = "no Chromium program given";
    return false;
  }
  wakeFd_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (wakeFd_ < 0) {
    *error = "eventfd: " + errnoText(errno);
    return false;
  }
  onMessage_ = std::move(onMessage);
  onDisconnect_ = std::move(onDisconnect);
  // The reader thread forks: PR_SET_PDEATHSIG follows the forking thread,
  // and this one lives exactly as long as the process is ours.
  reader_ = std::thread([this, options] { readerMain(options); });
  std::unique_lock<std::mutex> lock(stateMutex_);
  stateChanged_.wait(lock, [this] { return spawnDone_; });
  if (spawnError_.empty())
    return true;
  *error = spawnError_;
  lock.unlock();
  reader_.join();
  return false;
}

bool ChromiumProcess::spawn(const Options& options, std::string* error) {
  std::vector<std::string> args = commandLine(options);
  const std::string& program = args[0];
  struct stat info;
  if (stat(program.c_str(), &info) != 0) {
    *error = "Chromium program " + program + ": " + errnoText(errno);
    return false;
  }
  if (!S_ISREG(info.st_mode) || access(program.c_str(), X_OK) != 0) {
    *error = "Chromium program " + program + " is not an executable file";
    return false;
  }

  int command[2] = {-1, -1};
  int reply[2] = {-1, -1};
  int status[2] = {-1, -1};
  int devNull = -1;
  int output = -1;
  auto closeAll = [&] {
    for (int* fd : {&command[0], &command[1], &reply[0], &reply[1], &status[0],
                    &status[1]})
      closeFd(*fd);
    if (output != devNull)
      closeFd(output);
    closeFd(devNull);
  };
  if (pipe2(command, O_CLOEXEC) != 0 || pipe2(reply, O_CLOEXEC) != 0 ||
      pipe2(status, O_CLOEXEC) != 0 ||
      (devNull = open("/dev/null", O_RDWR | O_CLOEXEC)) < 0) {
    *error = "cannot create Chromium's pipes: " + errnoText(errno);
    closeAll();
    return false;
  }
  output = devNull;
  const char* logPath = getenv("BROVIA_CHROMIUM_LOG");
  if (logPath && *logPath) {
    const int log =
        open(logPath, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (log >= 0)
      output = log;
    else
      std::fprintf(stderr, "brovia: cannot open Chromium log %s: %s\n", logPath,
                   errnoText(errno).c_str());
  }

  std::vector<char*> argv;
  for (std::string& arg : args)
    argv.push_back(&arg[0]);
  argv.push_back(nullptr);
  // The environment, with the engine's X display for a full Chromium.
  std::vector<std::string> environment;
  for (char** entry = environ; entry && *entry; ++entry) {
    const std::string variable = *entry;
    if (!options.x11Display.empty() &&
        (variable.rfind("DISPLAY=", 0) == 0 ||
         variable.rfind("WAYLAND_DISPLAY=", 0) == 0 ||
         variable.rfind("XAUTHORITY=", 0) == 0))
      continue;
    environment.push_back(variable);
  }
  if (!options.x11Display.empty())
    environment.push_back("DISPLAY=" + options.x11Display);
  std::vector<char*> envp;
  for (std::string& variable : environment)
    envp.push_back(&variable[0]);
  envp.push_back(nullptr);
  const ChildSetup setup{getpid(),  argv.data(),          devNull,
                         output,    command[0],           reply[1],
                         status[1], sysconf(_SC_OPEN_MAX), envp.data()};

  const pid_t child = fork();
  if (child == 0)
    runChild(setup);
  if (child < 0) {
    *error = "fork: " + errnoText(errno);
    closeAll();
    return false;
  }
  closeFd(command[0]);
  closeFd(reply[1]);
  closeFd(status[1]);

  // EOF means exec succeeded (the status pipe is close-on-exec).
  int childErrno = 0;
  ssize_t got;
  do {
    got = read(status[0], &childErrno, sizeof(childErrno));
  } while (got < 0 && errno == EINTR);
  if (got == static_cast<ssize_t>(sizeof(childErrno))) {
    waitpid(child, nullptr, 0);
    *error =
        "cannot run Chromium program " + program + ": " + errnoText(childErrno);
    closeAll();
    return false;
  }

  pid_.store(child);
  pidFd_ = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
  fcntl(command[1], F_SETFL, O_NONBLOCK);
  fcntl(reply[0], F_SETFL, O_NONBLOCK);
  {
    std::lock_guard<std::mutex> lock(writeMutex_);
    commandFd_ = command[1];
  }
  replyFd_ = reply[0];
  command[1] = reply[0] = -1;
  closeAll();
  return true;
}

void ChromiumProcess::readerMain(const Options& options) {
  readerId_.store(std::this_thread::get_id());
  pthread_setname_np(pthread_self(), "CefDevToolsIO");
  std::string error;
  const bool spawned = spawn(options, &error);
  {
    std::lock_guard<std::mutex> lock(stateMutex_);
    spawnDone_ = true;
    spawnError_ = spawned ? std::string() : error;
  }
  stateChanged_.notify_all();
  if (!spawned)
    return;
  readMessages();
  const ExitStatus status = reap();
  closeFd(replyFd_);
  closeFd(pidFd_);
  if (onDisconnect_)
    onDisconnect_(status);
}

void ChromiumProcess::readMessages() {
  QByteArray buffer;
  int scanned = 0;
  char chunk[65536];
  bool exited = false;
  for (;;) {
    pollfd fds[2] = {{replyFd_, POLLIN, 0}, {pidFd_, POLLIN, 0}};
    // Once the process has exited, only what is already in the pipe counts.
    const int ready = poll(fds, exited ? 1 : 2, exited ? 0 : -1);
    if (ready < 0 && errno == EINTR)
      continue;
    if (ready < 0)
      return;
    if (ready == 0 || (!fds[0].revents && fds[1].revents)) {
      if (exited)
        return;
      exited = true;
      continue;
    }
    const ssize_t got = read(replyFd_, chunk, sizeof(chunk));
    if (got < 0 && (errno == EINTR || errno == EAGAIN))
      continue;
    if (got <= 0)
      return;
    buffer.append(chunk, static_cast<int>(got));
    int start = 0;
    int end;
    while ((end = buffer.indexOf('\0', scanned)) >= 0) {
      if (onMessage_ && !stopping_)
        onMessage_(buffer.mid(start, end - start));
      start = scanned = end + 1;
    }
    scanned = buffer.size();
    if (start > 0) {
      buffer.remove(0, start);
      scanned -= start;
    }
  }
}

ChromiumProcess::ExitStatus ChromiumProcess::reap() {
  const pid_t pid = pid_.load();
  // During stop() the caller escalates; otherwise Chromium closed its pipe by
  // itself and gets a moment to finish.
  if (!stopping_ && !waitExited(pid, pidFd_, kExitGrace)) {
    std::lock_guard<std::mutex> lock(stateMutex_);
    kill(-pid, SIGKILL);
  }
  waitExited(pid, pidFd_, std::chrono::hours(24 * 365));
  {
    // The unreaped leader still holds the group id, so this kill can't reach
    // a stranger; it ends helpers that outlived Chromium.
    std::lock_guard<std::mutex> lock(stateMutex_);
    kill(-pid, SIGKILL);
    reaped_ = true;
  }
  stateChanged_.notify_all();
  ExitStatus status;
  int raw = 0;
  pid_t result;
  do {
    result = waitpid(pid, &raw, 0);
  } while (result < 0 && errno == EINTR);
  if (result == pid && WIFEXITED(raw))
    status.exitCode = WEXITSTATUS(raw);
  else if (result == pid && WIFSIGNALED(raw))
    status.signal = WTERMSIG(raw);
  return status;
}

bool ChromiumProcess::send(const QByteArray& message) {
  std::lock_guard<std::mutex> lock(writeMutex_);
  if (commandFd_ < 0)
    return false;
  QByteArray framed = message;
  framed.append('\0');
  SigpipeGuard guard;
  const auto deadline = std::chrono::steady_clock::now() + kWriteTimeout;
  int written = 0;
  bool hung = false;
  while (written < framed.size()) {
    const ssize_t n = write(commandFd_, framed.constData() + written,
                            static_cast<size_t>(framed.size() - written));
    if (n > 0) {
      written += static_cast<int>(n);
      continue;
    }
    if (n < 0 && errno == EINTR)
      continue;
    if (n < 0 && errno == EAGAIN) {
      pollfd fds[2] = {{commandFd_, POLLOUT, 0}, {wakeFd_, POLLIN, 0}};
      const int ready = poll(fds, 2, remainingMs(deadline));
      if (ready == 0) {
        hung = true;
        break;
      }
      if (ready > 0 && fds[1].revents)
        break;
      continue;
    }
    if (n < 0 && errno == EPIPE)
      guard.noteEpipe();
    break;
  }
  if (written == framed.size())
    return true;
  if ((hung || written > 0) && !stopping_) {
    // Half a message can't be taken back: this connection is over.
    std::fprintf(stderr, "brovia: Chromium %s; killing it\n",
                 hung ? "takes no input" : "stream broken mid-message");
    std::lock_guard<std::mutex> stateLock(stateMutex_);
    if (!reaped_)
      kill(-pid_.load(), SIGKILL);
  }
  return false;
}

void ChromiumProcess::wake() {
  const uint64_t one = 1;
  ssize_t ignored = write(wakeFd_, &one, sizeof(one));
  (void)ignored;
}

void ChromiumProcess::waitReaped(
    std::chrono::steady_clock::time_point deadline) {
  std::unique_lock<std::mutex> lock(stateMutex_);
  stateChanged_.wait_until(lock, deadline, [this] { return reaped_; });
}

void ChromiumProcess::stop(std::chrono::milliseconds timeout) {
  if (!reader_.joinable())
    return;
  const pid_t pid = pid_.load();
  stopping_ = true;
  wake();  // writers waiting for room give up
  {
    std::lock_guard<std::mutex> lock(writeMutex_);
    closeFd(commandFd_);  // Chromium exits on its own when its input ends
  }
  auto signalGroup = [this, pid](int sig) {
    std::lock_guard<std::mutex> lock(stateMutex_);
    if (!reaped_)
      kill(-pid, sig);
  };
  if (isReaderThread()) {
    // Called from a callback: the reader can't wait for itself.
    signalGroup(SIGKILL);
    return;
  }
  const auto start = std::chrono::steady_clock::now();
  waitReaped(start + timeout / 2);
  signalGroup(SIGTERM);
  waitReaped(start + timeout);
  signalGroup(SIGKILL);
  reader_.join();
}

}  // namespace cefengine
