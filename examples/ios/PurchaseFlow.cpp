#include "examples/ios/PurchaseFlow.hpp"

#include <utility>

#include "TQStoreKitLib/TQStoreKitLib.hpp"

using namespace TQStoreKitLib;

namespace {

using Screen = PurchaseFlow::Screen;

// Here a real application grants, and writes down that it did.
void deliver(const TQPurchase& purchase, const Screen& screen) {
  screen("delivered " + std::to_string(purchase.quantity) + " x " + purchase.productId);
}

// Failed and deferred transactions reach the launch-time callback too: only these were paid for.
bool wasPaidFor(const TQPurchase& purchase) {
  const auto state = purchase.transaction->transactionState();
  return state == StoreKit::SKPaymentTransactionState::purchased ||
         state == StoreKit::SKPaymentTransactionState::restored;
}

void showResult(const TQPurchaseResult& result, const Screen& screen) {
  result.match(
      [&](const TQPurchaseDetails& details) { screen("bought " + details.productId); },
      [&](const TQSKError& error) { screen(error.errorDescription().value_or("it failed")); });
}

void buyProduct(const StoreKit::SKProductPtr& product, const Screen& screen) {
  screen(product->localizedTitle() + " costs " + regularPrice(*product).value_or("nothing"));
  TQStoreKit::purchaseProduct(product, {.quantity = 1}, [screen](const TQPurchaseResult& result) {
    showResult(result, screen);
  });
}

}  // namespace

PurchaseFlow::PurchaseFlow(Screen screen) : screen_(std::move(screen)) {
  TQStoreKit::completeTransactions({}, [show = screen_](const std::vector<TQPurchase>& purchases) {
    for (const auto& purchase : purchases) {
      if (wasPaidFor(purchase)) deliver(purchase, show);
    }
  });
}

void PurchaseFlow::buy(const std::string& productId) {
  TQStoreKit::fetchProductsInfo({productId},
                                [productId, show = screen_](const TQProductsResponse& response) {
                                  if (response.valids().empty())
                                    return show("the store does not sell " + productId);
                                  buyProduct(*response.valids().begin(), show);
                                });
}

void PurchaseFlow::restore() {
  TQStoreKit::restorePurchases({}, [show = screen_](const TQRestoreResults& results) {
    for (const auto& purchase : results.restoredPurchases) deliver(purchase, show);
    show(std::to_string(results.restoreFailedPurchases.size()) + " could not be restored");
  });
}
