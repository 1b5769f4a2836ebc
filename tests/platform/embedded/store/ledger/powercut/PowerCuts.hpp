#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "tests/platform/embedded/store/ledger/powercut/LedgerLife.hpp"

namespace tests {

/// Cuts the power in a life of a ledger, again and again, and looks what is left of it.
class PowerCuts {
 public:
  /// A ledger is opened as `path` after each cut; what was there before is replaced.
  PowerCuts(const RecordedLife& life, std::string path) : life_(life), path_(std::move(path)) {}

  /// Cuts before each operation that `points` names, in ascending order. Says what is wrong after
  /// the first cut that a promise did not outlive; empty when all did.
  [[nodiscard]] std::string complaint(const std::vector<std::size_t>& points, Dice& dice);

  /// What one of those cuts has left, before a ledger was opened there.
  [[nodiscard]] const LedgerFiles& leftovers() const { return leftovers_; }

  /// So many operations by chance, half of them soon after a file has gone or was cut short, a quarter
  /// soon after a sync.
  [[nodiscard]] std::vector<std::size_t> choose(std::size_t count, Dice& dice) const;

  /// All of them, and the end, so many times each.
  [[nodiscard]] std::vector<std::size_t> each(std::size_t times) const;

 private:
  [[nodiscard]] std::string lookAtLeft(std::size_t operation) const;
  [[nodiscard]] std::vector<std::size_t> pointsOf(
      std::initializer_list<WatchedDisk::Operation> kinds) const;

  const RecordedLife& life_;
  std::string path_;
  LedgerFiles leftovers_;
};

}  // namespace tests
