#include "libcef/devtools/devtools_relay.h"

#include <pthread.h>

#include <deque>
#include <thread>
#include <utility>

#include <openssl/rand.h>

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/websocket.hpp>

namespace cefengine {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace websocket = beast::websocket;
using tcp = asio::ip::tcp;

namespace {

class Connection;

}  // namespace

// Everything below runs on the relay thread, except Send's post.
struct DevToolsRelayCore {
  asio::io_context io;
  tcp::acceptor acceptor{io};
  std::thread thread;
  std::string path;
  DevToolsRelay::MessageHandler on_message;
  std::shared_ptr<Connection> active;

  void Accept();
};

namespace {

class Connection : public std::enable_shared_from_this<Connection> {
 public:
  Connection(DevToolsRelayCore* core, tcp::socket socket)
      : core_(core), ws_(std::move(socket)) {}

  void Start() {
    auto self = shared_from_this();
    http::async_read(ws_.next_layer(), buffer_, request_,
                     [self](beast::error_code error, size_t) {
                       if (!error) {
                         self->OnRequest();
                       }
                     });
  }

  void Write(std::string message) {
    outgoing_.push_back(std::move(message));
    if (outgoing_.size() == 1) {
      WriteNext();
    }
  }

  void Close() {
    beast::error_code ignored;
    ws_.next_layer().shutdown(tcp::socket::shutdown_both, ignored);
    ws_.next_layer().close(ignored);
  }

 private:
  // A wrong path, a second front end or plain HTTP gets a 404 and nothing
  // else: the endpoint tells nobody what it serves.
  void OnRequest() {
    if (request_.target() != core_->path || core_->active ||
        !websocket::is_upgrade(request_)) {
      auto response =
          std::make_shared<http::response<http::empty_body>>(
              http::status::not_found, request_.version());
      response->keep_alive(false);
      auto self = shared_from_this();
      http::async_write(ws_.next_layer(), *response,
                        [self, response](beast::error_code, size_t) {
                          self->Close();
                        });
      return;
    }
    core_->active = shared_from_this();
    auto self = shared_from_this();
    ws_.read_message_max(64 * 1024 * 1024);
    ws_.async_accept(request_, [self](beast::error_code error) {
      if (error) {
        self->Gone();
        return;
      }
      self->buffer_.clear();
      self->Read();
    });
  }

  void Read() {
    auto self = shared_from_this();
    ws_.async_read(buffer_, [self](beast::error_code error, size_t) {
      if (error) {
        self->Gone();
        return;
      }
      const std::string message = beast::buffers_to_string(self->buffer_.data());
      self->buffer_.consume(self->buffer_.size());
      if (self->core_->on_message) {
        self->core_->on_message(message);
      }
      self->Read();
    });
  }

  void WriteNext() {
    auto self = shared_from_this();
    ws_.text(true);
    ws_.async_write(asio::buffer(outgoing_.front()),
                    [self](beast::error_code error, size_t) {
                      if (error) {
                        self->Gone();
                        return;
                      }
                      self->outgoing_.pop_front();
                      if (!self->outgoing_.empty()) {
                        self->WriteNext();
                      }
                    });
  }

  void Gone() {
    if (core_->active.get() == this) {
      core_->active.reset();
    }
    outgoing_.clear();
    Close();
  }

  DevToolsRelayCore* core_;
  websocket::stream<tcp::socket> ws_;
  beast::flat_buffer buffer_;
  http::request<http::string_body> request_;
  std::deque<std::string> outgoing_;
};

std::string RandomPath() {
  unsigned char bytes[16];
  if (RAND_bytes(bytes, sizeof(bytes)) != 1) {
    return std::string();
  }
  static const char kHex[] = "0123456789abcdef";
  std::string path = "/";
  for (unsigned char byte : bytes) {
    path += kHex[byte >> 4];
    path += kHex[byte & 15];
  }
  return path;
}

}  // namespace

void DevToolsRelayCore::Accept() {
  acceptor.async_accept([this](beast::error_code error, tcp::socket socket) {
    if (error) {
      return;  // closed by Stop
    }
    std::make_shared<Connection>(this, std::move(socket))->Start();
    Accept();
  });
}

DevToolsRelay::DevToolsRelay() : core_(std::make_shared<DevToolsRelayCore>()) {}

DevToolsRelay::~DevToolsRelay() {
  Stop();
}

bool DevToolsRelay::Start(MessageHandler on_message, std::string* error) {
  if (core_->thread.joinable() || port_) {
    *error = "the relay was already started";
    return false;
  }
  path_ = RandomPath();
  if (path_.empty()) {
    *error = "no random numbers for the inspector's path";
    return false;
  }
  beast::error_code code;
  const tcp::endpoint loopback(asio::ip::address_v4::loopback(), 0);
  core_->acceptor.open(loopback.protocol(), code);
  if (!code) {
    core_->acceptor.bind(loopback, code);
  }
  if (!code) {
    core_->acceptor.listen(asio::socket_base::max_listen_connections, code);
  }
  if (code) {
    *error = "cannot listen on 127.0.0.1: " + code.message();
    return false;
  }
  port_ = core_->acceptor.local_endpoint().port();
  core_->path = path_;
  core_->on_message = std::move(on_message);
  core_->Accept();
  DevToolsRelayCore* core = core_.get();
  core_->thread = std::thread([core] {
    pthread_setname_np(pthread_self(), "CefDevToolsRelay");
    core->io.run();
  });
  return true;
}

void DevToolsRelay::Stop() {
  if (!core_->thread.joinable()) {
    return;
  }
  DevToolsRelayCore* core = core_.get();
  asio::post(core->io, [core] {
    beast::error_code ignored;
    core->acceptor.close(ignored);
    if (core->active) {
      core->active->Close();
      core->active.reset();
    }
    core->io.stop();
  });
  core_->thread.join();
  core_->on_message = nullptr;
}

void DevToolsRelay::Send(std::string message) {
  DevToolsRelayCore* core = core_.get();
  std::shared_ptr<DevToolsRelayCore> keep = core_;
  asio::post(core->io, [keep, message = std::move(message)]() mutable {
    if (keep->active) {
      keep->active->Write(std::move(message));
    }
  });
}

}  // namespace cefengine
