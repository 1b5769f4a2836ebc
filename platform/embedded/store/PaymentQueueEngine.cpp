#include "platform/embedded/store/PaymentQueueEngine.hpp"

#include <algorithm>
#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/StoreKit/SKError.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"
#include "platform/embedded/store/server/Restorable.hpp"
#include "platform/embedded/store/server/Verdict.hpp"

namespace StoreKit {

namespace {

using State = SKPaymentTransactionState;

bool isPurchasing(const LedgerEntry& entry) { return entry.state == State::purchasing; }

bool boughtPeriod(const LedgerEntry& entry) { return entry.period.has_value(); }

void warnNotCommitted(const char* consequence, const Foundation::NSError& error) {
  Foundation::warn("The ledger refused a change: " + error.localizedDescription() + " " +
                   consequence);
}

// Applications know the store's errors; a code of the ledger's would be taken for one of these.
Foundation::NSError storeError(const Foundation::NSError& ledgerError) {
  const auto code = static_cast<std::int64_t>(SKError::Code::unknown);
  return {std::string(SKErrorDomain),
          code,
          {{std::string(Foundation::NSLocalizedDescriptionKey), ledgerError.localizedDescription()},
           {std::string(Foundation::NSUnderlyingErrorKey), ledgerError}}};
}

SKPaymentTransactions asPlatform(const UnfinishedTransactions::List& transactions) {
  return {transactions.begin(), transactions.end()};
}

}  // namespace

void PaymentQueueEngine::restart() {
  ++run_;
  addedPayments_.clear();
  answered_.clear();
  triesAgain_ = false;
  finishing_.clear();
  asking_.clear();
  restoreRequests_.clear();
  restoresAnswered_ = 0;
  restoreEnd_.reset();
  backlogDelivered_ = false;
  loadUnfinished();
  later(&PaymentQueueEngine::deliverBacklog);
  later(&PaymentQueueEngine::reportResumed);
  later(&PaymentQueueEngine::askApplication);
}

void PaymentQueueEngine::loadUnfinished() {
  auto& ledger = store_.ledger();
  store_.downloads().restart();
  unfinished_.restart(ledger, store_.openings(), store_.downloads());
  mergedRevision_ = ledger.revision();
  for (auto& entry : ledger.unfinished()) {
    const bool ours = entry.owner == ledger.owner();
    if (isPurchasing(entry) && entry.asksApplication) {
      if (ours || !entry.owner) asking_.push_back(entry.identifier);
    } else if (!isPurchasing(entry) || ours) {
      unfinished_.add(std::move(entry));
    }
  }
  resumed_ = unfinished_.purchasing();
}

std::function<void()> PaymentQueueEngine::inThisRun(void (PaymentQueueEngine::*step)()) {
  return [this, run = run_, step] {
    if (run == run_) (this->*step)();
  };
}

void PaymentQueueEngine::later(void (PaymentQueueEngine::*step)()) {
  Dispatch::mainQueue().async(inThisRun(step));
}

void PaymentQueueEngine::settleInTime(const Transactions& begun) {
  std::vector<std::int64_t> identifiers;
  for (const auto& transaction : begun) identifiers.push_back(transaction->entry().identifier);
  store_.answerLater([this, run = run_, identifiers = std::move(identifiers)] {
    if (run != run_) return;
    answered_.insert(identifiers.begin(), identifiers.end());
    settlePurchases();
  });
}

void PaymentQueueEngine::addObserver(SKPaymentTransactionObserver& observer) {
  const bool first = observers_.isEmpty();
  if (!observers_.add(observer) || !first) return;
  later(&PaymentQueueEngine::deliverBacklog);
  later(&PaymentQueueEngine::reportResumed);
  later(&PaymentQueueEngine::beginPurchases);
  later(&PaymentQueueEngine::settlePurchases);
  later(&PaymentQueueEngine::askApplication);
  later(&PaymentQueueEngine::endRestore);
  later(&PaymentQueueEngine::beginRestore);
  later(&PaymentQueueEngine::absorbChanges);
  store_.downloads().carryOn();
}

// Not before there is somebody to deliver them to: a program that only looks takes nothing over.
void PaymentQueueEngine::adoptOrphans() {
  auto& ledger = store_.ledger();
  if (const auto error = ledger.adoptOrphans()) {
    return warnNotCommitted("Purchases that another program left are not carried on.", *error);
  }
  for (auto& entry : ledger.unfinished()) {
    if (!isPurchasing(entry) || entry.owner != ledger.owner()) continue;
    if (entry.asksApplication) {
      const bool known = std::count(asking_.begin(), asking_.end(), entry.identifier) != 0;
      if (!known) asking_.push_back(entry.identifier);
    } else if (!unfinished_.find(entry.identifier)) {
      resumed_.push_back(unfinished_.add(std::move(entry)));
    }
  }
}

void PaymentQueueEngine::deliverBacklog() {
  if (backlogDelivered_ || observers_.isEmpty()) return;
  backlogDelivered_ = true;
  if (store_.isForApplication()) adoptOrphans();
  if (store_.reloadSettings().changed) store_.catchUp();
  (void)unfinished_.merge(readChanges());  // what others changed meanwhile is part of the backlog
  const auto run = run_;
  reportUpdated(unfinished_.settled());
  if (run == run_) reportRefunds(store_.ledger().untoldRefunds());
}

void PaymentQueueEngine::reportResumed() {
  if (observers_.isEmpty() || resumed_.empty()) return;
  const auto resumed = std::exchange(resumed_, {});
  settleInTime(resumed);
  reportUpdated(resumed);
}

void PaymentQueueEngine::add(const SKPayment& payment) {
  SKPayment::Values copy{.productIdentifier = payment.productIdentifier(),
                         .quantity = payment.quantity(),
                         .requestData = payment.requestData(),
                         .applicationUsername = payment.applicationUsername(),
                         .simulatesAskToBuyInSandbox = payment.simulatesAskToBuyInSandbox(),
                         .paymentDiscount = payment.paymentDiscount()};
  addedPayments_.push_back(std::move(copy));
  if (addedPayments_.size() == 1) later(&PaymentQueueEngine::beginPurchases);
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
      entry.error = storeError(*error);
    }
  }
  Transactions begun;
  for (auto& entry : entries) begun.push_back(unfinished_.add(std::move(entry)));
  settleInTime(begun);
  reportUpdated(begun);
}

