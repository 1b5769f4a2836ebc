#pragma once

#import <Foundation/Foundation.h>

#include <thread>
#include <utility>

namespace tests {

/// Runs `work` to its end on a thread of its own, in a pool as the platform's threads have one, and
/// answers with that thread.
template <class Work>
std::thread::id onAnotherThread(Work work) {
  std::thread other([work = std::move(work)] {
    @autoreleasepool {
      work();
    }
  });
  const auto identifier = other.get_id();
  other.join();
  return identifier;
}

}  // namespace tests
