#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/StoreKit/SKPaymentTransactionObserver.hpp"
#include "platform/embedded/store/LedgerTransaction.hpp"
#include "platform/embedded/store/ObserverList.hpp"

namespace StoreKit {

class EmbeddedStore;

/// The payment queue of the embedded store: one small step per turn of the main queue.
///
/// Every operation only writes down what is to be done; a step then does it, in this order: it
/// changes the entries, commits them to the ledger, and only then tells the observers. Steps that
/// have something to report wait while there is no observer.
/// Thread: main.
class PaymentQueueEngine {
 public:
  explicit PaymentQueueEngine(EmbeddedStore& store) : store_(store) {}
  PaymentQueueEngine(const PaymentQueueEngine&) = delete;
  PaymentQueueEngine& operator=(const PaymentQueueEngine&) = delete;

  /// Begins a new run on the store's ledger: forgets what is under way, and delivers to the
  /// observers everything that the ledger holds unfinished.
  void restart();

  void addObserver(SKPaymentTransactionObserver& observer);
  void removeObserver(SKPaymentTransactionObserver& observer) { observers_.remove(observer); }

  void add(const SKPayment& payment);
  void finish(const SKPaymentTransactionPtr& transaction);
  void restore(const std::optional<std::string>& applicationUsername);
  [[nodiscard]] SKPaymentTransactions transactions() const;

 private:
  using TransactionPtr = std::shared_ptr<LedgerTransaction>;
  using Transactions = std::vector<TransactionPtr>;

  // Runs `step` in a later turn, unless a new run has begun by then.
  void later(std::function<void()> step);

  void deliverBacklog();
  void beginPurchases();
  void settlePurchases();
  void removeFinished();
  void replayPurchases();
  void replayFor(const std::optional<std::string>& applicationUsername);

  [[nodiscard]] TransactionPtr makeTransaction(LedgerEntry entry) const;
  [[nodiscard]] LedgerEntry outcome(LedgerEntry entry) const;
  [[nodiscard]] std::vector<LedgerEntry> restorable(
      const std::optional<std::string>& applicationUsername) const;
  [[nodiscard]] Transactions inState(bool purchasing) const;
  void reportUpdated(const Transactions& transactions);

  EmbeddedStore& store_;
  ObserverList observers_;
  Transactions unfinished_;  // in the order in which they were added
  std::vector<SKPayment::Values> addedPayments_;
  std::vector<std::int64_t> finishedIdentifiers_;
  std::vector<std::optional<std::string>> restoreRequests_;
  bool backlogDelivered_ = false;
  std::uint64_t run_ = 0;
};

}  // namespace StoreKit
