#include "platform/Foundation/OperatingSystem.hpp"

#include <atomic>

#include "platform/embedded/Foundation/EmulatedSystem.hpp"

namespace Foundation {

namespace {

constexpr int kMinorVersions = 1000;

// Constant-initialised, so nothing runs before main.
constinit std::atomic<int> version = 17 * kMinorVersions;

}  // namespace

void setOperatingSystemVersion(int major, int minor) { version = major * kMinorVersions + minor; }

bool isOperatingSystemAtLeast(int major, int minor) {
  return version >= major * kMinorVersions + minor;
}

}  // namespace Foundation
