#include "platform/Foundation/OperatingSystem.hpp"

#import <Foundation/Foundation.h>

#include "platform/apple/ExceptionBarrier.hpp"

namespace Foundation {

namespace {

// Versions are those of iOS. A Mac is as new as the iOS that came out beside it; those that count
// differently are older than all that this layer runs on.
NSInteger majorHere(int major) {
#if TARGET_OS_OSX
  constexpr int kFirstThatCountsAlike = 26;
  return major >= kFirstThatCountsAlike ? major : major - 3;
#else
  return major;
#endif
}

}  // namespace

bool isOperatingSystemAtLeast(int major, int minor) {
  return askPlatform("isOperatingSystemAtLeast", false, [&] {
    const NSOperatingSystemVersion version = {majorHere(major), minor, 0};
    return [[NSProcessInfo processInfo] isOperatingSystemAtLeastVersion:version] != NO;
  });
}

}  // namespace Foundation
