// An application that buys one product and waits for what becomes of it:
//
//     waiting_application CONFIGURATION LEDGER PRODUCT
//
// It says "deferred" when somebody else has to approve, and then how the purchase ended.

#include <cstdio>
#include <string>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/store/StoreSession.hpp"

using namespace TQStoreKitLib;

namespace {

void say(const std::string& text) {
  std::printf("%s\n", text.c_str());
  std::fflush(stdout);
}

class Onlooker final : public StoreKit::SKPaymentTransactionObserver {
 public:
  void paymentQueueUpdatedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override {
    for (const auto& transaction : transactions) {
      if (transaction->transactionState() == StoreKit::SKPaymentTransactionState::deferred) {
        say("deferred");
      }
    }
  }
  void paymentQueueDidRevokeEntitlements(const std::vector<std::string>& products) override {
    for (const auto& product : products) say("lost " + product);
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const auto opening = StoreKit::StoreSession::open(argv[1], {.ledger = argv[2]});
  if (!opening.session) return 2;
  Foundation::setPrintHandler([](std::string_view message) { Foundation::warn(message); });
  Onlooker onlooker;
  TQStoreKit::completeTransactions({}, [](const std::vector<TQPurchase>&) {});
  TQStoreKit::purchaseProduct(argv[3], {}, [](const TQPurchaseResult& result) {
    result.match([](const TQPurchaseDetails& details) { say("bought " + details.productId); },
                 [](const TQSKError&) { say("failed"); });
  });
  StoreKit::SKPaymentQueue::defaultQueue().addTransactionObserver(onlooker);
  Dispatch::MainLoop::run();
}
