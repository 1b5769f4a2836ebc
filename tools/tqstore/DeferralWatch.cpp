#include "tools/tqstore/DeferralWatch.hpp"

#include <utility>

#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

using State = StoreKit::SKPaymentTransactionState;

}  // namespace

DeferralWatch::DeferralWatch(std::string productIdentifier, Deferred deferred)
    : productIdentifier_(std::move(productIdentifier)), deferred_(std::move(deferred)) {
  // A purchase of a dead program that this one has taken over is not the one that it begins.
  const auto unfinished = ledger().unfinished();
  if (!unfinished.empty()) lastOfOthers_ = unfinished.back().identifier;
  StoreKit::SKPaymentQueue::defaultQueue().addTransactionObserver(*this);
}

DeferralWatch::~DeferralWatch() {
  StoreKit::SKPaymentQueue::defaultQueue().removeTransactionObserver(*this);
}

void DeferralWatch::paymentQueueUpdatedTransactions(
    const StoreKit::SKPaymentTransactions& transactions) {
  for (const auto& transaction : transactions) {
    if (const auto entry = entryOf(transaction)) look(*entry);
  }
}

void DeferralWatch::look(const StoreKit::LedgerEntry& entry) {
  if (entry.payment.productIdentifier != productIdentifier_) return;
  const bool begunHere = entry.identifier > lastOfOthers_ && entry.owner == ledger().owner();
  if (!ours_ && entry.state == State::purchasing && begunHere) ours_ = entry.identifier;
  if (ours_ == entry.identifier && entry.state == State::deferred && deferred_) {
    std::exchange(deferred_, nullptr)(entry);
  }
}

}  // namespace tqstore
