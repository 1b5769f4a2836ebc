#include "platform/embedded/store/PaymentQueueEngine.hpp"

#include <algorithm>
#include <set>
#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"

namespace StoreKit {

namespace {

using State = SKPaymentTransactionState;

bool isPurchasing(const LedgerEntry& entry) { return entry.state == State::purchasing; }

void warnNotCommitted(const char* consequence, const Foundation::NSError& error) {
  Foundation::warn("The ledger refused a change: " + error.localizedDescription() + " " +
                   consequence);
}

template <class Transactions>
SKPaymentTransactions asPlatform(const Transactions& transactions) {
  return {transactions.begin(), transactions.end()};
}

}  // namespace

void PaymentQueueEngine::restart() {
  ++run_;
  addedPayments_.clear();
  finishedIdentifiers_.clear();
  restoreRequests_.clear();
  unfinished_.clear();
  for (auto& entry : store_.ledger().unfinished()) {
    unfinished_.push_back(makeTransaction(std::move(entry)));
  }
  backlogDelivered_ = false;
  later([this] { deliverBacklog(); });
}

void PaymentQueueEngine::later(std::function<void()> step) {
  Dispatch::mainQueue().async([this, run = run_, step = std::move(step)] {
    if (run == run_) step();
  });
}

void PaymentQueueEngine::addObserver(SKPaymentTransactionObserver& observer) {
  const bool first = observers_.isEmpty();
  if (!observers_.add(observer) || !first) return;
  later([this] { deliverBacklog(); });
  later([this] { beginPurchases(); });
  later([this] { settlePurchases(); });
  later([this] { replayPurchases(); });
}

void PaymentQueueEngine::deliverBacklog() {
  if (backlogDelivered_ || observers_.isEmpty()) return;
  backlogDelivered_ = true;
  const auto run = run_;
  const auto resumed = inState(true);
  reportUpdated(inState(false));
  if (run != run_ || resumed.empty()) return;
  reportUpdated(resumed);
  later([this] { settlePurchases(); });
}

void PaymentQueueEngine::add(const SKPayment& payment) {
  SKPayment::Values copy{.productIdentifier = payment.productIdentifier(),
                         .quantity = payment.quantity(),
                         .requestData = payment.requestData(),
                         .applicationUsername = payment.applicationUsername(),
                         .simulatesAskToBuyInSandbox = payment.simulatesAskToBuyInSandbox(),
                         .paymentDiscount = payment.paymentDiscount()};
  addedPayments_.push_back(std::move(copy));
  if (addedPayments_.size() == 1) later([this] { beginPurchases(); });
}

void PaymentQueueEngine::beginPurchases() {
  if (observers_.isEmpty()) return;
  std::vector<LedgerEntry> entries;
  for (auto& payment : std::exchange(addedPayments_, {})) {
    entries.push_back(
        {.identifier = store_.ledger().nextIdentifier(), .payment = std::move(payment)});
  }
  if (entries.empty()) return;
  if (const auto error = store_.ledger().commit(entries)) {
    // What could not be written down must not be bought.
    for (auto& entry : entries) {
      entry.state = State::failed;
      entry.error = error;
    }
  }
  Transactions begun;
  for (auto& entry : entries) begun.push_back(makeTransaction(std::move(entry)));
  unfinished_.insert(unfinished_.end(), begun.begin(), begun.end());
  later([this] { settlePurchases(); });
  reportUpdated(begun);
}

void PaymentQueueEngine::settlePurchases() {
  if (observers_.isEmpty()) return;
  const auto settled = inState(true);
  if (settled.empty()) return;
  std::vector<LedgerEntry> entries;
  for (const auto& transaction : settled) entries.push_back(outcome(transaction->entry()));
  if (const auto error = store_.ledger().commit(entries)) {
    warnNotCommitted("The purchases are carried on at the next start.", *error);
    return;
  }
  for (std::size_t i = 0; i < settled.size(); ++i) settled[i]->update(std::move(entries[i]));
  reportUpdated(settled);
}

LedgerEntry PaymentQueueEngine::outcome(LedgerEntry entry) const {
  entry.error = store_.scenario().decidePurchase(entry.payment, store_.catalogue());
  entry.state = entry.error ? State::failed : State::purchased;
  if (!entry.error) {
    entry.transactionIdentifier = store_.sources().transactionIdentifier(entry.identifier);
    entry.transactionDate = store_.sources().now();
  }
  return entry;
}

void PaymentQueueEngine::finish(const SKPaymentTransactionPtr& transaction) {
  const auto* known = dynamic_cast<const LedgerTransaction*>(transaction.get());
  if (!known || known->ledger() != store_.openings()) return;
  if (isPurchasing(known->entry())) {
    Foundation::warn("A purchasing transaction cannot be finished: " +
                     known->entry().payment.productIdentifier + " stays in the queue.");
    return;
  }
  finishedIdentifiers_.push_back(known->entry().identifier);
  if (finishedIdentifiers_.size() == 1) later([this] { removeFinished(); });
}

void PaymentQueueEngine::removeFinished() {
  const auto identifiers = std::exchange(finishedIdentifiers_, {});
  const std::set<std::int64_t> wanted(identifiers.begin(), identifiers.end());
  Transactions removed;
  std::vector<LedgerEntry> entries;
  for (const auto& transaction : unfinished_) {
    if (!wanted.contains(transaction->entry().identifier)) continue;
    removed.push_back(transaction);
    entries.push_back(transaction->entry());
    entries.back().finished = true;
  }
  if (removed.empty()) return;
  if (const auto error = store_.ledger().commit(entries)) {
    warnNotCommitted("The transactions stay in the queue.", *error);
    return;
  }
  for (std::size_t i = 0; i < removed.size(); ++i) removed[i]->update(std::move(entries[i]));
  std::erase_if(unfinished_, [](const auto& transaction) { return transaction->entry().finished; });
  observers_.notify([batch = asPlatform(removed)](SKPaymentTransactionObserver& observer) {
    observer.paymentQueueRemovedTransactions(batch);
  });
}

void PaymentQueueEngine::restore(const std::optional<std::string>& applicationUsername) {
  restoreRequests_.push_back(applicationUsername);
  later([this] { replayPurchases(); });
}

void PaymentQueueEngine::replayPurchases() {
  if (observers_.isEmpty()) return;
  const auto run = run_;
  for (const auto& request : std::exchange(restoreRequests_, {})) {
    replayFor(request);
    if (run != run_) return;
  }
}

void PaymentQueueEngine::replayFor(const std::optional<std::string>& applicationUsername) {
  auto entries = restorable(applicationUsername);
  if (const auto error = store_.ledger().commit(entries)) {
    observers_.notify([&](SKPaymentTransactionObserver& observer) {
      observer.paymentQueueRestoreCompletedTransactionsFailedWithError(*error);
    });
    return;
  }
  Transactions restored;
  for (auto& entry : entries) restored.push_back(makeTransaction(std::move(entry)));
  unfinished_.insert(unfinished_.end(), restored.begin(), restored.end());
  later([this] {
    observers_.notify([](SKPaymentTransactionObserver& observer) {
      observer.paymentQueueRestoreCompletedTransactionsFinished();
    });
  });
  reportUpdated(restored);
}

std::vector<LedgerEntry> PaymentQueueEngine::restorable(
    const std::optional<std::string>& applicationUsername) const {
  const auto name = applicationUsername.value_or("");
  std::vector<LedgerEntry> entries;
  std::set<std::string> replayedOnce;
  for (const auto& purchase : store_.ledger().finishedPurchases()) {
    const auto& product = purchase.payment.productIdentifier;
    const auto* const sold = store_.catalogue().find(product);
    const bool theirs = name.empty() || purchase.payment.applicationUsername.value_or("") == name;
    if (!sold || !theirs) continue;
    const bool owned = sold->type == ProductType::nonConsumable;
    const bool renewed = sold->type == ProductType::autoRenewableSubscription;
    if (!renewed && !(owned && replayedOnce.insert(product).second)) continue;
    const auto identifier = store_.ledger().nextIdentifier();
    entries.push_back({.identifier = identifier,
                       .state = State::restored,
                       .payment = purchase.payment,
                       .transactionIdentifier = store_.sources().transactionIdentifier(identifier),
                       .transactionDate = store_.sources().now(),
                       .original = purchase.identifier});
  }
  return entries;
}

SKPaymentTransactions PaymentQueueEngine::transactions() const { return asPlatform(unfinished_); }

PaymentQueueEngine::TransactionPtr PaymentQueueEngine::makeTransaction(LedgerEntry entry) const {
  const auto ledger = store_.openings();
  SKPaymentTransactionPtr original;
  if (entry.original) {
    if (auto purchase = store_.ledger().find(*entry.original)) {
      original = std::make_shared<LedgerTransaction>(ledger, std::move(*purchase), nullptr);
    }
  }
  return std::make_shared<LedgerTransaction>(ledger, std::move(entry), std::move(original));
}

PaymentQueueEngine::Transactions PaymentQueueEngine::inState(bool purchasing) const {
  Transactions found;
  std::copy_if(unfinished_.begin(), unfinished_.end(), std::back_inserter(found),
               [&](const auto& each) { return isPurchasing(each->entry()) == purchasing; });
  return found;
}

void PaymentQueueEngine::reportUpdated(const Transactions& transactions) {
  if (transactions.empty()) return;
  observers_.notify([batch = asPlatform(transactions)](SKPaymentTransactionObserver& observer) {
    observer.paymentQueueUpdatedTransactions(batch);
  });
}

}  // namespace StoreKit
