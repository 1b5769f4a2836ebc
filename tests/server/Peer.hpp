#pragma once

#include <openssl/ssl.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace tests {

/// The server's end of one connection, with TLS when it was given a context.
///
/// Thread: the connection's own, except `interrupt`.
class Peer {
 public:
  Peer(int socket, SSL_CTX* tls);
  ~Peer();
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  /// What TLS begins with; true at once without TLS.
  [[nodiscard]] bool shakeHands();
  /// True when both sides chose HTTP/2.
  [[nodiscard]] bool speaksHttp2() const;

  /// False when the client is gone.
  bool send(std::string_view bytes);
  /// Waits for bytes; empty when the client is gone.
  [[nodiscard]] std::string receive(std::size_t atMost = 65536);
  /// True when the client has closed its end (or, unasked, says more).
  [[nodiscard]] bool isGone() const;

  /// Makes the end of the connection a reset instead of an orderly close.
  void resetAtEnd() const;
  /// Ends what waits in `send` or `receive`.
  void interrupt() const;

 private:
  struct Free {
    void operator()(SSL* ssl) const { SSL_free(ssl); }
  };
  int socket_;
  std::unique_ptr<SSL, Free> ssl_;
};

}  // namespace tests
