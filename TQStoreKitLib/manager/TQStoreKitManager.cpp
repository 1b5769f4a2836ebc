#include "TQStoreKitLib/manager/TQStoreKitManager.hpp"

#include <utility>

#include "TQStoreKitLib/transactions/TQStoreKitInstance.hpp"

namespace TQStoreKitLib {

namespace {

// Takes what the library has left for the application to finish, for one that doesn't want to.
void finishAll(const std::vector<TQPurchase>& purchases) {
  auto& controller = TQStoreKitInstance::shared().paymentQueueController();
  for (const auto& purchase : purchases) {
    if (purchase.needsFinishTransaction) controller.finishTransaction(*purchase.transaction);
  }
}

}  // namespace

TQStoreKitManager& TQStoreKitManager::sharedInstance() {
  static auto& instance = *new TQStoreKitManager;
  return instance;
}

std::shared_ptr<TQStoreKitManager::Operations> TQStoreKitManager::setOperations(
    std::shared_ptr<Operations> operations) {
  if (!operations) operations = std::make_shared<Operations>();
  return std::exchange(sharedInstance().operations_, std::move(operations));
}

const StoreKit::SKProductSet& TQStoreKitManager::products() { return sharedInstance().products_; }

std::vector<std::string>& TQStoreKitManager::consumableOrNonConsumableProductIds() {
  return sharedInstance().consumableOrNonConsumableProductIds_;
}

std::vector<std::string>& TQStoreKitManager::subscriptionProductIds() {
  return sharedInstance().subscriptionProductIds_;
}

void TQStoreKitManager::setup(std::vector<std::string> consumableOrNonConsumableProductIds,
                              std::vector<std::string> subscriptionProductIds,
                              CompleteTransactionsCallback completeTransactions) {
  const auto operations = sharedInstance().operations_;
  operations->setup(std::move(consumableOrNonConsumableProductIds),
                    std::move(subscriptionProductIds), std::move(completeTransactions));
}

void TQStoreKitManager::retriveProducts(const TQProductIdentifiers& productIds,
                                        TQProductsCallback completion) {
  const auto operations = sharedInstance().operations_;
  operations->retriveProducts(productIds, std::move(completion));
}

void TQStoreKitManager::purchaseProduct(const StoreKit::SKProductPtr& product,
                                        std::string applicationUsername,
                                        std::optional<TQPaymentDiscount> paymentDiscount,
                                        PurchaseCompletion completion) {
  const auto operations = sharedInstance().operations_;
  operations->purchaseProduct(product, std::move(applicationUsername), std::move(paymentDiscount),
                              std::move(completion));
}

void TQStoreKitManager::Operations::setup(
    std::vector<std::string> consumableOrNonConsumableProductIds,
    std::vector<std::string> subscriptionProductIds,
    CompleteTransactionsCallback completeTransactions) {
  if (!completeTransactions) completeTransactions = finishAll;
  TQStoreKit::completeTransactions({.atomically = true}, std::move(completeTransactions));
  auto& manager = sharedInstance();
  manager.consumableOrNonConsumableProductIds_ = std::move(consumableOrNonConsumableProductIds);
  manager.subscriptionProductIds_ = std::move(subscriptionProductIds);
}

void TQStoreKitManager::Operations::retriveProducts(const TQProductIdentifiers& productIds,
                                                    TQProductsCallback completion) {
  TQStoreKit::fetchProductsInfo(
      productIds, [completion = std::move(completion)](const TQProductsResponse& response) {
        auto products = response.valids();
        sharedInstance().products_.swap(products);
        if (completion) completion(response);
      });
}

void TQStoreKitManager::Operations::purchaseProduct(
    const StoreKit::SKProductPtr& product, std::string applicationUsername,
    std::optional<TQPaymentDiscount> paymentDiscount, PurchaseCompletion completion) {
  TQStoreKit::purchaseProduct(product,
                              {.quantity = 1,
                               .atomically = true,
                               .applicationUsername = std::move(applicationUsername),
                               .simulatesAskToBuyInSandbox = false,
                               .paymentDiscount = std::move(paymentDiscount)},
                              std::move(completion));
}

}  // namespace TQStoreKitLib
