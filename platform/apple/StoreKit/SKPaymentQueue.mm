#include "platform/StoreKit/SKPaymentQueue.hpp"

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/StoreKit/SKError.hpp"
#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/StoreKit/DownloadBridging.hpp"
#include "platform/apple/StoreKit/ObserverBridges.hpp"
#include "platform/apple/StoreKit/PaymentBridging.hpp"
#include "platform/apple/StoreKit/RefusedPayments.hpp"
#include "platform/apple/StoreKit/TransactionBridging.hpp"

namespace StoreKit {

namespace {

using Foundation::callPlatform;

void warnOffTheMainThread() {
#ifndef NDEBUG
  if (!Dispatch::mainQueue().isCurrentThread()) {
    Foundation::warn("The payment queue was used on a thread that is not the main one.");
  }
#endif
}

::SKPaymentQueue* nativeQueue() { return [::SKPaymentQueue defaultQueue]; }

ObserverBridges& bridges() {
  warnOffTheMainThread();
  static auto& bridges = *new ObserverBridges;
  return bridges;
}

RefusedPayments& refusedPayments() {
  static auto& payments = *new RefusedPayments;
  return payments;
}

void notifyLater(ObserverBridges::Call call) {
  Dispatch::mainQueue().async([call = std::move(call)] { bridges().notify(call); });
}

void reportUpdated(SKPaymentTransactions transactions) {
  notifyLater([transactions = std::move(transactions)](SKPaymentTransactionObserver& observer) {
    observer.paymentQueueUpdatedTransactions(transactions);
  });
}

void reportRemoved(SKPaymentTransactions transactions) {
  notifyLater([transactions = std::move(transactions)](SKPaymentTransactionObserver& observer) {
    observer.paymentQueueRemovedTransactions(transactions);
  });
}

void reportRefusedRestore() {
  const SKError error(SKError::Code::unknown, "The platform refused to restore.");
  notifyLater([error = error.nsError()](SKPaymentTransactionObserver& observer) {
    observer.paymentQueueRestoreCompletedTransactionsFailedWithError(error);
  });
}

// The platform takes an empty list for a mistake.
template <class Command>
void commandDownloads(const char* place, const SKDownloads& downloads, Command command) {
  warnOffTheMainThread();
  callPlatform(place, [&] {
    NSArray<::SKDownload*>* const natives = nativeDownloads(downloads);
    if ([natives count] > 0) command(natives);
  });
}

}  // namespace

SKPaymentQueue& SKPaymentQueue::defaultQueue() {
  static auto& queue = *new SKPaymentQueue;
  return queue;
}

bool SKPaymentQueue::canMakePayments() {
  return Foundation::askPlatform("SKPaymentQueue::canMakePayments", false, [] {
    return static_cast<bool>([::SKPaymentQueue canMakePayments]);
  });
}

void SKPaymentQueue::addTransactionObserver(SKPaymentTransactionObserver& observer) {
  bridges().add(observer);
}

void SKPaymentQueue::removeTransactionObserver(SKPaymentTransactionObserver& observer) {
  bridges().remove(observer);
}

void SKPaymentQueue::addPayment(const SKPayment& payment) {
  warnOffTheMainThread();
  const bool isTaken = callPlatform("SKPaymentQueue::addPayment",
                                    [&] { [nativeQueue() addPayment:nativePayment(payment)]; });
  if (!isTaken) reportUpdated({refusedPayments().add(payment)});
}

void SKPaymentQueue::finishTransaction(const SKPaymentTransactionPtr& transaction) {
  warnOffTheMainThread();
  if (refusedPayments().finish(transaction)) return reportRemoved({transaction});
  callPlatform("SKPaymentQueue::finishTransaction", [&] {
    ::SKPaymentTransaction* const native = nativeTransaction(transaction);
    if (native != nil) [nativeQueue() finishTransaction:native];
  });
}

void SKPaymentQueue::restoreCompletedTransactions(
    const std::optional<std::string>& applicationUsername) {
  warnOffTheMainThread();
  const bool isTaken = callPlatform("SKPaymentQueue::restoreCompletedTransactions", [&] {
    if (applicationUsername) {
      NSString* const name = Foundation::nativeText(*applicationUsername);
      [nativeQueue() restoreCompletedTransactionsWithApplicationUsername:name];
    } else {
      [nativeQueue() restoreCompletedTransactions];
    }
  });
  if (!isTaken) reportRefusedRestore();
}

void SKPaymentQueue::startDownloads(const SKDownloads& downloads) {
  commandDownloads("SKPaymentQueue::startDownloads", downloads,
                   [](NSArray* natives) { [nativeQueue() startDownloads:natives]; });
}

void SKPaymentQueue::pauseDownloads(const SKDownloads& downloads) {
  commandDownloads("SKPaymentQueue::pauseDownloads", downloads,
                   [](NSArray* natives) { [nativeQueue() pauseDownloads:natives]; });
}

void SKPaymentQueue::resumeDownloads(const SKDownloads& downloads) {
  commandDownloads("SKPaymentQueue::resumeDownloads", downloads,
                   [](NSArray* natives) { [nativeQueue() resumeDownloads:natives]; });
}

void SKPaymentQueue::cancelDownloads(const SKDownloads& downloads) {
  commandDownloads("SKPaymentQueue::cancelDownloads", downloads,
                   [](NSArray* natives) { [nativeQueue() cancelDownloads:natives]; });
}

SKPaymentTransactions SKPaymentQueue::transactions() const {
  warnOffTheMainThread();
  auto transactions =
      Foundation::askPlatform("SKPaymentQueue::transactions", SKPaymentTransactions(),
                              [] { return transactionsFrom([nativeQueue() transactions]); });
  const auto& refused = refusedPayments().transactions();
  transactions.insert(transactions.end(), refused.begin(), refused.end());
  return transactions;
}

}  // namespace StoreKit