void PaymentQueueEngine::settlePurchases() {
  if (observers_.isEmpty()) return;
  auto purchasing = unfinished_.purchasing();
  std::erase_if(purchasing, [this](const auto& transaction) {
    return !answered_.contains(transaction->entry().identifier);
  });
  if (purchasing.empty()) return;
  store_.renewSubscriptions();
  auto sale = store_.sale();
  const auto scenario = store_.scenario();
  for (const auto& transaction : purchasing) settle(transaction->entry(), sale);
  auto entries = sale.changes();
  const auto written = store_.ledger().replace(entries, Ledger::Durability::powerCut);
  if (written.error || written.conflict) store_.scenario() = scenario;
  if (written.error) {
    if (!std::exchange(triesAgain_, true)) {
      store_.tryLater(inThisRun(&PaymentQueueEngine::settleAgain));
    }
    return warnNotCommitted("The purchases are carried on later.", *written.error);
  }
  if (written.conflict) {
    later(&PaymentQueueEngine::settlePurchases);
    return absorbChanges();
  }
  answered_.clear();
  if (std::any_of(entries.begin(), entries.end(), boughtPeriod)) store_.setAlarm();
  report(unfinished_.merge(entries));
}

void PaymentQueueEngine::settleAgain() {
  triesAgain_ = false;
  settlePurchases();
}

void PaymentQueueEngine::settle(LedgerEntry entry, Sale& sale) {
  auto verdict = judge(entry.payment, store_.catalogue(), store_.settings(), store_.ledger(),
                       store_.scenario().purchases, sale.now());
  if (!verdict.error && !verdict.deferred) {
    entry.transactionIdentifier = store_.sources().transactionIdentifier(entry.identifier);
    return sale.purchase(std::move(entry));
  }
  entry.owner = std::nullopt;
  entry.state = verdict.error ? State::failed : State::deferred;
  entry.hasPurchaseIssue = verdict.interrupted;
  entry.error = std::move(verdict.error);
  sale.keep(std::move(entry));
}

