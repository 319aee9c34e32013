#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "devtools/devtools_test_support.h"

using cefengine::ChromiumProcess;
using namespace devtools_test;

namespace {

// What the reader thread reported.
struct Recorder {
  std::mutex mutex;
  std::vector<QByteArray> messages;
  std::vector<ChromiumProcess::ExitStatus> exits;

  bool start(ChromiumProcess& process, const ChromiumProcess::Options& options) {
    std::string error;
    const bool started = process.start(
        options,
        [this](const QByteArray& message) {
          std::lock_guard<std::mutex> lock(mutex);
          messages.push_back(message);
        },
        [this](const ChromiumProcess::ExitStatus& status) {
          std::lock_guard<std::mutex> lock(mutex);
          exits.push_back(status);
        },
        &error);
    EXPECT_TRUE(started) << error;
    return started;
  }
  size_t messageCount() {
    std::lock_guard<std::mutex> lock(mutex);
    return messages.size();
  }
  size_t exitCount() {
    std::lock_guard<std::mutex> lock(mutex);
    return exits.size();
  }
};

}  // namespace

TEST(ChromiumProcess, RefusesProgramsThatCannotRun) {
  QTemporaryDir dir;
  const std::string plainFile = dir.filePath("plain").toStdString();
  QFile(QString::fromStdString(plainFile)).open(QIODevice::WriteOnly);
  const std::pair<std::string, const char*> cases[] = {{"/nonexistent/chromium", "No such file"},
                                                       {plainFile, "not an executable"},
                                                       {dir.path().toStdString(), "not an executable"},
                                                       {"", "no Chromium program"}};
  for (const auto& [program, expected] : cases) {
    ChromiumProcess process;
    ChromiumProcess::Options options;
    options.program = program;
    std::string error;
    EXPECT_FALSE(process.start(options, {}, {}, &error)) << program;
    EXPECT_NE(error.find(expected), std::string::npos) << error;
    EXPECT_FALSE(process.send("{}"));
  }
}

TEST(ChromiumProcess, ReportsAnImmediateExitAndSurvivesWritingToIt) {
  QTemporaryDir dir;
  Recorder recorder;
  ChromiumProcess::Options options;
  options.program = writeScript(dir, "exit 3");
  ChromiumProcess process;
  ASSERT_TRUE(recorder.start(process, options));
  ASSERT_TRUE(waitUntil([&] { return recorder.exitCount() == 1; }));
  EXPECT_EQ(recorder.exits[0].exitCode, 3);

  // Nobody reads the pipe: the write raises SIGPIPE, which must not reach us.
  EXPECT_FALSE(process.send(R"({"id":1})"));
  sigset_t pending;
  sigpending(&pending);
  EXPECT_FALSE(sigismember(&pending, SIGPIPE));
  process.stop();
  EXPECT_EQ(recorder.exitCount(), 1u);
}

TEST(ChromiumProcess, ReassemblesMessagesSplitAcrossReadsAndPassesSwitches) {
  QTemporaryDir dir;
  Recorder recorder;
  ChromiumProcess::Options options;
  options.program = writeScript(dir,
                                "printf '%s\\000{\"a\":1}\\000{\"b\":' \"$*\" >&4\n"
                                "sleep 0.2\n"
                                "printf '2}\\000' >&4\n"
                                "exec cat <&3 >/dev/null");
  options.deviceScaleFactor = 1.5;
  options.extraSwitches = {"lang=de", "--enable-logging", ""};
  ChromiumProcess process;
  ASSERT_TRUE(recorder.start(process, options));
  ASSERT_TRUE(waitUntil([&] { return recorder.messageCount() == 3; }));
  process.stop();
  const QByteArray switches = recorder.messages[0];
  EXPECT_TRUE(switches.startsWith("--remote-debugging-pipe ")) << switches.constData();
  EXPECT_TRUE(switches.endsWith(" --force-device-scale-factor=1.5 --lang=de --enable-logging"))
      << switches.constData();
  EXPECT_EQ(recorder.messages[1], QByteArray(R"({"a":1})"));
  EXPECT_EQ(recorder.messages[2], QByteArray(R"({"b":2})"));
}

// A helper process starts Chromium and then exits (false) or is killed (true).
class ChromiumOrphan : public testing::TestWithParam<bool> {};

TEST_P(ChromiumOrphan, DiesWithItsParent) {
  QTemporaryDir profile;
  const ChromiumProcess::Options options = chromiumOptions(profile);
  int report[2];
  ASSERT_EQ(pipe(report), 0);
  const pid_t helper = fork();
  ASSERT_GE(helper, 0);
  if (helper == 0) {
    ChromiumProcess process;
    std::string error;
    pid_t pids[2] = {process.start(options, {}, {}, &error) ? process.pid() : -1, -1};
    // This child inherits the pipes and holds them open, so Chromium sees no
    // end of input: only the death signal can end it.
    if ((pids[1] = fork()) == 0) {
      pause();
      _exit(0);
    }
    ssize_t ignored = write(report[1], pids, sizeof(pids));
    (void)ignored;
    if (GetParam()) pause();
    _exit(0);
  }
  close(report[1]);
  pid_t pids[2] = {-1, -1};
  pollfd readable{report[0], POLLIN, 0};
  ASSERT_EQ(poll(&readable, 1, 30000), 1);
  ASSERT_EQ(read(report[0], pids, sizeof(pids)), static_cast<ssize_t>(sizeof(pids)));
  close(report[0]);
  ASSERT_GT(pids[0], 0);
  if (GetParam()) kill(helper, SIGKILL);
  ASSERT_EQ(waitpid(helper, nullptr, 0), helper);
  EXPECT_TRUE(waitUntil([&] { return liveProcesses(pids[0]).empty(); }));
  EXPECT_TRUE(waitUntil([&] { return liveProcesses(0, pids[0]).empty(); }));
  kill(-pids[0], SIGKILL);
  if (pids[1] > 0) kill(pids[1], SIGKILL);
}

INSTANTIATE_TEST_SUITE_P(HelperExitsOrIsKilled, ChromiumOrphan, testing::Bool());
