#include "platform/embedded/store/downloads/DownloadQueue.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"

namespace StoreKit {

namespace {

// Seconds between two reports of a download that has a speed.
constexpr double kPause = 0.1;

bool bringsDownloads(const LedgerEntry& entry) {
  return !entry.finished && (entry.state == SKPaymentTransactionState::purchased ||
                             entry.state == SKPaymentTransactionState::restored);
}

}  // namespace

void DownloadQueue::moveTo(DownloadPlace place) { std::exchange(place_, std::move(place)).end(); }

void DownloadQueue::restart() {
  ++run_;
  for (const auto& [transaction, download] : std::exchange(downloads_, {})) download->interrupt();
  requests_.clear();
  discarded_.clear();
  advances_ = false;
  ++advance_;
  sweep();
}

void DownloadQueue::sweep() { place_.sweep(store_.ledger()); }

SKDownloads DownloadQueue::attach(const std::shared_ptr<const LedgerTransaction>& transaction) {
  const auto& entry = transaction->entry();
  const auto& contents = store_.settings().hostedContent;
  const auto hosted = contents.find(entry.payment.productIdentifier);
  if (!bringsDownloads(entry) || hosted == contents.end() || hosted->second.folder.empty()) {
    return {};
  }
  const auto* const sold = store_.catalogue().find(hosted->first);
  const auto length = sold ? sold->product->downloadContentLengths().at(0) : 0;
  auto download = std::make_shared<HostedDownload>(transaction, hosted->second, length);
  downloads_[entry.identifier] = download;
  return {download};
}

void DownloadQueue::detach(const std::vector<std::int64_t>& transactions) {
  for (const auto number : transactions) {
    const auto found = downloads_.extract(number);
    if (!found || !found.mapped()->discard()) continue;
    discarded_.push_back(found.mapped());
    if (discarded_.size() == 1) later(&DownloadQueue::reportDiscarded);
  }
  place_.remove(transactions);
}

void DownloadQueue::ask(Action action, const SKDownloads& downloads) {
  Request request{.action = action, .transactions = {}};
  for (const auto& download : downloads) {
    const auto* ours = dynamic_cast<const HostedDownload*>(download.get());
    if (ours == nullptr || ours->ledger() != store_.openings()) continue;
    request.transactions.push_back(ours->transactionNumber());
  }
  if (request.transactions.empty()) return;
  requests_.push_back(std::move(request));
  later(&DownloadQueue::answer);
}

bool DownloadQueue::startOne(HostedDownload& download) {
  if (!download.canStart()) return false;
  [[maybe_unused]] static const int registered =
      std::atexit([] { EmbeddedStore::unopened().downloads().moveTo({}); });
  download.start(store_.now(), place_.folderOf(download.transactionNumber()),
                 store_.scenario().downloads.take());
  return true;
}

bool DownloadQueue::resumeOne(HostedDownload& download) { return download.resume(store_.now()); }

void DownloadQueue::later(void (DownloadQueue::*step)()) {
  Dispatch::mainQueue().async([this, run = run_, step] {
    if (run == run_) (this->*step)();
  });
}

void DownloadQueue::answer() {
  if (requests_.empty() || !isObserved()) return;
  const auto request = std::move(requests_.front());
  requests_.pop_front();
  SKDownloads changed;
  for (const auto transaction : request.transactions) {
    const auto found = downloads_.find(transaction);
    if (found == downloads_.end() || !(this->*request.action)(*found->second)) continue;
    changed.push_back(found->second);
  }
  setAdvance();
  report(changed);
}

bool DownloadQueue::hasActive() const {
  return std::any_of(downloads_.begin(), downloads_.end(),
                     [](const auto& each) { return each.second->isActive(); });
}

void DownloadQueue::setAdvance() {
  if (advances_ || !hasActive()) return;
  advances_ = true;
  auto inATurn = [this, number = ++advance_] {
    Dispatch::mainQueue().async([this, number] {
      if (number == advance_) advance();
    });
  };
  const int speed = store_.settings().downloadSpeed;
  if (speed == 0) return inATurn();
  const double pause = std::max(kPause, 1.0 / speed);
  const double moment = store_.now().timeIntervalSince1970() + pause;
  store_.schedule().add(Foundation::Date::sinceEpoch(moment), std::move(inATurn));
  store_.setAlarm();
}

void DownloadQueue::advance() {
  advances_ = false;
  if (!isObserved()) return;
  const auto now = store_.now();
  SKDownloads changed;
  for (const auto& [transaction, download] : downloads_) {
    if (download->advance(now, store_.settings().downloadSpeed)) changed.push_back(download);
  }
  setAdvance();
  report(changed);
}

void DownloadQueue::reportDiscarded() {
  if (isObserved()) report(std::exchange(discarded_, {}));
}

void DownloadQueue::carryOn() {
  later(&DownloadQueue::reportDiscarded);
  for (std::size_t count = requests_.size(); count > 0; --count) later(&DownloadQueue::answer);
  setAdvance();
}

void DownloadQueue::speedDidChange() {
  const auto now = store_.now();
  for (const auto& [transaction, download] : downloads_) {
    if (download->isActive()) download->changePace(now);
  }
  advances_ = false;
  setAdvance();
}

bool DownloadQueue::isObserved() const { return listener_ || store_.queue().isObserved(); }

void DownloadQueue::listen(Listener listener) {
  listener_.swap(listener);
  if (listener_) carryOn();
}

void DownloadQueue::report(const SKDownloads& changed) {
  if (changed.empty()) return;
  store_.queue().reportDownloads(changed);
  if (const auto listener = listener_) listener(changed);
}

}  // namespace StoreKit