// The purchase is claimed first, so that one program asks. One that dies before it has an answer
// leaves it to be asked about again.
void PaymentQueueEngine::askApplication() {
  if (observers_.isEmpty() || !backlogDelivered_ || asking_.empty()) return;
  if (!store_.isForApplication()) return asking_.clear();
  auto entry = store_.ledger().find(asking_.front());
  asking_.pop_front();
  if (!asking_.empty()) later(&PaymentQueueEngine::askApplication);
  const auto owner = store_.ledger().owner();
  if (!entry || !entry->asksApplication || entry->owner.value_or(owner) != owner) return;
  const auto* const sold = store_.catalogue().find(entry->payment.productIdentifier);
  if (sold == nullptr) return;  // a program with another configuration may know it
  const auto product = sold->product;
  LedgerEntries claimed = {*entry};
  claimed[0].owner = owner;
  if (const auto refusal = store_.ledger().update(claimed, Ledger::Durability::killedProcess)) {
    return warnNotCommitted("The store's purchase is asked about at the next start.", *refusal);
  }
  if (claimed[0].owner != owner || claimed[0].deleted) return;
  const auto run = run_;
  const bool wanted = wantsPurchase(claimed[0], product);
  if (run != run_) return;
  claimed[0].asksApplication = false;
  claimed[0].deleted = claimed[0].finished = !wanted;
  if (const auto refusal = store_.ledger().update(claimed, Ledger::Durability::killedProcess)) {
    return warnNotCommitted("The store's purchase is asked about at the next start.", *refusal);
  }
  if (claimed[0].deleted) return;
  const Transactions begun = {unfinished_.add(std::move(claimed[0]))};
  settleInTime(begun);
  reportUpdated(begun);
}

bool PaymentQueueEngine::wantsPurchase(const LedgerEntry& entry, const SKProductPtr& product) {
  const auto payment = std::make_shared<const SKPayment>(entry.payment, product);
  bool wanted = false;
  observers_.notify([&](SKPaymentTransactionObserver& observer) {
    if (observer.paymentQueueShouldAddStorePayment(payment, product)) wanted = true;
  });
  return wanted;
}

void PaymentQueueEngine::finish(const SKPaymentTransactionPtr& transaction) {
  const auto* known = dynamic_cast<const LedgerTransaction*>(transaction.get());
  if (!known || known->ledger() != store_.openings()) return;
  const auto inQueue = unfinished_.find(known->entry().identifier);
  if (!inQueue) return;
  if (isPurchasing(inQueue->entry())) {
    Foundation::warn("A purchasing transaction cannot be finished: " +
                     known->entry().payment.productIdentifier + " stays in the queue.");
    return;
  }
  finishing_.insert_or_assign(known->entry().identifier, inQueue->entry().state);
  if (finishing_.size() == 1) later(&PaymentQueueEngine::removeFinished);
}

void PaymentQueueEngine::removeFinished() {
  LedgerEntries recorded;
  LedgerEntries unrecorded;
  for (const auto& [identifier, state] : std::exchange(finishing_, {})) {
    const auto transaction = unfinished_.find(identifier);
    // What was approved meanwhile is something else than what was finished.
    if (!transaction || transaction->entry().state != state) continue;
    auto& entries = identifier > 0 ? recorded : unrecorded;
    entries.push_back(transaction->entry());
    entries.back().finished = true;
  }
  if (const auto error = commitFinished(recorded)) {
    warnNotCommitted("The transactions stay in the queue.", *error);
  }
  recorded.insert(recorded.end(), unrecorded.begin(), unrecorded.end());
  report(unfinished_.merge(recorded));
}

void PaymentQueueEngine::restore(const std::optional<std::string>& applicationUsername) {
  restoreRequests_.push_back(applicationUsername);
  store_.answerLater(inThisRun(&PaymentQueueEngine::answerRestore));
}

void PaymentQueueEngine::answerRestore() {
  ++restoresAnswered_;
  beginRestore();
}

// One restore after another: what one replays, then how it ended.
void PaymentQueueEngine::beginRestore() {
  if (observers_.isEmpty() || restoreEnd_ || restoresAnswered_ == 0) return;
  --restoresAnswered_;
  auto& scenario = store_.scenario();
  auto entries =
      restorable(store_.ledger(), store_.catalogue(), restoreRequests_.front(), store_.now());
  restoreRequests_.pop_front();
  Ledger::Failure interruption;
  if (!scenario.restores.empty()) {
    interruption = scenario.restores.front().error;
    entries.resize(std::min(entries.size(), scenario.restores.front().after));
    scenario.restores.pop_front();
  }
  auto error = store_.ledger().add(entries, Ledger::Durability::powerCut, store_.numbering());
  const bool written = !error;
  restoreEnd_ = error ? storeError(*error) : std::move(interruption);
  later(&PaymentQueueEngine::endRestore);
  if (written) report(unfinished_.merge(entries));
}

