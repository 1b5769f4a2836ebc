#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/StoreKit/SKPaymentTransactionObserver.hpp"
#include "platform/embedded/store/ObserverList.hpp"
#include "platform/embedded/store/UnfinishedTransactions.hpp"

namespace StoreKit {

class EmbeddedStore;
class Sale;

/// The payment queue of the embedded store: one small step per turn of the main queue.
///
/// Every operation only writes down what is to be done; a step then does it, in this order: it
/// changes the entries, commits them to the ledger, and only then tells the observers. While there
/// is no observer, everything waits for the next one, except a finish: it is committed, and nobody
/// is told.
/// Thread: main.
class PaymentQueueEngine {
 public:
  explicit PaymentQueueEngine(EmbeddedStore& store) : store_(store) {}
  PaymentQueueEngine(const PaymentQueueEngine&) = delete;
  PaymentQueueEngine& operator=(const PaymentQueueEngine&) = delete;

  /// Begins a new run on the store's ledger: forgets what is under way, and delivers to the
  /// observers everything that the ledger holds unfinished.
  void restart();

  void addObserver(SKPaymentTransactionObserver& observer);
  void removeObserver(SKPaymentTransactionObserver& observer) { observers_.remove(observer); }

  void add(const SKPayment& payment);
  void finish(const SKPaymentTransactionPtr& transaction);
  void restore(const std::optional<std::string>& applicationUsername);
  [[nodiscard]] SKPaymentTransactions transactions() const;

  [[nodiscard]] bool isObserved() const { return !observers_.isEmpty(); }
  /// Tells the observers now. Downloads have a queue of their own, `DownloadQueue`.
  void reportDownloads(const SKDownloads& downloads);

  /// Reports what other programs, or the store itself, have changed in the ledger since it was last
  /// looked at.
  void absorbChanges();
  /// The same, in a later turn.
  void absorbLater();
  /// Takes in changed settings now; observers hear of another storefront in a later turn.
  void absorbSettings();

 private:
  using Transactions = UnfinishedTransactions::List;

  // Runs `step` in a later turn, unless a new run has begun by then.
  void later(void (PaymentQueueEngine::*step)());
  [[nodiscard]] std::function<void()> inThisRun(void (PaymentQueueEngine::*step)());

  void loadUnfinished();
  void adoptOrphans();
  void deliverBacklog();
  void reportResumed();
  void beginPurchases();
  // Once the store has had its time to answer.
  void settleInTime(const Transactions& begun);
  void settlePurchases();
  void settleAgain();
  void settle(LedgerEntry entry, Sale& sale);
  void askApplication();
  [[nodiscard]] bool wantsPurchase(const LedgerEntry& entry, const SKProductPtr& product);
  void removeFinished();
  [[nodiscard]] Ledger::Failure commitFinished(LedgerEntries& entries);
  void answerRestore();
  void beginRestore();
  void endRestore();

  [[nodiscard]] LedgerEntries readChanges();
  void reportStorefront();
  void reportRefunds(const LedgerEntries& refunded);
  void reportUpdated(const Transactions& transactions);
  void reportRemoved(const Transactions& transactions);
  void report(const UnfinishedTransactions::Changes& changes);

  EmbeddedStore& store_;
  ObserverList observers_;
  UnfinishedTransactions unfinished_;
  std::vector<SKPayment::Values> addedPayments_;
  std::set<std::int64_t> answered_;  // purchases under way whose outcome is to be decided
  bool triesAgain_ = false;          // what the ledger has refused of them waits for another try
  std::map<std::int64_t, SKPaymentTransactionState> finishing_;  // as they were then
  std::deque<std::int64_t> asking_;  // begun in the store: applications are to be asked
  Transactions resumed_;             // begun in an earlier run, and not reported in this one yet
  std::deque<std::optional<std::string>> restoreRequests_;
  std::size_t restoresAnswered_ = 0;           // so many of them may begin
  std::optional<Ledger::Failure> restoreEnd_;  // how the restore under way is going to end
  bool backlogDelivered_ = false;
  std::int64_t mergedRevision_ = 0;  // how far the ledger's changes are known here
  std::int64_t lastUnrecorded_ = 0;  // transactions that the ledger refused count downwards
  std::uint64_t run_ = 0;
};

}  // namespace StoreKit
