#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>
#include <thread>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"
#include "tests/server/Certificates.hpp"

namespace Foundation {
namespace {

int connectTo(int port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<in_port_t>(port));
  EXPECT_EQ(::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  return socket;
}

// False when `from` has ended.
bool passOn(int from, int to) {
  std::array<char, 16384> bytes{};
  const auto count = ::recv(from, bytes.data(), bytes.size(), 0);
  if (count <= 0) return false;
  return ::send(to, bytes.data(), static_cast<std::size_t>(count), MSG_NOSIGNAL) == count;
}

// The bytes of both go to the other until one of them ends.
void join(int one, int other) {
  std::array<pollfd, 2> ends = {pollfd{one, POLLIN, 0}, pollfd{other, POLLIN, 0}};
  for (bool goesOn = true; goesOn && ::poll(ends.data(), ends.size(), -1) > 0;) {
    if (ends[0].revents != 0) goesOn = passOn(one, other);
    if (goesOn && ends[1].revents != 0) goesOn = passOn(other, one);
  }
}

class Tunnel : public testing::Test {
 protected:
  Tunnel() {
    tests::write(folder.file("root.pem"), root.pem());
    ::setenv("CURL_CA_BUNDLE", folder.file("root.pem").c_str(), 1);
    ::setenv("no_proxy", "", 1);
  }

  // A proxy that gives this answer to one client, and joins it to `server` when it is a good one.
  tests::Loaded loadThroughProxy(const std::string& answer) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    EXPECT_EQ(::listen(listener, 1), 0);
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    ::setenv("https_proxy", ("http://127.0.0.1:" + std::to_string(ntohs(address.sin_port))).c_str(),
             1);
    std::thread proxy([&] { serve(::accept(listener, nullptr, nullptr), answer); });
    auto loaded = tests::load(server.url("/text"));
    proxy.join();
    ::close(listener);
    return loaded;
  }

  void serve(int client, const std::string& answer) {
    while (!asked.ends_with("\r\n\r\n")) {
      char byte = 0;
      if (::recv(client, &byte, 1, 0) <= 0) break;
      asked += byte;
    }
    ::send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
    if (answer.starts_with("HTTP/1.1 200")) {
      const int there = connectTo(server.port());
      join(client, there);
      ::close(there);
    }
    ::close(client);
  }

  tests::TemporaryFolder folder;
  tests::Certificate root = tests::makeRoot();
  decltype(tests::makeTls(root, {})) tls = tests::makeTls(tests::makeCertificate(root), {});
  tests::HttpServer server{tls.get()};
  std::string asked;  // what the proxy heard before it answered
};

TEST_F(Tunnel, LeadsToASecureServerThroughTheProxyThatTheEnvironmentNames) {
  const auto loaded = loadThroughProxy("HTTP/1.1 200 Connected\r\nX-Proxy: yes\r\n\r\n");

  EXPECT_EQ(loaded.text(), "The quick brown fox jumps over the lazy dog.");
  EXPECT_TRUE(asked.starts_with("CONNECT localhost:" + std::to_string(server.port()) + " HTTP/1.1"))
      << asked;
}

TEST_F(Tunnel, LeavesNothingOfTheProxyInTheAnswer) {
  const auto loaded = loadThroughProxy("HTTP/1.1 200 Connected\r\nX-Proxy: yes\r\n\r\n");

  EXPECT_EQ(loaded.status(), 200);
  EXPECT_EQ(loaded.field("X-Proxy"), "(none)");
}

TEST_F(Tunnel, ThatTheProxyRefusesIsAnErrorAndNotItsAnswer) {
  const auto loaded = loadThroughProxy("HTTP/1.1 403 No\r\nContent-Length: 2\r\n\r\nno");

  EXPECT_EQ(loaded.code(), NSURLErrorCannotConnectToHost);
  EXPECT_EQ(loaded.response, nullptr);
  EXPECT_TRUE(server.requests().empty());
}

}  // namespace
}  // namespace Foundation
