#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/embedded/store/StoreSession.hpp"
#include "tests/fakes/FailingLedger.hpp"
#include "tests/fakes/JournalingObserver.hpp"
#include "tests/fakes/MainQueueTurns.hpp"
#include "tests/fakes/ShopConfigurations.hpp"

namespace tests {

/// Sources that count: the first moment is 1001, the first identifier 101.
inline StoreKit::StoreSources countingSources() {
  StoreKit::StoreSources sources;
  sources.now = [moment = 1000.0]() mutable { return Foundation::Date::sinceEpoch(++moment); };
  sources.transactionIdentifier = [](std::int64_t number) { return std::to_string(100 + number); };
  return sources;
}

/// A fresh store with a ledger that can refuse. It leaves the main queue empty behind it.
class OpenShop {
 public:
  explicit OpenShop(const StoreConfiguration& configuration = shop(),
                    StoreKit::StoreSources sources = countingSources())
      : session(configuration, std::move(sources), std::make_unique<FailingLedger>(ledger)) {}
  OpenShop(const OpenShop&) = delete;
  OpenShop& operator=(const OpenShop&) = delete;
  ~OpenShop() { (void)turnUntilIdle(); }

  void add(const std::string& product, std::int64_t quantity = 1,
           std::optional<std::string> user = std::nullopt) const {
    queue().addPayment(StoreKit::SKPayment({.productIdentifier = product,
                                            .quantity = quantity,
                                            .applicationUsername = std::move(user)}));
  }

  /// Buys, without finishing, and answers with the transaction.
  StoreKit::SKPaymentTransactionPtr buy(const std::string& product,
                                        std::optional<std::string> user = std::nullopt) const {
    add(product, 1, std::move(user));
    (void)turnUntilIdle();
    return queue().transactions().empty() ? nullptr : queue().transactions().back();
  }

  /// Buys and finishes.
  void own(const std::string& product, std::optional<std::string> user = std::nullopt) const {
    queue().finishTransaction(buy(product, std::move(user)));
    (void)turnUntilIdle();
  }

  static StoreKit::SKPaymentQueue& queue() { return StoreKit::SKPaymentQueue::defaultQueue(); }

  std::shared_ptr<FailingLedger::Control> ledger = std::make_shared<FailingLedger::Control>();
  StoreKit::StoreSession session;
};

}  // namespace tests
