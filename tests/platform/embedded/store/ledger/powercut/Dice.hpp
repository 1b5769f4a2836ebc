#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace tests {

/// Chances that are the same on every machine, by their seed.
class Dice {
 public:
  Dice(std::uint64_t seed, std::uint64_t stream) {
    std::seed_seq mixed{seed, seed >> 32U, stream};
    random_.seed(mixed);
  }

  /// A number from 0 to `bound` - 1.
  std::size_t below(std::size_t bound) { return random_() % bound; }
  bool oneIn(std::size_t count) { return below(count) == 0; }

 private:
  std::mt19937_64 random_;
};

}  // namespace tests
