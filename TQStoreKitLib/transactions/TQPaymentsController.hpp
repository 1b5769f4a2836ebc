#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "TQStoreKitLib/transactions/TQPayment.hpp"
#include "TQStoreKitLib/transactions/TQTransactionController.hpp"

namespace TQStoreKitLib {

/// Keeps the purchases that wait for their transaction, and resolves them.
///
/// The first link of the chain. Several purchases of one product may wait; they are resolved in the
/// order in which they were added. Nothing times out.
/// Thread: main. A callback may add purchases, process another batch and drop the last reference
/// to this controller, which stays alive until the batch has ended.
class TQPaymentsController final : public TQTransactionController,
                                   public std::enable_shared_from_this<TQPaymentsController> {
 public:
  /// Adds a waiting purchase behind the others.
  void append(TQPayment payment);

  /// A copy of the waiting purchases, in the order in which they were added.
  [[nodiscard]] std::vector<TQPayment> payments() const;

  /// The position of the first waiting purchase of that product; absent when there is none.
  [[nodiscard]] std::optional<std::size_t> findPaymentIndex(
      std::string_view withProductIdentifier) const;

  /// `processTransaction` for each, in order; returns those that it did not handle, in order.
  [[nodiscard]] StoreKit::SKPaymentTransactions processTransactions(
      const StoreKit::SKPaymentTransactions& transactions, TQPaymentQueue& paymentQueue) override;

  /// Resolves the first waiting purchase of the transaction's product, when the transaction is
  /// purchased, failed or restored. Order: the purchase's callback runs, the transaction is
  /// finished (a failed one always, another when the purchase is atomic), the purchase is removed.
  ///
  /// True when the transaction was handled and is nobody else's. A restored one that met a waiting
  /// purchase counts as its success, is printed as unexpected, and is still somebody else's.
  [[nodiscard]] bool processTransaction(const StoreKit::SKPaymentTransactionPtr& transaction,
                                        TQPaymentQueue& paymentQueue);

 private:
  struct Waiting {
    std::uint64_t serial;
    std::shared_ptr<const TQPayment> payment;
  };

  // `processTransaction`, for a caller that keeps this object alive.
  bool resolve(const StoreKit::SKPaymentTransactionPtr& transaction, TQPaymentQueue& paymentQueue);
  void remove(std::uint64_t serial);

  std::vector<Waiting> waiting_;
  std::uint64_t nextSerial_ = 0;
};

}  // namespace TQStoreKitLib
