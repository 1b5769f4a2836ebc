#include "TQStoreKitLib/transactions/TQPaymentQueue.hpp"

namespace TQStoreKitLib {

namespace {

class PlatformPaymentQueue final : public TQPaymentQueue {
 public:
  explicit PlatformPaymentQueue(StoreKit::SKPaymentQueue& queue) : queue_(queue) {}

  void add(StoreKit::SKPaymentTransactionObserver& observer) override {
    queue_.addTransactionObserver(observer);
  }
  void remove(StoreKit::SKPaymentTransactionObserver& observer) override {
    queue_.removeTransactionObserver(observer);
  }
  void add(const StoreKit::SKPayment& payment) override { queue_.addPayment(payment); }
  void start(const StoreKit::SKDownloads& downloads) override { queue_.startDownloads(downloads); }
  void pause(const StoreKit::SKDownloads& downloads) override { queue_.pauseDownloads(downloads); }
  void resume(const StoreKit::SKDownloads& downloads) override {
    queue_.resumeDownloads(downloads);
  }
  void cancel(const StoreKit::SKDownloads& downloads) override {
    queue_.cancelDownloads(downloads);
  }
  void restoreCompletedTransactions(
      const std::optional<std::string>& withApplicationUsername) override {
    queue_.restoreCompletedTransactions(withApplicationUsername);
  }
  void finishTransaction(const StoreKit::SKPaymentTransactionPtr& transaction) override {
    queue_.finishTransaction(transaction);
  }

 private:
  StoreKit::SKPaymentQueue& queue_;
};

}  // namespace

TQPaymentQueue& platformPaymentQueue() {
  static auto& queue = *new PlatformPaymentQueue(StoreKit::SKPaymentQueue::defaultQueue());
  return queue;
}

}  // namespace TQStoreKitLib
