#include "TQStoreKitLib/transactions/TQStoreKitInstance.hpp"

#include <utility>

#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"
#include "TQStoreKitLib/products/TQProductsQuery.hpp"
#include "TQStoreKitLib/transactions/ResultMapping.hpp"

namespace TQStoreKitLib {

namespace {

using PurchaseEvent = TQStoreKitEvent::PurchaseEvent;
using StoreKit::SKError;

TQPayment makePayment(const StoreKit::SKProductPtr& product, TQProductPurchaseOptions options,
                      TQStoreKit::PurchaseCompletion completion) {
  return {.product = product,
          .paymentDiscount = std::move(options.paymentDiscount),
          .quantity = options.quantity,
          .atomically = options.atomically,
          .applicationUsername = std::move(options.applicationUsername),
          .simulatesAskToBuyInSandbox = options.simulatesAskToBuyInSandbox,
          .callback = [productId = product->productIdentifier(),
                       completion = std::move(completion)](const TQTransactionResult& result) {
            const auto mapped = mapPurchaseResult(productId, result);
            if (completion) completion(mapped);
          }};
}

// Listeners run before the product is used: it is held here, whatever they do with the caller's.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void startPurchase(PaymentQueueController& controller, StoreKit::SKProductPtr product,
                   TQProductPurchaseOptions options, TQStoreKit::PurchaseCompletion completion) {
  TQStoreKitEvent::broadcastEvent(TQStoreKitEvent::purchase(PurchaseEvent::begin(product)), false);
  controller.startPayment(makePayment(product, std::move(options), std::move(completion)));
}

// Why there is nothing to buy.
SKError missingProductError(const TQProductsResponse& response) {
  if (const auto& error = response.error()) return SKError(*error);
  if (!response.invalidIDs().empty()) {
    return {SKError::Code::paymentInvalid, "Invalid product id: " + *response.invalidIDs().begin()};
  }
  return SKError(SKError::Code::unknown);
}

void refusePurchase(const std::string& productId, const TQProductsResponse& response,
                    const TQStoreKit::PurchaseCompletion& completion) {
  const auto error = makeStoreError(missingProductError(response));
  if (completion) completion(TQPurchaseResult::error(error));
  TQStoreKitEvent::broadcastEvent(
      TQStoreKitEvent::purchase(PurchaseEvent::failed(productId, error)), false);
}

TQProductPurchaseOptions withoutDiscount(const TQIdentifierPurchaseOptions& options) {
  return {.quantity = options.quantity,
          .atomically = options.atomically,
          .applicationUsername = options.applicationUsername,
          .simulatesAskToBuyInSandbox = options.simulatesAskToBuyInSandbox};
}

}  // namespace

TQStoreKitInstance& TQStoreKitInstance::shared() {
  static auto& instance = *[] {
    auto products = TQInAppProducts::make(std::make_shared<TQInAppProductQueryRequestBuilder>());
    auto queue = std::make_shared<PaymentQueueController>(
        platformPaymentQueue(), std::make_shared<TQPaymentsController>(),
        std::make_shared<TQRestorePurchasesController>(),
        std::make_shared<TQCompleteTransactionsController>());
    return new TQStoreKitInstance(std::move(products), std::move(queue));
  }();
  return instance;
}

TQStoreKitInstance::TQStoreKitInstance(
    std::shared_ptr<TQInAppProducts> productsInfoController,
    std::shared_ptr<PaymentQueueController> paymentQueueController)
    : productsInfoController_(std::move(productsInfoController)),
      paymentQueueController_(std::move(paymentQueueController)) {}

void TQStoreKitInstance::purchaseProduct(const std::string& productId,
                                         TQIdentifierPurchaseOptions options,
                                         TQStoreKit::PurchaseCompletion completion) {
  productsInfoController_->retrieveProductsInfo(
      {productId}, [controller = paymentQueueController_, productId, options = std::move(options),
                    completion = std::move(completion)](const TQProductsResponse& response) {
        if (response.valids().empty()) {
          refusePurchase(productId, response, completion);
        } else {
          startPurchase(*controller, *response.valids().begin(), withoutDiscount(options),
                        completion);
        }
      });
}

void TQStoreKitInstance::purchaseProduct(const StoreKit::SKProductPtr& product,
                                         TQProductPurchaseOptions options,
                                         TQStoreKit::PurchaseCompletion completion) {
  const auto controller = paymentQueueController_;
  startPurchase(*controller, product, std::move(options), std::move(completion));
}

void TQStoreKitInstance::restorePurchases(TQRestoreOptions options,
                                          TQStoreKit::RestoreCompletion completion) {
  paymentQueueController_->restorePurchases(
      {.atomically = options.atomically,
       .applicationUsername = std::move(options.applicationUsername),
       .callback = [completion =
                        std::move(completion)](const std::vector<TQTransactionResult>& results) {
         if (completion) completion(mapRestoreResults(results));
       }});
}

void TQStoreKitInstance::completeTransactions(TQCompleteTransactionsOptions options,
                                              TQStoreKit::CompleteTransactionsCallback callback) {
  paymentQueueController_->completeTransactions(
      {.atomically = options.atomically, .callback = std::move(callback)});
}

}  // namespace TQStoreKitLib
