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
  restoreEnd_.reset();
  unfinished_.clear();
  backlogDelivered_ = false;
  auto& ledger = store_.ledger();
  if (const auto error = ledger.adoptOrphans()) {
    warnNotCommitted("Purchases that another program left are not carried on.", *error);
  }
  mergedRevision_ = ledger.revision();
  for (auto& entry : ledger.unfinished()) {
    const bool theirs = isPurchasing(entry) && entry.owner != ledger.owner();
    if (!theirs) unfinished_.push_back(makeTransaction(std::move(entry)));
  }
  resumed_ = inState(true);
  later([this] { deliverBacklog(); });
  later([this] { reportResumed(); });
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
  later([this] { reportResumed(); });
  later([this] { beginPurchases(); });
  later([this] { settlePurchases(); });
  later([this] { endRestore(); });
  later([this] { beginRestore(); });
  later([this] { absorbChanges(); });
}

void PaymentQueueEngine::deliverBacklog() {
  if (backlogDelivered_ || observers_.isEmpty()) return;
  backlogDelivered_ = true;
  (void)mergeLedger();  // what others changed meanwhile is part of the backlog
  reportUpdated(inState(false));
}

void PaymentQueueEngine::reportResumed() {
  if (observers_.isEmpty() || resumed_.empty()) return;
  later([this] { settlePurchases(); });
  reportUpdated(std::exchange(resumed_, {}));
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
  LedgerEntries entries;
  for (auto& payment : std::exchange(addedPayments_, {})) {
    entries.push_back({.owner = store_.ledger().owner(), .payment = std::move(payment)});
  }
  if (entries.empty()) return;
  if (const auto error = store_.ledger().add(entries, Ledger::Durability::killedProcess)) {
    // What could not be written down must not be bought.
    for (auto& entry : entries) {
      entry.identifier = --lastUnrecorded_;
      entry.state = State::failed;
      entry.error = error;
    }
  }
  Transactions begun;
  for (auto& entry : entries) begun.push_back(makeTransaction(std::move(entry)));
  for (const auto& transaction : begun) insert(transaction);
  later([this] { settlePurchases(); });
  reportUpdated(begun);
}

void PaymentQueueEngine::settlePurchases() {
  if (observers_.isEmpty()) return;
  LedgerEntries entries;
  auto scenario = store_.scenario();
  for (const auto& transaction : inState(true)) {
    entries.push_back(outcome(transaction->entry(), scenario));
  }
  if (entries.empty()) return;
  if (const auto error = store_.ledger().update(entries, Ledger::Durability::powerCut)) {
    warnNotCommitted("The purchases are carried on later.", *error);
    return;
  }
  store_.scenario() = std::move(scenario);
  report(merge(entries));
}

LedgerEntry PaymentQueueEngine::outcome(LedgerEntry entry, Scenario& scenario) const {
  entry.error = scenario.decidePurchase(entry.payment, store_.catalogue());
  entry.state = entry.error ? State::failed : State::purchased;
  entry.owner = std::nullopt;
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
  LedgerEntries recorded;
  LedgerEntries unrecorded;
  for (const auto identifier : std::set<std::int64_t>(identifiers.begin(), identifiers.end())) {
    const auto transaction = find(identifier);
    if (!transaction) continue;
    auto& entries = identifier > 0 ? recorded : unrecorded;
    entries.push_back(transaction->entry());
    entries.back().finished = true;
  }
  if (const auto error = store_.ledger().update(recorded, Ledger::Durability::killedProcess)) {
    warnNotCommitted("The transactions stay in the queue.", *error);
    recorded.clear();
  }
  recorded.insert(recorded.end(), unrecorded.begin(), unrecorded.end());
  report(merge(recorded));
}

void PaymentQueueEngine::restore(const std::optional<std::string>& applicationUsername) {
  restoreRequests_.push_back(applicationUsername);
  later([this] { beginRestore(); });
}

// One restore after another: what one replays, then how it ended.
void PaymentQueueEngine::beginRestore() {
  if (observers_.isEmpty() || restoreEnd_ || restoreRequests_.empty()) return;
  auto entries = restorable(restoreRequests_.front());
  restoreRequests_.pop_front();
  const auto& sources = store_.sources();
  restoreEnd_ = store_.ledger().add(entries, Ledger::Durability::powerCut, [&](LedgerEntry& entry) {
    entry.transactionIdentifier = sources.transactionIdentifier(entry.identifier);
  });
  later([this] { endRestore(); });
  if (!*restoreEnd_) report(merge(entries));
}

