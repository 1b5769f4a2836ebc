#include "TQStoreKitLib/transactions/TQStoreKit.hpp"

#include <utility>

#include "TQStoreKitLib/transactions/TQStoreKitInstance.hpp"
#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"

namespace TQStoreKitLib {

namespace {

// What the application set, apart from the controller that uses it: reading must not make the
// shared instance.
struct Handlers {
  TQStoreKit::ShouldAddStorePaymentHandler shouldAddStorePayment;
  TQStoreKit::UpdatedDownloadsHandler updatedDownloads;
};

Handlers& handlers() {
  static auto& instance = *new Handlers;
  return instance;
}

void checkThread() {
#ifndef NDEBUG
  if (!Dispatch::mainQueue().isCurrentThread()) {
    Foundation::warn("TQStoreKit was called on a thread that is not the main one.");
  }
#endif
}

TQStoreKitInstance& instance() {
  checkThread();
  return TQStoreKitInstance::shared();
}

PaymentQueueController& controller() { return instance().paymentQueueController(); }

}  // namespace

bool TQStoreKit::canMakePayments() { return StoreKit::SKPaymentQueue::canMakePayments(); }

void TQStoreKit::fetchProductsInfo(const TQProductIdentifiers& productIds,
                                   TQProductsCallback completion) {
  instance().productsInfoController().retrieveProductsInfo(productIds, std::move(completion));
}

void TQStoreKit::purchaseProduct(const std::string& productId, TQIdentifierPurchaseOptions options,
                                 PurchaseCompletion completion) {
  instance().purchaseProduct(productId, std::move(options), std::move(completion));
}

void TQStoreKit::purchaseProduct(const StoreKit::SKProductPtr& product,
                                 TQProductPurchaseOptions options, PurchaseCompletion completion) {
  instance().purchaseProduct(product, std::move(options), std::move(completion));
}

void TQStoreKit::restorePurchases(TQRestoreOptions options, RestoreCompletion completion) {
  instance().restorePurchases(std::move(options), std::move(completion));
}

void TQStoreKit::completeTransactions(TQCompleteTransactionsOptions options,
                                      CompleteTransactionsCallback callback) {
  instance().completeTransactions(options, std::move(callback));
}

void TQStoreKit::finishTransaction(const TQPaymentTransaction& transaction) {
  controller().finishTransaction(transaction);
}

void TQStoreKit::start(const StoreKit::SKDownloads& downloads) { controller().start(downloads); }
void TQStoreKit::pause(const StoreKit::SKDownloads& downloads) { controller().pause(downloads); }
void TQStoreKit::resume(const StoreKit::SKDownloads& downloads) { controller().resume(downloads); }
void TQStoreKit::cancel(const StoreKit::SKDownloads& downloads) { controller().cancel(downloads); }

void TQStoreKit::setShouldAddStorePaymentHandler(ShouldAddStorePaymentHandler handler) {
  auto& target = controller().shouldAddStorePaymentHandler;
  const auto previous = std::exchange(handlers().shouldAddStorePayment, std::move(handler));
  auto replaced = handlers().shouldAddStorePayment;
  target.swap(replaced);
}

const TQStoreKit::ShouldAddStorePaymentHandler& TQStoreKit::shouldAddStorePaymentHandler() {
  return handlers().shouldAddStorePayment;
}

void TQStoreKit::setUpdatedDownloadsHandler(UpdatedDownloadsHandler handler) {
  auto& target = controller().updatedDownloadsHandler;
  const auto previous = std::exchange(handlers().updatedDownloads, std::move(handler));
  auto replaced = handlers().updatedDownloads;
  target.swap(replaced);
}

const TQStoreKit::UpdatedDownloadsHandler& TQStoreKit::updatedDownloadsHandler() {
  return handlers().updatedDownloads;
}

}  // namespace TQStoreKitLib
