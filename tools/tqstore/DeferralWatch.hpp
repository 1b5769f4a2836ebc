#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/StoreKit/SKPaymentTransactionObserver.hpp"
#include "platform/embedded/store/Ledger.hpp"

namespace tqstore {

/// Sees whether a purchase that this program begins is deferred: the library says nothing then, as
/// a decision may come days later, and in another run.
///
/// It only looks on: nothing is finished or kept from the library.
/// Thread: main.
class DeferralWatch final : public StoreKit::SKPaymentTransactionObserver {
 public:
  using Deferred = std::function<void(const StoreKit::LedgerEntry&)>;

  /// Looks at purchases of `productIdentifier` that begin from now on. `deferred` is called at most
  /// once, in a callback of the queue. The store must be open.
  DeferralWatch(std::string productIdentifier, Deferred deferred);
  ~DeferralWatch() override;
  DeferralWatch(const DeferralWatch&) = delete;
  DeferralWatch& operator=(const DeferralWatch&) = delete;

  void paymentQueueUpdatedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override;

 private:
  void look(const StoreKit::LedgerEntry& entry);

  std::string productIdentifier_;
  Deferred deferred_;
  std::int64_t lastOfOthers_ = 0;
  std::optional<std::int64_t> ours_;
};

}  // namespace tqstore