void PaymentQueueEngine::endRestore() {
  if (observers_.isEmpty() || !restoreEnd_) return;
  const auto failure = restoreEnd_.value_or(std::nullopt);
  restoreEnd_.reset();
  later([this] { beginRestore(); });
  observers_.notify([&](SKPaymentTransactionObserver& observer) {
    if (failure) {
      observer.paymentQueueRestoreCompletedTransactionsFailedWithError(*failure);
    } else {
      observer.paymentQueueRestoreCompletedTransactionsFinished();
    }
  });
}

LedgerEntries PaymentQueueEngine::restorable(
    const std::optional<std::string>& applicationUsername) const {
  const auto name = applicationUsername.value_or("");
  LedgerEntries entries;
  std::set<std::string> replayedOnce;
  for (const auto& purchase : store_.ledger().finishedPurchases()) {
    const auto& product = purchase.payment.productIdentifier;
    const auto* const sold = store_.catalogue().find(product);
    const bool theirs = name.empty() || purchase.payment.applicationUsername.value_or("") == name;
    if (!sold || !theirs) continue;
    const bool owned = sold->type == ProductType::nonConsumable;
    const bool renewed = sold->type == ProductType::autoRenewableSubscription;
    if (!renewed && !(owned && replayedOnce.insert(product).second)) continue;
    entries.push_back({.state = State::restored,
                       .payment = purchase.payment,
                       .transactionDate = store_.sources().now(),
                       .original = purchase.identifier});
  }
  return entries;
}

void PaymentQueueEngine::absorbChanges() {
  if (observers_.isEmpty() || !backlogDelivered_) return;
  report(mergeLedger());
}

PaymentQueueEngine::Changes PaymentQueueEngine::mergeLedger() {
  const auto entries = store_.ledger().changedAfter(mergedRevision_);
  if (!entries.empty()) mergedRevision_ = entries.back().revision;
  return merge(entries);
}

// Takes entries as the ledger holds them. A purchase that another program has under way is its own
// business until there is an outcome.
PaymentQueueEngine::Changes PaymentQueueEngine::merge(const LedgerEntries& entries) {
  Changes changes;
  for (const auto& entry : entries) {
    auto transaction = find(entry.identifier);
    if (!transaction) {
      if (entry.finished || isPurchasing(entry)) continue;
      transaction = makeTransaction(entry);
      insert(transaction);
      changes.updated.push_back(transaction);
      continue;
    }
    if (transaction->entry().revision > entry.revision) continue;
    const auto stateBefore = transaction->entry().state;
    transaction->update(entry);
    if (entry.finished) {
      changes.removed.push_back(transaction);
    } else if (entry.state != stateBefore) {
      changes.updated.push_back(transaction);
    }
  }
  std::erase_if(unfinished_, [](const auto& each) { return each->entry().finished; });
  return changes;
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

PaymentQueueEngine::TransactionPtr PaymentQueueEngine::find(std::int64_t identifier) const {
  const auto found = std::find_if(
      unfinished_.begin(), unfinished_.end(),
      [&](const auto& transaction) { return transaction->entry().identifier == identifier; });
  return found == unfinished_.end() ? nullptr : *found;
}

// Keeps the order in which transactions were added, also when other programs add some; those that
// the ledger refused come last.
void PaymentQueueEngine::insert(const TransactionPtr& transaction) {
  const auto place = [](const TransactionPtr& each) {
    return static_cast<std::uint64_t>(each->entry().identifier);
  };
  const auto behind =
      std::upper_bound(unfinished_.begin(), unfinished_.end(), transaction,
                       [&](const auto& a, const auto& b) { return place(a) < place(b); });
  unfinished_.insert(behind, transaction);
}

void PaymentQueueEngine::report(const Changes& changes) {
  const auto run = run_;
  reportUpdated(changes.updated);
  if (run == run_) reportRemoved(changes.removed);
}

void PaymentQueueEngine::reportRemoved(const Transactions& transactions) {
  if (transactions.empty()) return;
  observers_.notify([batch = asPlatform(transactions)](SKPaymentTransactionObserver& observer) {
    observer.paymentQueueRemovedTransactions(batch);
  });
}

void PaymentQueueEngine::reportUpdated(const Transactions& transactions) {
  if (transactions.empty()) return;
  observers_.notify([batch = asPlatform(transactions)](SKPaymentTransactionObserver& observer) {
    observer.paymentQueueUpdatedTransactions(batch);
  });
}

}  // namespace StoreKit
