#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TQStoreKitLib/products/TQProductsRequest.hpp"
#include "TQStoreKitLib/transactions/TQStoreKit.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace TQStoreKitLib {

/// A ready-made store: what the application sells, the catalogue that was fetched last, and
/// purchases with the settings that an application almost always wants.
///
///     TQStoreKitManager::setup({"gems.100"}, {"club.monthly"}, deliver);  // once, at launch
///     TQStoreKitManager::retriveProducts({"gems.100", "club.monthly"}, showShop);
///     TQStoreKitManager::purchaseProduct(product, "", std::nullopt, thankTheBuyer);
///
/// Everything is said to the class and done by its one instance, which lives as long as the
/// process. The store itself is reached through `TQStoreKit`; the manager adds no events and no
/// errors of its own. Thread: main. Callbacks come on: the main queue.
class TQStoreKitManager {
 public:
  using CompleteTransactionsCallback = TQStoreKit::CompleteTransactionsCallback;
  using PurchaseCompletion = TQStoreKit::PurchaseCompletion;

  /// What the class's operations do. An application that wants one of them to do something else
  /// derives from this, overrides it, and hands an object to `setOperations`; the override may call
  /// the operation that it overrides.
  class Operations {
   public:
    Operations() = default;
    Operations(const Operations&) = delete;
    Operations& operator=(const Operations&) = delete;
    virtual ~Operations() = default;

    virtual void setup(std::vector<std::string> consumableOrNonConsumableProductIds,
                       std::vector<std::string> subscriptionProductIds,
                       CompleteTransactionsCallback completeTransactions);
    virtual void retriveProducts(const TQProductIdentifiers& productIds,
                                 TQProductsCallback completion);
    virtual void purchaseProduct(const StoreKit::SKProductPtr& product,
                                 std::string applicationUsername,
                                 std::optional<TQPaymentDiscount> paymentDiscount,
                                 PurchaseCompletion completion);
  };

  TQStoreKitManager(const TQStoreKitManager&) = delete;
  TQStoreKitManager& operator=(const TQStoreKitManager&) = delete;

  /// The one manager. Made on first use, from whatever thread; never destroyed.
  [[nodiscard]] static TQStoreKitManager& sharedInstance();

  /// From now on, the class's operations are those of `operations`; null brings the library's own
  /// back. Returns what was there before. An operation that is under way ends as it began.
  static std::shared_ptr<Operations> setOperations(std::shared_ptr<Operations> operations);

  /// The valid products of the last `retriveProducts`; empty until the first answer.
  [[nodiscard]] static const StoreKit::SKProductSet& products();

  /// Identifiers of the consumable and non-consumable products, in the application's order and with
  /// its repetitions. The list may be changed in place.
  [[nodiscard]] static std::vector<std::string>& consumableOrNonConsumableProductIds();

  /// Identifiers of the subscription products; likewise.
  [[nodiscard]] static std::vector<std::string>& subscriptionProductIds();

  /// Call it once, at launch. Registers for the transactions that nobody in this run waits for
  /// (`TQStoreKit::completeTransactions`, atomically), then stores both lists; nothing is fetched.
  ///
  /// With an empty `completeTransactions`, such transactions are finished and nobody is told. A
  /// second call replaces the lists and leaves the first registration in force, with a printed
  /// line.
  static void setup(std::vector<std::string> consumableOrNonConsumableProductIds,
                    std::vector<std::string> subscriptionProductIds,
                    CompleteTransactionsCallback completeTransactions);

  /// Fetches products. Order: the catalogue becomes what the store found valid, earlier products
  /// drop out of it, then `completion` runs with the answer. A failed request empties the
  /// catalogue. To try again from inside `completion` takes a later turn of the main queue (see
  /// `TQStoreKit::fetchProductsInfo`).
  static void retriveProducts(const TQProductIdentifiers& productIds,
                              TQProductsCallback completion);

  /// Buys one piece of `product`, which must not be null, and finishes the transaction once
  /// `completion` has run. Events and result are those of `TQStoreKit::purchaseProduct`.
  static void purchaseProduct(const StoreKit::SKProductPtr& product,
                              std::string applicationUsername,
                              std::optional<TQPaymentDiscount> paymentDiscount,
                              PurchaseCompletion completion);

 private:
  TQStoreKitManager() = default;
  ~TQStoreKitManager() = default;

  StoreKit::SKProductSet products_;
  std::vector<std::string> consumableOrNonConsumableProductIds_;
  std::vector<std::string> subscriptionProductIds_;
  std::shared_ptr<Operations> operations_ = std::make_shared<Operations>();
};

}  // namespace TQStoreKitLib
