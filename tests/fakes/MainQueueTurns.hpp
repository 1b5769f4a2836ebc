#pragma once

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"

namespace tests {

/// One frame of a game: the blocks that are queued now.
inline void turn() { (void)Dispatch::MainLoop::drain(); }

/// Frames until nothing is queued any more. False when that takes suspiciously long.
inline bool turnUntilIdle() {
  for (int frame = 0; frame < 1000; ++frame) {
    if (Dispatch::MainLoop::drain() == 0) return true;
  }
  return false;
}

}  // namespace tests
