#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/StoreKit/SKPaymentTransaction.hpp"
#include "tests/crash/programs/KnownRefunds.hpp"
#include "tests/crash/programs/KnownTransactions.hpp"

namespace crash {

/// What several programs on one ledger have said, in the order in which they have written it.
/// Every function throws `Broken` (tests/crash) when a line contradicts those before it.
class ProgramsModel {
 public:
  /// The next lines may come from a new program. Buyers are named "NAME.1", "NAME.2" ... in the
  /// order in which it adds their payments.
  void start(const std::string& name);
  /// It is going to be killed; what it still says may come before it dies.
  void kill(const std::string& name) { programs_[name].killed = true; }

  /// Takes one line: the name of a program, a tab, and what it says (see Telling.hpp of
  /// tests/crash; beside that `refunding`, `refunded` and `revoked` with a product, `quiet`).
  void hear(const std::string& line);

  [[nodiscard]] bool hasOpened(const std::string& name) { return programs_[name].opened; }
  [[nodiscard]] KnownTransactions& transactions() { return known_; }
  [[nodiscard]] const KnownTransactions& transactions() const { return known_; }
  [[nodiscard]] const KnownRefunds& refunds() const { return refunds_; }
  [[nodiscard]] Moment now() const { return now_; }

 private:
  struct Program {
    Moment startedAt = 0;
    bool opened = false;
    bool killed = false;
    std::set<std::int64_t> told{};      // in any state
    std::set<std::int64_t> outcomes{};  // those that were told in their last state
    std::set<std::int64_t> removed{};
    std::int64_t lastOfBacklog = 0;
    std::int64_t lastBegun = 0;
    long lastBuyer = 0;
    Moment refundingAt = 0;
  };
  using Fields = std::vector<std::string>;

  void hearOfTransaction(const Fields& fields, Program& program);
  void hearOfRefund(const Fields& fields, Program& program);
  void hearTold(std::int64_t number, const Fields& fields, Program& program);
  void hearBegun(std::int64_t number, const std::string& name, Program& program);
  void checkBuyer(std::int64_t number, const std::string& name, Program& program);
  void hearDeferred(std::int64_t number, const Program& program);
  void hearOutcome(std::int64_t number, const std::string& outcome, Program& program);
  void hearRemoved(std::int64_t number, Program& program);
  void hearDelivered(const Program& program);
  // Whether the program has found it settled when it started.
  [[nodiscard]] static bool wasSettled(const KnownTransaction& known, const Program& program);

  Moment now_ = 0;
  std::map<std::string, Program> programs_;
  KnownTransactions known_;
  KnownRefunds refunds_;
};

/// The state, as it stands in a line.
[[nodiscard]] std::string stateText(StoreKit::SKPaymentTransactionState state);

}  // namespace crash
