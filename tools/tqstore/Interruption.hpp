#pragma once

#include <array>
#include <atomic>
#include <thread>

#include <csignal>

namespace tqstore {

/// While it lives, the first SIGINT or SIGTERM stops the main loop instead of ending the program.
/// The second ends it.
///
/// At most one at a time.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Thread: any.
  [[nodiscard]] bool hasCome() const { return hasCome_; }

 private:
  void waitForByte();

  std::array<int, 2> ends_ = {-1, -1};
  std::array<struct sigaction, 2> before_{};
  std::atomic<bool> hasCome_ = false;
  std::thread thread_;
};

}  // namespace tqstore
