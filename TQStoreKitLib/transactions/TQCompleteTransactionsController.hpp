#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "TQStoreKitLib/transactions/TQPurchase.hpp"
#include "TQStoreKitLib/transactions/TQTransactionController.hpp"

namespace TQStoreKitLib {

/// The launch-time registration for transactions that nobody in this run waits for.
struct TQCompleteTransactions {
  /// Called for every batch with such transactions, for the whole run. Empty: they are taken (and
  /// finished) all the same.
  using Callback = std::function<void(const std::vector<TQPurchase>&)>;

  /// True: the library finishes every transaction that it takes.
  bool atomically = true;
  Callback callback{};
};

/// Hands the application the transactions that no purchase or restore claimed.
///
/// The last link of the chain. Before the registration it takes nothing.
/// Thread: main. The callback may do anything, also drop the last reference to this controller.
class TQCompleteTransactionsController final
    : public TQTransactionController,
      public std::enable_shared_from_this<TQCompleteTransactionsController> {
 public:
  /// Stores the registration. There must be none yet; it stays for good.
  void registerCompletion(TQCompleteTransactions completeTransactions);

  /// Absent until the application has registered.
  [[nodiscard]] const std::optional<TQCompleteTransactions>& completeTransactions() const {
    return completeTransactions_;
  }

  /// Takes every transaction that is not in state purchasing, reports them in one call of the
  /// registration's callback, and returns the others.
  ///
  /// Order: per transaction, a line is printed and it is finished (when the registration is atomic;
  /// a failed one always); after all of them, the callback, unless nothing was taken.
  [[nodiscard]] StoreKit::SKPaymentTransactions processTransactions(
      const StoreKit::SKPaymentTransactions& transactions, TQPaymentQueue& paymentQueue) override;

 private:
  std::optional<TQCompleteTransactions> completeTransactions_;
};

}  // namespace TQStoreKitLib
