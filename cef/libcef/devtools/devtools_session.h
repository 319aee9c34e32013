// The DevTools protocol over one Chromium process: numbered commands matched
// with their replies, and events handed to subscribers.

#ifndef CEF_LIBCEF_DEVTOOLS_DEVTOOLS_SESSION_H_
#define CEF_LIBCEF_DEVTOOLS_DEVTOOLS_SESSION_H_

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include <QJsonObject>
#include <QString>

#include "libcef/devtools/chromium_process.h"

namespace cefengine {

struct DevToolsSessionCore;

// A command's outcome: |error| is empty on success.
struct DevToolsReply {
  QJsonObject result;
  QJsonObject error;
  bool ok() const { return error.isEmpty(); }
};

class DevToolsSession {
 public:
  // Runs a task on the user's thread. Called from any thread, tasks in the
  // order they must run; it must keep that order.
  using Dispatcher = std::function<void(std::function<void()>)>;
  using CommandCallback =
      std::function<void(const QJsonObject& result, const QJsonObject& error)>;
  // |sessionId| is empty for the browser target.
  using EventHandler = std::function<void(const QString& method,
                                          const QJsonObject& params,
                                          const QString& sessionId)>;

  // Errors the session makes up itself, in the protocol's error shape.
  static constexpr int kDisconnectedCode = -32000;  // "Chromium disconnected"
  static constexpr int kTimeoutCode = -32001;
  static constexpr int kWrongThreadCode = -32002;
  // Sent to every subscriber when Chromium's pipe ends, with params
  // {exitCode, signal, status}.
  static constexpr char kDisconnectedEvent[] = "Brovia.disconnected";
  // How long a command may wait for its reply unless told otherwise.
  static constexpr std::chrono::milliseconds kDefaultDeadline{30000};

  explicit DevToolsSession(Dispatcher dispatcher);
  DevToolsSession(const DevToolsSession&) = delete;
  DevToolsSession& operator=(const DevToolsSession&) = delete;
  // Stops Chromium. From here on no callback or handler is called; tasks
  // already given to the dispatcher do nothing. The dispatcher itself may be
  // called until this returns.
  ~DevToolsSession();

  // Starts Chromium; see ChromiumProcess::start. Once per session. Blocks
  // until exec.
  bool start(const ChromiumProcess::Options& options, std::string* error);

  // Asks Chromium to close (Browser.close), then ends it as
  // ChromiumProcess::stop does: pending commands fail and subscribers get
  // kDisconnectedEvent. Blocks the caller; from the owner's thread.
  void stop(
      std::chrono::milliseconds timeout = ChromiumProcess::kDefaultStopTimeout);

  bool isConnected() const;
  pid_t pid() const { return process_.pid(); }

  // Sends a command to the browser target (empty |sessionId|) or to an
  // attached target's session. Any thread. |callback| (may be empty) runs
  // through the dispatcher with the reply, with a kDisconnectedCode error if
  // Chromium is or goes away first, or with a kTimeoutCode error once
  // |deadline| passed without a reply (a later reply is dropped). Returns
  // the command id.
  int sendCommand(const QString& method,
                  const QJsonObject& params,
                  const QString& sessionId,
                  CommandCallback callback,
                  std::chrono::milliseconds deadline = kDefaultDeadline);

  // Blocks the caller until the reply, the disconnect or |timeout|, for
  // start-up code. The reply skips the dispatcher, so events that came before
  // it may still be queued there. Refused (at once, with kWrongThreadCode) on
  // the reader thread, where it could never be answered.
  DevToolsReply sendCommandSync(const QString& method,
                                const QJsonObject& params,
                                const QString& sessionId,
                                std::chrono::milliseconds timeout);

  // Events of one session ("" = the browser target), or of all. Handlers run
  // through the dispatcher in arrival order. Any thread; an unsubscribe made
  // on the dispatcher's thread stops the calls at once. Returns the id for
  // unsubscribe.
  int subscribe(const QString& sessionId, EventHandler handler);
  int subscribeAll(EventHandler handler);
  void unsubscribe(int subscription);

 private:
  void onMessage(const QByteArray& message);
  // Fails commands whose deadline passed. Its own thread.
  static void expireMain(std::shared_ptr<DevToolsSessionCore> core);

  std::shared_ptr<DevToolsSessionCore> core_;
  bool started_ = false;
  ChromiumProcess process_;
  std::thread expirer_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_DEVTOOLS_DEVTOOLS_SESSION_H_
