// The test server as a program of its own: prints its address and runs until its standard input ends.

#include <unistd.h>

#include <cstdio>

#include "tests/server/HttpServer.hpp"

int main() {
  const tests::HttpServer server;
  std::printf("%s\n", server.url("").c_str());
  std::fflush(stdout);
  char byte = 0;
  while (::read(STDIN_FILENO, &byte, 1) > 0) {
  }
}
