#pragma once

#include <openssl/ssl.h>

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/server/HttpMessage.hpp"
#include "tests/server/Peer.hpp"

namespace tests {

class HttpServer;

/// One request that is being answered, in the hands of an answer.
class Exchange {
 public:
  Exchange(HttpServer& server, Peer& peer, HttpRequest received)
      : request(std::move(received)), server_(server), peer_(peer) {}

  /// An answer with a length.
  void respond(int status, std::string_view body, HttpHeaders headers = {});
  /// Bytes as they are. False when the client is gone.
  bool send(std::string_view bytes) { return peer_.send(bytes); }
  /// Waits until the test opens the gate; false when the client left or the server stops first.
  bool waitForGate(const std::string& name);
  /// The same, whatever the client does meanwhile.
  bool waitForGateOnly(const std::string& name);
  /// The connection ends after this answer: in order, or with a reset.
  void close() { closes_ = true; }
  void reset() {
    peer_.resetAtEnd();
    close();
  }
  [[nodiscard]] bool closes() const { return closes_; }

  const HttpRequest request;

 private:
  HttpServer& server_;
  Peer& peer_;
  bool closes_ = false;
};

using Answer = std::function<void(Exchange&)>;

/// An HTTP server on the loopback, in this process: runs from its construction to its destruction,
/// on threads of its own, one for each connection.
///
/// Knows the paths of StandardAnswers.hpp from the start, and those that a test adds. Nothing waits
/// for a time to pass: what is slow waits for a gate that the test opens.
/// Thread: any.
class HttpServer {
 public:
  /// With `tls`, HTTPS; where that offers "h2", HTTP/2 (Http2Answers.hpp). It must outlive the server.
  explicit HttpServer(SSL_CTX* tls = nullptr);
  /// Ends all connections and waits for their threads.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  /// "http://127.0.0.1:PORT" and `target`; with TLS "https://localhost:PORT".
  [[nodiscard]] std::string url(std::string_view target = "/") const;
  [[nodiscard]] int port() const { return port_; }

  /// Answers requests for this path from now on.
  void answer(const std::string& path, Answer answer);
  void openGate(const std::string& name);

  /// All requests so far, in the order in which their heads were read.
  [[nodiscard]] std::vector<HttpRequest> requests() const;
  /// How many connections were accepted so far, and how many are open now.
  [[nodiscard]] int connections() const;
  [[nodiscard]] int openConnections() const;
  /// False when that does not happen within ten seconds.
  [[nodiscard]] bool waitForRequests(std::size_t count) const;
  [[nodiscard]] bool waitForConnections(int count) const;
  [[nodiscard]] bool waitForOpenConnections(int count) const;

 private:
  friend class Exchange;
  struct Connection {
    std::unique_ptr<Peer> peer;
    std::thread thread;
    bool ended = false;
  };

  void acceptAll();
  void accept(int socket);
  void joinEnded();
  void serve(Connection& connection, int number);
  void speak(Peer& peer, int number);
  bool answerNext(Peer& peer, int number, std::string& bytes);
  [[nodiscard]] Answer answerFor(const std::string& path) const;
  void record(const HttpRequest& request);
  bool waitForGate(const std::string& name, const Peer* watched);
  template <class Condition>
  bool waitUntil(const Condition& condition) const;

  SSL_CTX* tls_;
  int listener_ = -1;
  int port_ = 0;
  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  std::map<std::string, Answer> answers_;
  std::set<std::string> openGates_;
  std::vector<HttpRequest> requests_;
  std::list<Connection> connections_;
  int accepted_ = 0;
  int open_ = 0;
  bool stopping_ = false;
  std::thread acceptor_;
};

}  // namespace tests
