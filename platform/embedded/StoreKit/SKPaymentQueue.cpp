#include "platform/StoreKit/SKPaymentQueue.hpp"

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"

namespace StoreKit {

namespace {

PaymentQueueEngine& engine() {
#ifndef NDEBUG
  if (!Dispatch::mainQueue().isCurrentThread()) {
    Foundation::warn("The payment queue was used on a thread that is not the main one.");
  }
#endif
  return EmbeddedStore::current().queue();
}

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

// The embedded store hosts no content yet: there is no download of its own to control, and what
// belongs to somebody else is ignored.
void SKPaymentQueue::startDownloads(const SKDownloads&) {}
void SKPaymentQueue::pauseDownloads(const SKDownloads&) {}
void SKPaymentQueue::resumeDownloads(const SKDownloads&) {}
void SKPaymentQueue::cancelDownloads(const SKDownloads&) {}

SKPaymentTransactions SKPaymentQueue::transactions() const { return engine().transactions(); }

}  // namespace StoreKit
