#pragma once

#include <array>
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

 private:
  std::array<int, 2> ends_ = {-1, -1};
  std::array<struct sigaction, 2> before_{};
  std::thread thread_;
};

}  // namespace tqstore
