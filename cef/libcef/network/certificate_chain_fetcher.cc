#include "libcef/network/certificate_chain_fetcher.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

#include <openssl/crypto.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>

namespace cefengine {

namespace {

using Clock = std::chrono::steady_clock;

struct AddrInfoFree {
  void operator()(addrinfo* info) const { freeaddrinfo(info); }
};
struct SslCtxFree {
  void operator()(SSL_CTX* ctx) const { SSL_CTX_free(ctx); }
};
struct SslFree {
  void operator()(SSL* ssl) const { SSL_free(ssl); }
};

class Socket {
 public:
  explicit Socket(int fd) : fd_(fd) {}
  ~Socket() {
    if (fd_ >= 0) {
      close(fd_);
    }
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  int fd() const { return fd_; }

 private:
  const int fd_;
};

// Writes to a socket the server closed raise SIGPIPE, which would end the
// process: held back on this thread while it talks TLS, and then dropped.
class ScopedSigpipeBlock {
 public:
  ScopedSigpipeBlock() {
    sigemptyset(&pipe_);
    sigaddset(&pipe_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe_, &previous_);
  }
  ~ScopedSigpipeBlock() {
    const timespec now{0, 0};
    while (sigtimedwait(&pipe_, nullptr, &now) == SIGPIPE) {
    }
    pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
  }
  ScopedSigpipeBlock(const ScopedSigpipeBlock&) = delete;
  ScopedSigpipeBlock& operator=(const ScopedSigpipeBlock&) = delete;

 private:
  sigset_t pipe_;
  sigset_t previous_;
};

int MillisLeft(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      deadline - Clock::now());
  return left.count() > 0 ? static_cast<int>(left.count()) : 0;
}

// A connected blocking socket whose reads and writes give up at
// |deadline|, or -1.
int Connect(const addrinfo& address, Clock::time_point deadline) {
  const int fd = socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC,
                        address.ai_protocol);
  if (fd < 0) {
    return -1;
  }
  const int flags = fcntl(fd, F_GETFL);
  fcntl(fd, F_SETFL, flags | O_NONBLOCK);
  bool connected = connect(fd, address.ai_addr, address.ai_addrlen) == 0;
  if (!connected && errno == EINPROGRESS) {
    pollfd wait{fd, POLLOUT, 0};
    int error = 0;
    socklen_t length = sizeof(error);
    connected = poll(&wait, 1, MillisLeft(deadline)) == 1 &&
                getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) == 0 &&
                error == 0;
  }
  const int left = MillisLeft(deadline);
  if (!connected || left == 0) {
    close(fd);
    return -1;
  }
  fcntl(fd, F_SETFL, flags);
  timeval limit{left / 1000, (left % 1000) * 1000};
  setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof(limit));
  setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof(limit));
  return fd;
}

bool IsAddress(const std::string& host) {
  unsigned char buffer[sizeof(in6_addr)];
  return inet_pton(AF_INET, host.c_str(), buffer) == 1 ||
         inet_pton(AF_INET6, host.c_str(), buffer) == 1;
}

std::vector<std::string> Handshake(int fd, const std::string& host) {
  std::unique_ptr<SSL_CTX, SslCtxFree> ctx(SSL_CTX_new(TLS_client_method()));
  if (!ctx) {
    return {};
  }
  SSL_CTX_set_verify(ctx.get(), SSL_VERIFY_NONE, nullptr);
  std::unique_ptr<SSL, SslFree> ssl(SSL_new(ctx.get()));
  if (!ssl || SSL_set_fd(ssl.get(), fd) != 1) {
    return {};
  }
  if (!IsAddress(host)) {
    SSL_set_tlsext_host_name(ssl.get(), host.c_str());
  }
  if (SSL_connect(ssl.get()) != 1) {
    return {};
  }
  std::vector<std::string> chain;
  // On the client side the list holds the server's own certificate first.
  STACK_OF(X509)* certificates = SSL_get_peer_cert_chain(ssl.get());
  for (int i = 0; certificates && i < sk_X509_num(certificates); ++i) {
    unsigned char* der = nullptr;
    const int length = i2d_X509(sk_X509_value(certificates, i), &der);
    if (length > 0) {
      chain.emplace_back(reinterpret_cast<char*>(der), length);
      OPENSSL_free(der);
    }
  }
  return chain;
}

}  // namespace

std::vector<std::string> FetchCertificateChain(
    const std::string& host,
    int port,
    std::chrono::milliseconds timeout) {
  const Clock::time_point deadline = Clock::now() + timeout;
  // Bracketed IPv6 literals as URLs write them.
  std::string name = host;
  if (name.size() > 2 && name.front() == '[' && name.back() == ']') {
    name = name.substr(1, name.size() - 2);
  }
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (name.empty() || port <= 0 || port > 65535 ||
      getaddrinfo(name.c_str(), std::to_string(port).c_str(), &hints,
                  &found) != 0) {
    return {};
  }
  std::unique_ptr<addrinfo, AddrInfoFree> addresses(found);
  ScopedSigpipeBlock no_sigpipe;
  std::vector<std::string> chain;
  for (const addrinfo* address = found; address; address = address->ai_next) {
    Socket socket(Connect(*address, deadline));
    if (socket.fd() >= 0) {
      chain = Handshake(socket.fd(), name);
      break;
    }
    if (MillisLeft(deadline) == 0) {
      break;
    }
  }
  // The calling thread serves others and may outlive the process's orderly
  // end: OpenSSL's state for it (its error queue) goes now.
  OPENSSL_thread_stop();
  return chain;
}

}  // namespace cefengine
