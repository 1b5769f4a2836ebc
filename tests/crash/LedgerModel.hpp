#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/embedded/store/Ledger.hpp"
#include "tests/crash/Broken.hpp"

namespace crash {

/// What the ledger must hold, by what applications on it were told. Every function throws `Broken`
/// when that contradicts what it is given.
class LedgerModel {
 public:
  /// The next lines are those of a new process, whose buyers are called "NAME.1", "NAME.2" ...
  void beginRun(const std::string& name);

  /// Takes one line of an application (see Telling.hpp).
  void hear(const std::string& line);

  /// Compares with what the ledger holds once the application is dead.
  void check(const StoreKit::Ledger& ledger);

  /// Compares with everything that the ledger ever held.
  void checkAll(const StoreKit::Ledger& ledger);

  [[nodiscard]] std::size_t size() const { return known_.size(); }
  [[nodiscard]] std::size_t removals() const { return removals_; }

 private:
  struct Known {
    std::string payment{};
    std::optional<std::string> outcome{};  ///< with its state; absent while it is purchasing
    bool mayBeFinished = false;
    bool removed = false;
    bool toldBegin = false;    ///< in this run
    bool toldOutcome = false;  ///< in this run
  };

  void hearTold(std::int64_t number, const std::vector<std::string>& fields);
  void hearDelivered();
  Known& learn(std::int64_t number, const std::string& payment);
  void learnOutcome(std::int64_t number, const std::string& outcome);
  void checkBegun(std::int64_t number, Known& known);
  void checkUnfinished(const StoreKit::LedgerEntry& entry);
  [[nodiscard]] Known& at(std::int64_t number);

  std::map<std::int64_t, Known> known_;
  std::set<std::int64_t> unfinished_;  // every one of them that was not removed
  std::vector<std::int64_t> order_;    // in which the backlog came
  bool delivered_ = false;
  std::string name_;
  std::int64_t lastBegun_ = 0;
  long lastBuyer_ = 0;
  std::size_t removals_ = 0;
};

}  // namespace crash
