#pragma once

#include <string>
#include <vector>

#include "platform/StoreKit/SKPaymentTransactionObserver.hpp"

namespace tqstore {

/// Shows what the user has lost, when applications hear of it: as a line, or as JSON. It only looks
/// on.
///
/// Thread: main.
class RevocationWatch final : public StoreKit::SKPaymentTransactionObserver {
 public:
  explicit RevocationWatch(bool json);
  ~RevocationWatch() override;
  RevocationWatch(const RevocationWatch&) = delete;
  RevocationWatch& operator=(const RevocationWatch&) = delete;

  void paymentQueueUpdatedTransactions(
      const StoreKit::SKPaymentTransactions& /*transactions*/) override {}
  void paymentQueueDidRevokeEntitlements(
      const std::vector<std::string>& productIdentifiers) override;

 private:
  bool json_;
};

}  // namespace tqstore
