#include "platform/StoreKit/SKPaymentQueue.hpp"

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"

namespace StoreKit {

namespace {

EmbeddedStore& storeOnMainThread() {
#ifndef NDEBUG
  if (!Dispatch::mainQueue().isCurrentThread()) {
    Foundation::warn("The payment queue was used on a thread that is not the main one.");
  }
#endif
  return EmbeddedStore::current();
}

PaymentQueueEngine& engine() { return storeOnMainThread().queue(); }

}  // namespace

SKPaymentQueue& SKPaymentQueue::defaultQueue() {
  static auto& queue = *new SKPaymentQueue;
  return queue;
}

bool SKPaymentQueue::canMakePayments() {
  return EmbeddedStore::current().settings().canMakePayments;
}

void SKPaymentQueue::addTransactionObserver(SKPaymentTransactionObserver& observer) {
  engine().addObserver(observer);
}

void SKPaymentQueue::removeTransactionObserver(SKPaymentTransactionObserver& observer) {
  engine().removeObserver(observer);
}

void SKPaymentQueue::addPayment(const SKPayment& payment) { engine().add(payment); }

void SKPaymentQueue::finishTransaction(const SKPaymentTransactionPtr& transaction) {
  engine().finish(transaction);
}

void SKPaymentQueue::restoreCompletedTransactions(
    const std::optional<std::string>& applicationUsername) {
  engine().restore(applicationUsername);
}

void SKPaymentQueue::startDownloads(const SKDownloads& downloads) {
  storeOnMainThread().downloads().start(downloads);
}

void SKPaymentQueue::pauseDownloads(const SKDownloads& downloads) {
  storeOnMainThread().downloads().pause(downloads);
}

void SKPaymentQueue::resumeDownloads(const SKDownloads& downloads) {
  storeOnMainThread().downloads().resume(downloads);
}

void SKPaymentQueue::cancelDownloads(const SKDownloads& downloads) {
  storeOnMainThread().downloads().cancel(downloads);
}

SKPaymentTransactions SKPaymentQueue::transactions() const { return engine().transactions(); }

}  // namespace StoreKit
