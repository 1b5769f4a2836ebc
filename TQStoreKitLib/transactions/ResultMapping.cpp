#include "TQStoreKitLib/transactions/ResultMapping.hpp"

#include <utility>

#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"

namespace TQStoreKitLib {

namespace {

using PurchaseEvent = TQStoreKitEvent::PurchaseEvent;
using StoreKit::SKError;

void post(PurchaseEvent event) {
  TQStoreKitEvent::broadcastEvent(TQStoreKitEvent::purchase(std::move(event)), false);
}

TQPurchaseResult succeeded(const TQPurchaseDetails& details) {
  post(PurchaseEvent::success(details));
  return TQPurchaseResult::success(details);
}

TQPurchaseResult failed(const std::string& productId, const StoreKit::SKProductPtr& product,
                        const SKError& error) {
  const auto reported = makeStoreError(error);
  const bool cancelled = error.code() == SKError::Code::paymentCancelled && product;
  post(cancelled ? PurchaseEvent::cancel(product) : PurchaseEvent::failed(productId, reported));
  return TQPurchaseResult::error(reported);
}

SKError restoredOnPurchasePath(const TQPurchase& purchase) {
  return {SKError::Code::unknown,
          "Cannot restore product " + purchase.productId + " from purchase path"};
}

SKError purchasedOnRestorePath(const TQPurchaseDetails& details) {
  return {SKError::Code::unknown,
          "Cannot purchase product " + details.productId + " from restore purchases path"};
}

}  // namespace

TQPurchaseResult mapPurchaseResult(const std::string& productId,
                                   const TQTransactionResult& result) {
  return result.match([](const TQPurchaseDetails& details) { return succeeded(details); },
                      [&](const TQPurchase& purchase) {
                        return failed(productId, nullptr, restoredOnPurchasePath(purchase));
                      },
                      [&](const TQTransactionResult::Failed& failure) {
                        return failed(productId, failure.product, failure.error);
                      });
}

TQRestoreResults mapRestoreResults(const std::vector<TQTransactionResult>& results) {
  TQRestoreResults mapped;
  for (const auto& result : results) {
    result.match(
        [&](const TQPurchaseDetails& details) {
          mapped.restoreFailedPurchases.emplace_back(purchasedOnRestorePath(details),
                                                     details.productId);
        },
        [&](const TQPurchase& purchase) { mapped.restoredPurchases.push_back(purchase); },
        [&](const TQTransactionResult::Failed& failure) {
          mapped.restoreFailedPurchases.emplace_back(failure.error, std::nullopt);
        });
  }
  return mapped;
}

}  // namespace TQStoreKitLib
