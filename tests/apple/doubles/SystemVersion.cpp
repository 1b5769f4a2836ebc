#include "tests/apple/doubles/SystemVersion.hpp"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace tests {

namespace {

std::pair<int, int> system = {99, 0};

}  // namespace

bool isSystemAtLeast(int major, int minor) { return system >= std::pair(major, minor); }

void playSystem(int major, int minor) { system = {major, minor}; }

bool detail::isAvailable(const char* platforms) {
  int major = 0;
  int minor = 0;
  if (std::sscanf(platforms, "iOS %d.%d", &major, &minor) != 2) {
    std::fprintf(stderr, "@available(%s) does not begin with an iOS version\n", platforms);
    std::abort();
  }
  return isSystemAtLeast(major, minor);
}

}  // namespace tests
