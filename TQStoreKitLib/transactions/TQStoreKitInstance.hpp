#pragma once

#include <memory>
#include <string>

#include "TQStoreKitLib/products/TQInAppProducts.hpp"
#include "TQStoreKitLib/transactions/PaymentQueueController.hpp"
#include "TQStoreKitLib/transactions/TQStoreKit.hpp"

namespace TQStoreKitLib {

/// The object behind `TQStoreKit`'s static operations: the products controller, the payment queue
/// controller, and the way from the one to the other.
///
/// For the library and its tests, which make one with substitutes; applications call `TQStoreKit`.
/// The operations mean what those of `TQStoreKit` do.
class TQStoreKitInstance {
 public:
  /// The one that applications use, on the platform's default queue. Made on first use, never
  /// destroyed.
  [[nodiscard]] static TQStoreKitInstance& shared();

  /// Neither may be null.
  TQStoreKitInstance(std::shared_ptr<TQInAppProducts> productsInfoController,
                     std::shared_ptr<PaymentQueueController> paymentQueueController);

  [[nodiscard]] TQInAppProducts& productsInfoController() const { return *productsInfoController_; }
  [[nodiscard]] PaymentQueueController& paymentQueueController() const {
    return *paymentQueueController_;
  }

  void purchaseProduct(const std::string& productId, TQIdentifierPurchaseOptions options,
                       TQStoreKit::PurchaseCompletion completion);
  void purchaseProduct(const StoreKit::SKProductPtr& product, TQProductPurchaseOptions options,
                       TQStoreKit::PurchaseCompletion completion);
  void restorePurchases(TQRestoreOptions options, TQStoreKit::RestoreCompletion completion);
  void completeTransactions(TQCompleteTransactionsOptions options,
                            TQStoreKit::CompleteTransactionsCallback callback);

 private:
  std::shared_ptr<TQInAppProducts> productsInfoController_;
  std::shared_ptr<PaymentQueueController> paymentQueueController_;
};

}  // namespace TQStoreKitLib
