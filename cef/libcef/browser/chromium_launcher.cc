#include "libcef/browser/chromium_launcher.h"

#include <unistd.h>

#include <chrono>
#include <set>
#include <utility>

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>

#include "include/base/cef_logging.h"
#include "include/cef_command_line.h"
#include "libcef/browser/browser_registry.h"
#include "libcef/browser/profile_start_lock.h"
#include "libcef/browser/window_launcher.h"
#include "libcef/context.h"
#include "libcef/devtools/chromium_process.h"
#include "libcef/osr/frame_source_choice.h"
#include "libcef/osr/x_server.h"

namespace cefengine {

namespace {

constexpr std::chrono::seconds kStartTimeout{20};
constexpr std::chrono::milliseconds kStopTimeout{3000};

// Switches the engine sets itself, or that would cut it off from Chromium.
const std::set<std::string>& ReservedSwitches() {
  // Never destroyed: engine threads may still ask while the process exits.
  static const std::set<std::string>& reserved = *new std::set<std::string>{
      "remote-debugging-pipe",    "remote-debugging-port",
      "remote-debugging-address", "remote-debugging-io-pipes",
      "user-data-dir",            "headless",
      "force-device-scale-factor", "type",
      "app",                      "ozone-platform",
  };
  return reserved;
}

// Whether the X server already failed once: then the screencast serves for
// good, said once.
std::atomic<bool> g_x11_failed{false};

}  // namespace

ChromiumLauncher::ChromiumLauncher(std::string cache_path)
    : cache_path_(std::move(cache_path)) {}

std::vector<std::string> ChromiumLauncher::Switches() {
  // Cross-site frames get renderers of their own, as in a desktop Chromium
  // (the headless shell would keep them in the page's); the page's session
  // attaches them.
  std::vector<std::string> switches{"site-per-process"};
  CefRefPtr<CefCommandLine> command_line =
      CefCommandLine::GetGlobalCommandLine();
  if (command_line) {
    CefCommandLine::SwitchMap map;
    command_line->GetSwitches(map);
    for (const auto& [name, value] : map) {
      const std::string key = name.ToString();
      if (key.empty() || ReservedSwitches().count(key)) {
        continue;
      }
      switches.push_back(value.empty() ? key : key + "=" + value.ToString());
    }
  }
  return switches;
}

void ChromiumLauncher::AddDebuggingSwitches(
    std::vector<std::string>* switches) {
  const int port = Context::Get()->settings().remote_debugging_port;
  // A Chromium started again (after its death, or at another factor) keeps
  // the port of the one before, which is gone by now.
  if (port >= 1024 && port <= 65535 &&
      (holds_debug_port_ || BrowserRegistry::Get().ClaimRemoteDebugging())) {
    holds_debug_port_ = true;
    switches->push_back("remote-debugging-port=" + std::to_string(port));
    switches->push_back("remote-debugging-address=127.0.0.1");
  }
}

void ChromiumLauncher::ReleaseDebuggingPort() {
  if (holds_debug_port_.exchange(false)) {
    BrowserRegistry::Get().ReleaseRemoteDebugging();
  }
}

void ChromiumLauncher::RemoveTemporaryProfile() {
  temp_dir_.reset();
}

std::string ChromiumLauncher::UserDataDir() {
  if (!cache_path_.empty()) {
    if (!QDir().mkpath(QString::fromStdString(cache_path_))) {
      LOG(ERROR) << "Cannot create the cache directory " << cache_path_;
      return {};
    }
    return cache_path_;
  }
  if (!temp_dir_) {
    temp_dir_ = std::make_unique<QTemporaryDir>(
        QDir::tempPath() + QStringLiteral("/brovia-profile-XXXXXX"));
  }
  if (!temp_dir_->isValid()) {
    LOG(ERROR) << "Cannot create a temporary Chromium profile: "
               << temp_dir_->errorString().toStdString();
    return {};
  }
  return temp_dir_->path().toStdString();
}

ChromiumLauncher::Launched ChromiumLauncher::Launch(
    float device_scale_factor,
    std::vector<std::string> switches,
    std::shared_ptr<DevToolsSession> session,
    const std::atomic<bool>& shut_down) {
  AddDebuggingSwitches(&switches);
  const std::string user_data_dir = UserDataDir();
  if (user_data_dir.empty()) {
    return {};
  }

  ChromiumProcess::Options options;
  options.program = Context::Get()->chromium_path();
  options.userDataDir = user_data_dir;
  options.deviceScaleFactor = device_scale_factor;
  options.extraSwitches = std::move(switches);

  // The X frame source: a full Chromium in the engine's own X server, a
  // drop-in for the headless one.
  const FrameSourceChoice& choice = FrameSourceChoice::Get(
      CefString(&Context::Get()->settings().browser_subprocess_path)
          .ToString());
  std::shared_ptr<XServer> x_server;
  std::unique_ptr<ProfileStartLock> profile_lock;
  if (choice.x11 && !g_x11_failed) {
    std::string x_error;
    x_server = XServer::Get(choice.xvfb, &x_error);
    if (!x_server && !g_x11_failed.exchange(true)) {
      LOG(WARNING) << "Frame source: the engine's X server cannot start ("
                   << x_error
                   << "), so frames come from the slower PNG screencast";
    }
  }
  if (x_server) {
    // A full Chromium hands itself over to another one that runs on the
    // same profile (its process singleton) and quits. Profiles are shared
    // the way the headless shell shares them: its lock goes, and other
    // hosts' starts on this profile wait until this one has answered.
    profile_lock =
        std::make_unique<ProfileStartLock>(user_data_dir, kStartTimeout);
    for (const char* singleton :
         {"SingletonLock", "SingletonSocket", "SingletonCookie"}) {
      ::unlink((user_data_dir + "/" + singleton).c_str());
    }
    options.program = choice.chromium;
    options.x11Display = x_server->display_name();
    options.extraSwitches.push_back(std::string("app=") + WindowLauncher::kUrl);
  }

  if (shut_down) {
    return {};
  }
  std::string error;
  if (!session->start(options, &error)) {
    LOG(ERROR) << "Cannot start Chromium: " << error;
    return {};
  }
  const DevToolsReply version = session->sendCommandSync(
      QStringLiteral("Browser.getVersion"), {}, QString(), kStartTimeout);
  if (!version.ok()) {
    LOG(ERROR) << "Chromium (pid " << session->pid() << ") did not answer: "
               << version.error.value(QLatin1String("message"))
                      .toString()
                      .toStdString();
    session->stop(kStopTimeout);
    return {};
  }

  // Past its singleton check by now.
  profile_lock.reset();

  const std::string configured =
      CefString(&Context::Get()->settings().user_agent).ToString();
  Launched launched;
  launched.user_agent =
      configured.empty()
          ? version.result.value(QLatin1String("userAgent"))
                .toString()
                .replace(QLatin1String("HeadlessChrome/"),
                         QLatin1String("Chrome/"))
          : QString::fromStdString(configured);

  if (x_server &&
      !WindowLauncher::Find(session.get(), kStartTimeout,
                            &launched.launcher_target,
                            &launched.launcher_session)) {
    LOG(ERROR) << "Chromium (pid " << session->pid()
               << ") opened no start-up window on the X server";
    session->stop(kStopTimeout);
    return {};
  }
  launched.x_server = std::move(x_server);

  // Every new page, ours or a popup, is attached and held before it runs,
  // so that no event of its first load is missed.
  session->sendCommand(QStringLiteral("Target.setDiscoverTargets"),
                       QJsonObject{{"discover", true}}, QString(), {});
  session->sendCommand(
      QStringLiteral("Target.setAutoAttach"),
      QJsonObject{{"autoAttach", true},
                  {"waitForDebuggerOnStart", true},
                  {"flatten", true},
                  {"filter", QJsonArray{QJsonObject{{"type", "page"}}}}},
      QString(), {});
  launched.session = std::move(session);
  return launched;
}

}  // namespace cefengine
