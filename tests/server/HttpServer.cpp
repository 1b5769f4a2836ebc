#include "tests/server/HttpServer.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include "tests/server/Http2Answers.hpp"
#include "tests/server/StandardAnswers.hpp"

namespace tests {

namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 10s;
constexpr auto kBetweenLooks = 5ms;
constexpr int kBacklog = 2048;

sockaddr_in loopback() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int listenOnLoopback() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const auto address = loopback();
  const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
  if (::bind(socket, generic, sizeof address) != 0 || ::listen(socket, kBacklog) != 0) {
    throw std::runtime_error("the test server cannot listen on the loopback");
  }
  return socket;
}

int portOf(int socket) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

// Adds what comes to `bytes` until the condition holds; false when the client is gone.
template <class Condition>
bool receiveUntil(Peer& peer, std::string& bytes, const Condition& condition) {
  while (!condition()) {
    const auto more = peer.receive();
    if (more.empty()) return false;
    bytes += more;
  }
  return true;
}

// What TLS writes to a client that is gone would end the process.
void withoutBrokenPipeSignal() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

std::size_t bodyLength(const HttpRequest& request) {
  const auto length = request.header("Content-Length");
  return length.empty() || leavesBodyUnread(request) ? 0 : std::stoul(length);
}

}  // namespace

void Exchange::respond(int status, std::string_view body, HttpHeaders headers) {
  headers.emplace_back("Content-Length", std::to_string(body.size()));
  send(responseHead(status, headers) + std::string(request.method == "HEAD" ? "" : body));
}

bool Exchange::waitForGate(const std::string& name) { return server_.waitForGate(name, &peer_); }
bool Exchange::waitForGateOnly(const std::string& name) {
  return server_.waitForGate(name, nullptr);
}

HttpServer::HttpServer(SSL_CTX* tls)
    : tls_(tls), listener_(listenOnLoopback()), port_(portOf(listener_)) {
  ::setenv("no_proxy", "127.0.0.1,localhost", 0);  // the developer's proxy is not for us
  for (auto& [path, answer] : standardAnswers()) answers_.emplace(path, answer);
  acceptor_ = std::thread([this] { acceptAll(); });
}

HttpServer::~HttpServer() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    for (const auto& connection : connections_) {
      if (connection.peer) connection.peer->interrupt();
    }
  }
  changed_.notify_all();
  ::shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  for (auto& connection : connections_) connection.thread.join();
  ::close(listener_);
}

std::string HttpServer::url(std::string_view target) const {
  return (tls_ != nullptr ? "https://localhost:" : "http://127.0.0.1:") + std::to_string(port_) +
         std::string(target);
}

void HttpServer::answer(const std::string& path, Answer answer) {
  const std::lock_guard lock(mutex_);
  answers_[path] = std::move(answer);
}

void HttpServer::openGate(const std::string& name) {
  const std::lock_guard lock(mutex_);
  openGates_.insert(name);
  changed_.notify_all();
}

std::vector<HttpRequest> HttpServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

int HttpServer::connections() const {
  const std::lock_guard lock(mutex_);
  return accepted_;
}

int HttpServer::openConnections() const {
  const std::lock_guard lock(mutex_);
  return open_;
}

template <class Condition>
bool HttpServer::waitUntil(const Condition& condition) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kPatience, condition);
}

bool HttpServer::waitForRequests(std::size_t count) const {
  return waitUntil([&] { return requests_.size() >= count; });
}

bool HttpServer::waitForConnections(int count) const {
  return waitUntil([&] { return accepted_ >= count; });
}

bool HttpServer::waitForOpenConnections(int count) const {
  return waitUntil([&] { return open_ == count; });
}

void HttpServer::acceptAll() {
  for (;;) {
    const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const std::lock_guard lock(mutex_);
    if (stopping_) {
      if (socket >= 0) ::close(socket);
      return;
    }
    joinEnded();
    if (socket >= 0) accept(socket);
  }
}

void HttpServer::accept(int socket) {
  ++open_;
  auto& connection = connections_.emplace_back();
  connection.peer = std::make_unique<Peer>(socket, tls_);
  connection.thread =
      std::thread([this, &connection, number = ++accepted_] { serve(connection, number); });
  changed_.notify_all();
}

void HttpServer::joinEnded() {
  connections_.remove_if([](Connection& connection) {
    if (connection.ended) connection.thread.join();
    return connection.ended;
  });
}

void HttpServer::serve(Connection& connection, int number) {
  withoutBrokenPipeSignal();
  speak(*connection.peer, number);
  const std::lock_guard lock(mutex_);
  connection.peer.reset();
  connection.ended = true;
  --open_;
  changed_.notify_all();
}

void HttpServer::speak(Peer& peer, int number) {
  if (!peer.shakeHands()) return;
  if (peer.speaksHttp2()) {
    answerHttp2(peer, number, [this](const HttpRequest& request) { record(request); });
    return;
  }
  std::string bytes;
  while (answerNext(peer, number, bytes)) {
  }
}

// False when the connection ends.
bool HttpServer::answerNext(Peer& peer, int number, std::string& bytes) {
  std::size_t head = 0;
  const auto hasHead = [&] {
    head = bytes.find("\r\n\r\n");
    return head != std::string::npos;
  };
  if (!receiveUntil(peer, bytes, hasHead)) return false;
  auto request = parseRequestHead(std::string_view(bytes).substr(0, head));
  request.connection = number;
  bytes.erase(0, head + 4);
  const auto length = bodyLength(request);
  if (!receiveUntil(peer, bytes, [&] { return bytes.size() >= length; })) return false;
  request.body = bytes.substr(0, length);
  bytes.erase(0, length);
  record(request);
  const auto answer = answerFor(request.path());
  Exchange exchange(*this, peer, std::move(request));
  answer(exchange);
  return !exchange.closes();
}

void HttpServer::record(const HttpRequest& request) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(request);
  changed_.notify_all();
}

// The longest known path that the request's begins with: "/status/" answers "/status/404".
Answer HttpServer::answerFor(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  for (auto name = path; !name.empty(); name.pop_back()) {
    const auto found = answers_.find(name);
    if (found != answers_.end() && (name == path || name.back() == '/')) return found->second;
  }
  return [](Exchange& exchange) { exchange.respond(404, "nothing here"); };
}

bool HttpServer::waitForGate(const std::string& name, const Peer* watched) {
  std::unique_lock lock(mutex_);
  while (!stopping_ && !openGates_.contains(name)) {
    changed_.wait_for(lock, kBetweenLooks);
    if (watched != nullptr && watched->isGone()) return false;
  }
  return !stopping_;
}

}  // namespace tests
