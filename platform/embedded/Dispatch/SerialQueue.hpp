#pragma once

#include <functional>
#include <memory>

namespace Dispatch {

/// Runs blocks one after another, in the order in which they came, on a thread of the system's.
///
/// A queue has no thread of its own: while it has blocks it borrows one, which is kept for a few
/// seconds, the last one for ever, for whichever queue needs one next. So there are at most as many
/// threads as there are queues at work, and a block that waits for another queue cannot lock the
/// program up. Once the process has begun to exit no further block begins.
///
/// A copy is the same queue. What was handed over runs although the last copy is gone.
/// Thread: any.
class SerialQueue {
 public:
  using Block = std::function<void()>;

  SerialQueue();

  /// Runs `block` later, never inside this call. It is destroyed on the queue when it has run.
  void async(Block block) const;

 private:
  class State;
  std::shared_ptr<State> state_;
};

}  // namespace Dispatch
