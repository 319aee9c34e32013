// A WebSocket endpoint on loopback for one DevTools front end at a time,
// reachable only under a random path: the front end's messages go to a
// handler, and anything sent goes back to it.

#ifndef CEF_LIBCEF_DEVTOOLS_DEVTOOLS_RELAY_H_
#define CEF_LIBCEF_DEVTOOLS_DEVTOOLS_RELAY_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace cefengine {

struct DevToolsRelayCore;

class DevToolsRelay {
 public:
  // Runs on the relay thread ("CefDevToolsRelay") with one text message.
  using MessageHandler = std::function<void(const std::string& message)>;

  DevToolsRelay();
  DevToolsRelay(const DevToolsRelay&) = delete;
  DevToolsRelay& operator=(const DevToolsRelay&) = delete;
  ~DevToolsRelay();  // Stop()

  // Listens on 127.0.0.1 at a port the system picks, under a path made of
  // 128 random bits. False with |error| if it cannot. Once per relay.
  bool Start(MessageHandler on_message, std::string* error);
  // Closes the port and the front end's connection; blocks until the relay
  // thread ended. Not from a message handler.
  void Stop();

  // Queues |message| for the connected front end; dropped when none is.
  // Any thread.
  void Send(std::string message);

  // Valid after Start.
  uint16_t port() const { return port_; }
  // "/" and 32 hexadecimal digits.
  const std::string& path() const { return path_; }

 private:
  std::shared_ptr<DevToolsRelayCore> core_;
  uint16_t port_ = 0;
  std::string path_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_DEVTOOLS_DEVTOOLS_RELAY_H_
