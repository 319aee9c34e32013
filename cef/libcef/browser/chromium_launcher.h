// Starting one Chromium process for a storage: its profile folder, its
// switches, the engine's X server with the X frame source, and the wait for
// its first answer. What the start gives is handed to ChromiumInstance.

#ifndef CEF_LIBCEF_BROWSER_CHROMIUM_LAUNCHER_H_
#define CEF_LIBCEF_BROWSER_CHROMIUM_LAUNCHER_H_

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include <QString>
#include <QTemporaryDir>

#include "libcef/devtools/devtools_session.h"

namespace cefengine {

class XServer;

class ChromiumLauncher {
 public:
  // What a start ends with; no session when it failed (the reason logged).
  struct Launched {
    std::shared_ptr<DevToolsSession> session;
    QString user_agent;
    std::shared_ptr<XServer> x_server;
    // With the X source: the launcher page, attached.
    QString launcher_target;
    QString launcher_session;
  };

  // An empty |cache_path| means a temporary profile, kept until
  // RemoveTemporaryProfile.
  explicit ChromiumLauncher(std::string cache_path);
  ChromiumLauncher(const ChromiumLauncher&) = delete;
  ChromiumLauncher& operator=(const ChromiumLauncher&) = delete;

  // The application's switches for Chromium, minus those the engine sets
  // itself. Read on the thread that asks for a start: the application's
  // command line may be gone by the time a start runs at the process's exit.
  static std::vector<std::string> Switches();

  // Spawns Chromium at |device_scale_factor| and waits for its first answer
  // (blocks, normally well under a second, 20 s at most). |session| gets
  // every event from the moment Chromium runs. Nothing starts once
  // |shut_down| is set. One start at a time; the starter thread.
  Launched Launch(float device_scale_factor,
                  std::vector<std::string> switches,
                  std::shared_ptr<DevToolsSession> session,
                  const std::atomic<bool>& shut_down);

  // The Chromium that held the debugging port stopped for good. Any thread.
  void ReleaseDebuggingPort();
  // After the last Chromium of this storage stopped. Any thread.
  void RemoveTemporaryProfile();

 private:
  // The profile folder, made if need be; empty (logged) when it cannot be.
  std::string UserDataDir();
  // The debugging port, to the first Chromium that asks.
  void AddDebuggingSwitches(std::vector<std::string>* switches);

  const std::string cache_path_;
  std::unique_ptr<QTemporaryDir> temp_dir_;
  // A Chromium of this storage took the debugging port.
  std::atomic<bool> holds_debug_port_{false};
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_CHROMIUM_LAUNCHER_H_
