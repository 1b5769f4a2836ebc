#include "tests/server/Peer.hpp"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tests {

Peer::Peer(int socket, SSL_CTX* tls) : socket_(socket) {
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  if (tls == nullptr) return;
  ssl_.reset(SSL_new(tls));
  SSL_set_fd(ssl_.get(), socket);
}

Peer::~Peer() {
  if (ssl_ && SSL_is_init_finished(ssl_.get())) SSL_shutdown(ssl_.get());
  ::close(socket_);
}

// A client that is turned away hears why before the connection ends: nothing of what it said is left
// unread, which would make the end a reset.
bool Peer::shakeHands() {
  if (!ssl_ || SSL_accept(ssl_.get()) == 1) return true;
  ::shutdown(socket_, SHUT_WR);
  std::string unread(4096, '\0');
  while (::recv(socket_, unread.data(), unread.size(), 0) > 0) {
  }
  return false;
}

bool Peer::speaksHttp2() const {
  if (!ssl_) return false;
  const unsigned char* name = nullptr;
  unsigned length = 0;
  SSL_get0_alpn_selected(ssl_.get(), &name, &length);
  return std::string_view(reinterpret_cast<const char*>(name), length) == "h2";
}

bool Peer::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ssl_ ? SSL_write(ssl_.get(), bytes.data(), static_cast<int>(bytes.size()))
                            : ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

std::string Peer::receive(std::size_t atMost) {
  std::string bytes(atMost, '\0');
  const auto count = ssl_ ? SSL_read(ssl_.get(), bytes.data(), static_cast<int>(bytes.size()))
                          : ::recv(socket_, bytes.data(), bytes.size(), 0);
  bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return bytes;
}

bool Peer::isGone() const {
  pollfd waiting{.fd = socket_, .events = POLLIN, .revents = 0};
  return ::poll(&waiting, 1, 0) > 0;
}

void Peer::resetAtEnd() const {
  const linger now{.l_onoff = 1, .l_linger = 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
}

void Peer::interrupt() const { ::shutdown(socket_, SHUT_RDWR); }

}  // namespace tests
