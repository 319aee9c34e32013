// Helpers shared by the DevTools transport and session tests.

#ifndef TESTS_DEVTOOLS_DEVTOOLS_TEST_SUPPORT_H_
#define TESTS_DEVTOOLS_DEVTOOLS_TEST_SUPPORT_H_

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "libcef/devtools/chromium_process.h"

namespace devtools_test {

using namespace std::chrono_literals;

// A real Chromium ($BROVIA_CHROMIUM, else Debian's headless shell) with a fresh profile.
inline cefengine::ChromiumProcess::Options chromiumOptions(const QTemporaryDir& profile) {
  const QByteArray program = qgetenv("BROVIA_CHROMIUM");
  cefengine::ChromiumProcess::Options options;
  options.program = program.isEmpty() ? "/usr/bin/chromium-headless-shell" : program.toStdString();
  options.userDataDir = profile.path().toStdString();
  return options;
}

// An executable shell script in |dir| that stands in for Chromium.
inline std::string writeScript(const QTemporaryDir& dir, const std::string& body) {
  const QString path = dir.filePath(QStringLiteral("fake-chromium"));
  QFile file(path);
  file.open(QIODevice::WriteOnly);
  file.write(("#!/bin/sh\n" + body + "\n").c_str());
  file.close();
  chmod(QFile::encodeName(path).constData(), 0755);
  return path.toStdString();
}

// Polls |condition| until it holds; false once |timeout| has passed.
inline bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout = 10s) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(10ms);
  }
  return true;
}

// Living processes (zombies count as gone) among |pid| alone, or among group |pgid|.
inline std::vector<pid_t> liveProcesses(pid_t pid, pid_t pgid = 0) {
  std::vector<pid_t> alive;
  const QStringList entries =
      pid ? QStringList{QString::number(pid)} : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
  for (const QString& entry : entries) {
    QFile file(QStringLiteral("/proc/%1/stat").arg(entry));
    if (!file.open(QIODevice::ReadOnly)) continue;
    const QByteArray stat = file.readAll();
    // Fields resume after the command name's last ')': state, ppid, pgrp.
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    if (fields.size() > 2 && !fields[0].startsWith('Z') && !fields[0].startsWith('X') &&
        (pid || fields[2].toInt() == pgid)) {
      alive.push_back(entry.toInt());
    }
  }
  return alive;
}

// A dispatcher whose tasks run on the test's thread inside runUntil().
class TestDispatcher {
 public:
  std::function<void(std::function<void()>)> dispatcher() {
    return [this](std::function<void()> task) {
      std::lock_guard<std::mutex> lock(mutex_);
      tasks_.push_back(std::move(task));
    };
  }
  // Runs tasks in order until |done| holds; false after |timeout|.
  bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout = 10s) {
    return waitUntil(
        [&] {
          std::deque<std::function<void()>> tasks;
          {
            std::lock_guard<std::mutex> lock(mutex_);
            tasks.swap(tasks_);
          }
          for (auto& task : tasks) task();
          return done();
        },
        timeout);
  }

 private:
  std::mutex mutex_;
  std::deque<std::function<void()>> tasks_;
};

}  // namespace devtools_test

#endif  // TESTS_DEVTOOLS_DEVTOOLS_TEST_SUPPORT_H_
