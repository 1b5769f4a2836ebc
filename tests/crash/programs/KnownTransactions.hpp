#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace crash {

/// A place in the order in which programs wrote their lines, from 1 on.
using Moment = std::uint64_t;

struct KnownTransaction {
  std::string payment{};
  std::optional<std::string> outcome{};  ///< with its state; absent while it may still change
  std::optional<Moment> outcomeAt{};     ///< when it was first heard
  std::optional<std::string> begunBy{};  ///< the last program that called it purchasing
  bool mayBeFinished = false;
  std::optional<Moment> removedAt{};
};

/// What is known of the transactions of a ledger. Every function throws `Broken` (tests/crash) when
/// that contradicts what was known before.
class KnownTransactions {
 public:
  /// It was bought like that: this never changes.
  KnownTransaction& learn(std::int64_t number, const std::string& payment);
  void learnOutcome(std::int64_t number, const std::string& outcome, Moment moment);
  void learnRemoval(std::int64_t number, Moment moment);

  /// Of those that are not removed, the ledger has just these, and nobody is finishing one.
  void learnUnfinished(const std::set<std::int64_t>& there, Moment moment);

  /// One that must be known.
  [[nodiscard]] KnownTransaction& at(std::int64_t number);
  /// Null when nothing is known of it.
  [[nodiscard]] const KnownTransaction* find(std::int64_t number) const;

  [[nodiscard]] std::size_t size() const { return all_.size(); }
  /// Those of which no removal is known.
  [[nodiscard]] const std::set<std::int64_t>& unfinished() const { return unfinished_; }

 private:
  std::map<std::int64_t, KnownTransaction> all_;
  std::set<std::int64_t> unfinished_;
};

}  // namespace crash
