#pragma once

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/embedded/store/StoreSession.hpp"

namespace crash {

/// One line of a program, behind its name. It is one write: a pipe takes it whole or not at all.
class Teller {
 public:
  explicit Teller(std::string name) : name_(std::move(name)) {}
  void operator()(const std::string& line) const;

 private:
  std::string name_;
};

/// Writes down what the payment queue says, and remembers what was bought.
class Witness final : public StoreKit::SKPaymentTransactionObserver {
 public:
  explicit Witness(const Teller& tell) : tell_(tell) {}

  struct Purchase {
    std::int64_t number;
    std::string product;
  };
  [[nodiscard]] const std::vector<Purchase>& purchases() const { return purchases_; }

  void paymentQueueUpdatedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override;
  void paymentQueueRemovedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override;
  void paymentQueueDidRevokeEntitlements(const std::vector<std::string>& products) override;

 private:
  const Teller& tell_;
  std::vector<Purchase> purchases_;
};

/// A program that buys, subscribes, approves, declines, refunds, lets subscriptions expire, restores and
/// finishes, as its seed decides.
class Shopper {
 public:
  Shopper(StoreKit::StoreSession& session, std::string name, std::uint64_t seed);

  /// Without end.
  [[noreturn]] void shop();

  /// Nothing any more, until everything that is under way has its outcome.
  void carryOn();

 private:
  std::size_t below(std::size_t bound) { return random_() % bound; }
  bool oneIn(std::size_t count) { return below(count) == 0; }
  static StoreKit::SKPaymentQueue& queue() { return StoreKit::SKPaymentQueue::defaultQueue(); }

  void buy();
  void settleOne();
  void refundOne();
  /// Whether it was done; says so when the ledger is why it was not.
  bool done(const StoreKit::StoreSession::Failure& failure);

  StoreKit::StoreSession& session_;
  std::string name_;
  Teller tell_;
  Witness witness_;
  std::mt19937_64 random_;
  int purchases_ = 0;
};

}  // namespace crash
