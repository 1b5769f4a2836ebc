#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/StoreKit/SKPaymentQueue.hpp"

namespace tests {

/// What happened, one line each, in order; several doubles may write into one.
using Journal = std::vector<std::string>;

/// "gems purchased, crown failed".
inline std::string describe(const StoreKit::SKPaymentTransactions& transactions) {
  static constexpr const char* kStates[] = {"purchasing", "purchased", "failed", "restored",
                                            "deferred"};
  std::string text;
  for (const auto& transaction : transactions) {
    text += text.empty() ? "" : ", ";
    text += transaction->payment()->productIdentifier() + " " +
            kStates[static_cast<std::size_t>(transaction->transactionState())];
  }
  return text;
}

/// Writes what the payment queue tells it into a journal, keeps the transactions, then runs the
/// hook of that message. A hook may destroy the observer: nothing of it is touched afterwards.
class JournalingObserver final : public StoreKit::SKPaymentTransactionObserver {
 public:
  explicit JournalingObserver(std::shared_ptr<Journal> journal = std::make_shared<Journal>(),
                              std::string name = "")
      : journal_(std::move(journal)), name_(std::move(name)) {}
  ~JournalingObserver() override { stop(); }

  void observe() { StoreKit::SKPaymentQueue::defaultQueue().addTransactionObserver(*this); }
  void stop() { StoreKit::SKPaymentQueue::defaultQueue().removeTransactionObserver(*this); }

  [[nodiscard]] const Journal& journal() const { return *journal_; }
  void forget() {
    journal_->clear();
    seen.clear();
  }

  /// Every transaction of every update, in order.
  StoreKit::SKPaymentTransactions seen;
  StoreKit::SKPaymentTransactions removed;
  std::vector<Foundation::NSError> restoreErrors;

  std::function<void(const StoreKit::SKPaymentTransactions&)> onUpdated;
  std::function<void()> onRemoved;
  std::function<void()> onRestoreFinished;
  std::function<void()> onRestoreFailed;
  /// Answers whether a purchase that was begun in the store is wanted; without it, none is.
  std::function<bool(const StoreKit::SKPaymentPtr&, const StoreKit::SKProductPtr&)> onStorePayment;
  std::function<void()> onStorefrontChanged;
  std::function<void()> onRevoked;

  void paymentQueueUpdatedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override {
    write("updated: " + describe(transactions));
    seen.insert(seen.end(), transactions.begin(), transactions.end());
    if (const auto hook = onUpdated) hook(transactions);
  }
  void paymentQueueRemovedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override {
    write("removed: " + describe(transactions));
    removed.insert(removed.end(), transactions.begin(), transactions.end());
    if (const auto hook = onRemoved) hook();
  }
  void paymentQueueRestoreCompletedTransactionsFailedWithError(
      const Foundation::NSError& error) override {
    write("restore failed: " + error.localizedDescription());
    restoreErrors.push_back(error);
    if (const auto hook = onRestoreFailed) hook();
  }
  void paymentQueueRestoreCompletedTransactionsFinished() override {
    write("restore finished");
    if (const auto hook = onRestoreFinished) hook();
  }
  bool paymentQueueShouldAddStorePayment(const StoreKit::SKPaymentPtr& payment,
                                         const StoreKit::SKProductPtr& product) override {
    write("asked: " + product->productIdentifier());
    const auto hook = onStorePayment;
    return hook && hook(payment, product);
  }
  void paymentQueueDidChangeStorefront() override {
    write("storefront changed");
    if (const auto hook = onStorefrontChanged) hook();
  }
  void paymentQueueDidRevokeEntitlements(const std::vector<std::string>& products) override {
    std::string line = "revoked:";
    for (const auto& product : products) line += " " + product;
    write(line);
    if (const auto hook = onRevoked) hook();
  }

 private:
  void write(const std::string& line) {
    journal_->push_back(name_.empty() ? line : name_ + " " + line);
  }

  std::shared_ptr<Journal> journal_;
  std::string name_;
};

}  // namespace tests
