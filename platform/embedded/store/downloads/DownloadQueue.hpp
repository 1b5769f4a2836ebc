#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/StoreKit/SKDownload.hpp"
#include "platform/embedded/store/LedgerTransaction.hpp"
#include "platform/embedded/store/downloads/DownloadPlace.hpp"
#include "platform/embedded/store/downloads/HostedDownload.hpp"

namespace StoreKit {

class EmbeddedStore;

/// The downloads of the transactions in the payment queue.
///
/// Like the queue, it does everything in later turns of the main queue: first what was asked for,
/// one request after another; then each active download takes in a piece, in every turn, or when
/// the store's clock says so. All that changed in a turn is reported at once. While the payment
/// queue has no observer, everything waits.
/// Thread: main.
class DownloadQueue {
 public:
  explicit DownloadQueue(EmbeddedStore& store) : store_(store) {}
  DownloadQueue(const DownloadQueue&) = delete;
  DownloadQueue& operator=(const DownloadQueue&) = delete;

  /// Another ledger, or another place for its downloads: from now on they arrive there. What
  /// belonged to a ledger that ends with the process is removed.
  void moveTo(DownloadPlace place);

  /// Begins a new run: what is under way is given up, and what belongs to transactions that are
  /// finished is removed.
  void restart();

  /// The downloads of a transaction that has become one of the queue's; none when nothing is hosted
  /// for it.
  [[nodiscard]] SKDownloads attach(const std::shared_ptr<const LedgerTransaction>& transaction);

  /// The transactions have left the queue: their content is removed.
  void detach(const std::vector<std::int64_t>& transactions);

  /// What belongs to somebody else is ignored.
  void start(const SKDownloads& downloads) { ask(&DownloadQueue::startOne, downloads); }
  void pause(const SKDownloads& downloads) { ask(&DownloadQueue::pauseOne, downloads); }
  void resume(const SKDownloads& downloads) { ask(&DownloadQueue::resumeOne, downloads); }
  void cancel(const SKDownloads& downloads) { ask(&DownloadQueue::cancelOne, downloads); }

  /// `listener` hears what observers hear, behind them, and is one: with it downloads go on though
  /// nobody observes the payment queue. For a tool that wants nothing of the queue but these. An
  /// empty one: nobody listens any more.
  using Listener = std::function<void(const SKDownloads&)>;
  void listen(Listener listener);

  /// The payment queue has an observer again.
  void carryOn();

  /// Bytes come at another speed from now on.
  void speedDidChange();

  /// Removes content of transactions that this or another program has finished.
  void sweep();

 private:
  using Pointer = std::shared_ptr<HostedDownload>;
  using Action = bool (DownloadQueue::*)(HostedDownload&);
  struct Request {
    Action action;
    std::vector<std::int64_t> transactions;
  };

  void ask(Action action, const SKDownloads& downloads);
  bool startOne(HostedDownload& download);
  bool pauseOne(HostedDownload& download) { return download.pause(); }
  bool resumeOne(HostedDownload& download);
  bool cancelOne(HostedDownload& download) { return download.cancel(); }

  // Runs `step` in a later turn, unless a new run has begun by then.
  void later(void (DownloadQueue::*step)());
  void answer();
  // Sees to it that active ones advance, unless that is on its way.
  void setAdvance();
  void advance();
  void reportDiscarded();

  [[nodiscard]] bool hasActive() const;
  [[nodiscard]] bool isObserved() const;
  void report(const SKDownloads& changed);

  EmbeddedStore& store_;
  DownloadPlace place_{};
  std::map<std::int64_t, Pointer> downloads_{};  // by their transactions
  std::deque<Request> requests_{};
  Listener listener_{};
  SKDownloads discarded_{};  // cancelled with their transactions, and not reported yet
  std::uint64_t run_ = 0;
  bool advances_ = false;      // an advance is on its way:
  std::uint64_t advance_ = 0;  // the one with this number
};

}  // namespace StoreKit
