#include "libcef/osr/xvfb_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <vector>

extern char** environ;

namespace cefengine {

namespace {

constexpr std::chrono::seconds kStartTimeout{10};
// The screen: room for a 1920x1080 view at scale 2. Windows are redirected,
// so they paint whole even where they reach beyond it.
constexpr char kScreen[] = "4096x2400x24";

std::string ErrnoText(int error) {
  char buffer[256];
  return strerror_r(error, buffer, sizeof(buffer));
}

}  // namespace

bool XvfbProcess::Spawn(const std::string& xvfb,
                        XvfbProcess* out,
                        std::string* error) {
  int display_pipe[2];
  if (pipe2(display_pipe, O_CLOEXEC) != 0) {
    *error = "pipe: " + ErrnoText(errno);
    return false;
  }
  const int dev_null = open("/dev/null", O_RDWR | O_CLOEXEC);
  int output = dev_null;
  const char* log_path = getenv("BROVIA_CHROMIUM_LOG");
  if (log_path && *log_path) {
    const int log = open(log_path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC,
                         0644);
    if (log >= 0)
      output = log;
  }
  // Xvfb picks a free display number itself and writes it to fd 3 once it
  // accepts connections. No TCP, and no socket file in /tmp/.X11-unix for
  // anyone to find: only Linux's abstract socket, which Xlib and Chromium
  // try first. No reset when the last client goes. No GLX: Chromium
  // composites in software here, and loading the GL libraries is about a
  // third of the server's start.
  std::vector<std::string> args = {xvfb,       "-displayfd", "3",
                                    "-screen",  "0",          kScreen,
                                    "-nolisten", "tcp",       "-nolisten",
                                    "unix",     "-noreset",
                                    "+extension", "Composite", "+extension",
                                    "DAMAGE",   "+extension", "XFIXES",
                                    "+extension", "MIT-SHM",  "+extension",
                                    "XTEST",    "-extension", "GLX"};
  std::vector<char*> argv;
  for (std::string& arg : args)
    argv.push_back(&arg[0]);
  argv.push_back(nullptr);
  const pid_t parent = getpid();
  const int write_end = display_pipe[1];
  const pid_t child = fork();
  if (child == 0) {
    // Dies with this thread, so with the host even on SIGKILL.
    if (prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || getppid() != parent)
      _exit(127);
    setpgid(0, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    for (int sig = 1; sig < NSIG; ++sig) {
      struct sigaction action;
      if (sigaction(sig, nullptr, &action) == 0 &&
          action.sa_handler == SIG_IGN) {
        action.sa_handler = SIG_DFL;
        sigaction(sig, &action, nullptr);
      }
    }
    const int out = fcntl(output, F_DUPFD_CLOEXEC, 10);
    const int in = fcntl(dev_null, F_DUPFD_CLOEXEC, 10);
    const int fd3 = fcntl(write_end, F_DUPFD_CLOEXEC, 10);
    if (out < 0 || in < 0 || fd3 < 0 || dup2(in, 0) < 0 || dup2(out, 1) < 0 ||
        dup2(out, 2) < 0 || dup2(fd3, 3) < 0)
      _exit(127);
    close_range(4, ~0U, 0);
    execve(argv[0], argv.data(), environ);
    _exit(127);
  }
  close(display_pipe[1]);
  if (output != dev_null)
    close(output);
  close(dev_null);
  if (child < 0) {
    close(display_pipe[0]);
    *error = "fork: " + ErrnoText(errno);
    return false;
  }
  out->pid = child;
  out->pid_fd = static_cast<int>(syscall(SYS_pidfd_open, child, 0));

  std::string number;
  const auto deadline = std::chrono::steady_clock::now() + kStartTimeout;
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                          deadline - std::chrono::steady_clock::now())
                          .count();
    if (left <= 0) {
      *error = "Xvfb did not start within " +
               std::to_string(kStartTimeout.count()) + " s";
      break;
    }
    pollfd fds{display_pipe[0], POLLIN, 0};
    const int ready = poll(&fds, 1, static_cast<int>(std::min<long>(left, 100)));
    if (ready < 0 && errno != EINTR)
      break;
    if (ready > 0) {
      char buffer[32];
      const ssize_t got = read(display_pipe[0], buffer, sizeof(buffer));
      if (got > 0) {
        number.append(buffer, static_cast<size_t>(got));
        if (number.find('\n') != std::string::npos)
          break;
        continue;
      }
      if (got == 0) {
        *error = "Xvfb (" + xvfb + ") ended before it was ready";
        break;
      }
    }
    int status = 0;
    if (waitpid(child, &status, WNOHANG) == child) {
      *error = "Xvfb (" + xvfb + ") could not start";
      out->pid = -1;
      break;
    }
  }
  close(display_pipe[0]);
  while (!number.empty() && (number.back() == '\n' || number.back() == ' '))
    number.pop_back();
  if (number.empty() ||
      number.find_first_not_of("0123456789") != std::string::npos) {
    if (error->empty())
      *error = "Xvfb gave no display number";
    return false;
  }
  out->display_name = ":" + number;
  return true;
}

}  // namespace cefengine
