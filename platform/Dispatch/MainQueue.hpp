#pragma once

#include <functional>

namespace Dispatch {

/// The queue of the program's main thread: work handed to it runs there, one block after another,
/// in the order in which it came.
class MainQueue {
 public:
  using Block = std::function<void()>;

  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  /// Runs `block` in a later turn of the main queue: never inside this call, also when called from
  /// the main thread. The block is destroyed on the main thread when it has run.
  ///
  /// Thread: any.
  void async(Block block);

  /// True on the thread that runs the blocks. Before anything ran, any thread may be it.
  [[nodiscard]] bool isCurrentThread() const;

 private:
  MainQueue() = default;
  ~MainQueue() = default;
  friend MainQueue& mainQueue();
};

/// The process's one main queue; made on first use, never destroyed.
[[nodiscard]] MainQueue& mainQueue();

}  // namespace Dispatch
