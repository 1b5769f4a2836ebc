#pragma once

#include <chrono>
#include <cstddef>

namespace Dispatch {

/// The main queue's loop, in the application's hands.
///
/// A game calls `drain` once a frame; a command-line program calls `run`; a program with an event
/// loop of its own waits for `fileDescriptor` to become readable and then calls `drain`. The thread
/// that runs the loop first is the main thread from then on.
/// Thread: main, except `stop`. From inside a block of the main queue, `run`, `runFor` and `drain`
/// do nothing and say so on standard error. When a block throws, the exception leaves the call;
/// the blocks behind it stay queued.
class MainLoop {
 public:
  MainLoop() = delete;

  /// Runs the blocks that are queued now, and not those that they queue. Returns how many ran.
  static std::size_t drain();

  /// Runs blocks as they come, until `stop`.
  static void run();

  /// Runs blocks as they come, for that long or until `stop`.
  static void runFor(std::chrono::nanoseconds duration);

  /// Makes `run` or `runFor` return once the block under way has ended; when neither runs, the next
  /// one returns at once.
  ///
  /// Thread: any.
  static void stop();

  /// Readable while blocks are queued. It is only to be waited on: never read it, never close it.
  /// -1 when the system has no descriptor left.
  [[nodiscard]] static int fileDescriptor();
};

}  // namespace Dispatch