void PaymentQueueEngine::endRestore() {
  if (observers_.isEmpty() || !restoreEnd_) return;
  const auto failure = restoreEnd_.value_or(std::nullopt);
  restoreEnd_.reset();
  later(&PaymentQueueEngine::beginRestore);
  observers_.notify([&](SKPaymentTransactionObserver& observer) {
    if (failure) {
      observer.paymentQueueRestoreCompletedTransactionsFailedWithError(*failure);
    } else {
      observer.paymentQueueRestoreCompletedTransactionsFinished();
    }
  });
}

void PaymentQueueEngine::absorbLater() { later(&PaymentQueueEngine::absorbChanges); }

void PaymentQueueEngine::absorbSettings() {
  const auto reloading = store_.reloadSettings();
  if (reloading.changed) store_.catchUp();
  if (reloading.storefrontChanged) later(&PaymentQueueEngine::reportStorefront);
}

void PaymentQueueEngine::absorbChanges() {
  absorbSettings();
  if (observers_.isEmpty() || !backlogDelivered_) return;
  const auto known = mergedRevision_;
  const auto entries = readChanges();
  const auto run = run_;
  report(unfinished_.merge(entries));
  LedgerEntries refunded;
  for (const auto& entry : entries) {
    if (entry.refundRevision.value_or(0) > known) refunded.push_back(entry);
  }
  if (run == run_) reportRefunds(refunded);
}

LedgerEntries PaymentQueueEngine::readChanges() {
  auto entries = store_.ledger().changedAfter(mergedRevision_);
  if (!entries.empty()) mergedRevision_ = entries.back().revision;
  for (const auto& entry : entries) {
    if (!isPurchasing(entry) || !entry.asksApplication || entry.owner || entry.finished) continue;
    asking_.push_back(entry.identifier);
    later(&PaymentQueueEngine::askApplication);
  }
  if (std::any_of(entries.begin(), entries.end(), boughtPeriod)) store_.setAlarm();
  return entries;
}

// Somebody else may change one at the same time, a refund for instance: it is finished all the same,
// unless it has become something else. What is left in `entries` is known to be in the ledger.
Ledger::Failure PaymentQueueEngine::commitFinished(LedgerEntries& entries) {
  auto open = std::exchange(entries, {});
  while (!open.empty()) {
    const auto wanted = open;
    if (auto error = store_.ledger().update(open, Ledger::Durability::killedProcess)) return error;
    LedgerEntries again;
    for (std::size_t i = 0; i < open.size(); ++i) {
      const bool overtaken = !open[i].finished && open[i].state == wanted[i].state;
      (overtaken ? again : entries).push_back(std::move(open[i]));
    }
    for (auto& entry : again) entry.finished = true;
    open = std::move(again);
  }
  return std::nullopt;
}

SKPaymentTransactions PaymentQueueEngine::transactions() const {
  return asPlatform(unfinished_.list());
}

void PaymentQueueEngine::reportDownloads(const SKDownloads& downloads) {
  observers_.notify([&](SKPaymentTransactionObserver& observer) {
    observer.paymentQueueUpdatedDownloads(downloads);
  });
}

void PaymentQueueEngine::reportStorefront() {
  observers_.notify(
      [](SKPaymentTransactionObserver& observer) { observer.paymentQueueDidChangeStorefront(); });
}

void PaymentQueueEngine::reportRefunds(const LedgerEntries& refunded) {
  if (refunded.empty() || !store_.isForApplication()) return;
  std::vector<std::string> products;
  std::int64_t last = 0;
  for (const auto& entry : refunded) {
    products.push_back(entry.payment.productIdentifier);
    last = std::max(last, entry.refundRevision.value_or(0));
  }
  const auto run = run_;
  observers_.notify([&](SKPaymentTransactionObserver& observer) {
    observer.paymentQueueDidRevokeEntitlements(products);
  });
  if (run != run_) return;
  // Only now: a program that dies in between tells them again, and none is lost.
  if (const auto error = store_.ledger().tellRefunds(last)) {
    warnNotCommitted("Refunds are told again at the next start.", *error);
  }
}

void PaymentQueueEngine::report(const UnfinishedTransactions::Changes& changes) {
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
