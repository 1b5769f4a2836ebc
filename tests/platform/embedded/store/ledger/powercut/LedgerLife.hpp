#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/platform/embedded/store/ledger/powercut/Dice.hpp"
#include "tests/platform/embedded/store/ledger/powercut/DiskRecorder.hpp"
#include "tests/platform/embedded/store/ledger/powercut/LedgerHistory.hpp"
#include "tests/platform/embedded/store/ledger/powercut/VolatileDisk.hpp"

namespace tests {

/// What has happened on a disk from its files on.
struct RecordedLife {
  LedgerFiles start{};
  DiskOperations operations{};
  LedgerHistory history{};
};

/// Programs that use a ledger, one after the other and two at a time, and everything that they ask
/// of the disk.
class LedgerLife {
 public:
  /// Opens the ledger `path`, which is made when it is missing.
  explicit LedgerLife(const std::string& path);

  /// A purchase each, from the begin to the outcome that observers hear of; of some, it fails.
  void buy(std::size_t count, Dice& dice);
  /// Everything that was bought and is finished, in one batch.
  void restore();
  /// Some of what the queue holds.
  void finish(Dice& dice);
  void set(const std::string& setting, const std::optional<std::string>& value);
  /// What the ledger's own thread does once nothing happens.
  void tidyUp() const;
  /// Another program buys on it meanwhile.
  void shareWithOther(Dice& dice);
  /// The program ends, and comes again.
  void reopen();
  /// One of all that, or several.
  void goOn(Dice& dice);

  /// The program ends; that belongs to its life.
  [[nodiscard]] RecordedLife end() &&;

 private:
  using Durability = StoreKit::Ledger::Durability;

  void change(Durability durability, StoreKit::LedgerEntries& entries,
              const std::function<StoreKit::Ledger::Failure()>& change);
  [[nodiscard]] StoreKit::LedgerEntry purchase(Dice& dice) const;

  std::string path_;
  LedgerFiles start_;
  std::optional<DiskRecorder> disk_{std::in_place};
  std::unique_ptr<StoreKit::SqliteLedger> ledger_;
  LedgerHistory history_;
};

}  // namespace tests
