#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TQStoreKitLib/transactions/TQTransactionController.hpp"
#include "TQStoreKitLib/transactions/TQTransactionResult.hpp"
#include "platform/Foundation/NSError.hpp"

namespace TQStoreKitLib {

/// One restore that was asked for.
struct TQRestorePurchases {
  /// Called once, at the end of the restore. Empty: nobody is told.
  using Callback = std::function<void(const std::vector<TQTransactionResult>&)>;

  /// True: the library finishes each restored transaction itself.
  bool atomically = true;
  /// What the platform was given when the restore began.
  std::optional<std::string> applicationUsername{};
  Callback callback{};
};

/// Gathers the transactions of the restore under way and delivers them, in one list, at its end.
///
/// The second link of the chain. Idle until `begin`.
/// Thread: main. The callback may do anything, also drop the last reference to this controller.
class TQRestorePurchasesController final
    : public TQTransactionController,
      public std::enable_shared_from_this<TQRestorePurchasesController> {
 public:
  /// Stores the restore that begins. There must be none under way.
  void begin(TQRestorePurchases restorePurchases);

  /// The restore under way; absent when idle. It stays until its callback has returned, so that a
  /// restore asked for inside the callback finds one under way.
  [[nodiscard]] const std::optional<TQRestorePurchases>& restorePurchases() const {
    return restorePurchases_;
  }

  /// What the restore under way has gathered, in the order of arrival.
  [[nodiscard]] const std::vector<TQTransactionResult>& restoredPurchases() const {
    return restoredPurchases_;
  }

  /// Takes the restored transactions while a restore is under way: each is finished when the
  /// restore is atomic, then recorded. Returns all others; when idle, all of them.
  [[nodiscard]] StoreKit::SKPaymentTransactions processTransactions(
      const StoreKit::SKPaymentTransactions& transactions, TQPaymentQueue& paymentQueue) override;

  /// The restore failed: its callback gets what was gathered, and the failure as the last element;
  /// then the controller is idle. When idle already, it prints so and does nothing.
  void restoreCompletedTransactionsFailed(const Foundation::NSError& withError);

  /// The restore ended: its callback gets what was gathered; then the controller is idle. When idle
  /// already, it prints so and does nothing.
  void restoreCompletedTransactionsFinished();

 private:
  void end();

  std::optional<TQRestorePurchases> restorePurchases_;
  std::vector<TQTransactionResult> restoredPurchases_;
  std::uint64_t serial_ = 0;
};

}  // namespace TQStoreKitLib
