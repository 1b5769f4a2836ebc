#include "platform/embedded/store/Scenario.hpp"

#include "platform/StoreKit/SKError.hpp"

namespace StoreKit {

namespace {

bool isSellable(const SKPayment::Values& payment, const Catalogue& catalogue) {
  return catalogue.find(payment.productIdentifier) && payment.quantity >= 1 &&
         payment.quantity <= kLargestQuantity;
}

}  // namespace

std::optional<Foundation::NSError> Scenario::decidePurchase(const SKPayment::Values& payment,
                                                            const Catalogue& catalogue) {
  if (!purchaseFailures.empty()) {
    auto error = purchaseFailures.front();
    purchaseFailures.pop_front();
    return error;
  }
  if (!canMakePayments) return SKError(SKError::Code::paymentNotAllowed).nsError();
  if (!isSellable(payment, catalogue)) return SKError(SKError::Code::paymentInvalid).nsError();
  return everyPurchaseFails;
}

}  // namespace StoreKit
