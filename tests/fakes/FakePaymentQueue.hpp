#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TQStoreKitLib/transactions/TQPaymentQueue.hpp"
#include "tests/fakes/Journal.hpp"

namespace TQStoreKitLib::tests {

/// A payment queue that writes down what is asked of it and does nothing else.
class FakePaymentQueue final : public TQPaymentQueue {
 public:
  explicit FakePaymentQueue(JournalPtr sharedJournal = aJournal())
      : journal(std::move(sharedJournal)) {}

  JournalPtr journal;
  std::vector<StoreKit::SKPaymentTransactionObserver*> observers{};
  std::vector<StoreKit::SKPayment> payments{};
  std::vector<StoreKit::SKPaymentTransactionPtr> finished{};
  std::vector<std::optional<std::string>> restoreUsernames{};
  StoreKit::SKDownloads downloads{};
  /// Run while a call is under way, to look at what is true at that moment.
  std::function<void()> whileAdding{};
  std::function<void()> whileRestoring{};
  std::function<void()> whileFinishing{};

  void add(StoreKit::SKPaymentTransactionObserver& observer) override {
    journal->emplace_back("add observer");
    observers.push_back(&observer);
  }
  void remove(StoreKit::SKPaymentTransactionObserver& observer) override {
    journal->emplace_back("remove observer");
    std::erase(observers, &observer);
  }
  void add(const StoreKit::SKPayment& payment) override {
    journal->push_back("add " + payment.productIdentifier());
    payments.push_back(payment);
    if (whileAdding) whileAdding();
  }
  void start(const StoreKit::SKDownloads& all) override { control("start", all); }
  void pause(const StoreKit::SKDownloads& all) override { control("pause", all); }
  void resume(const StoreKit::SKDownloads& all) override { control("resume", all); }
  void cancel(const StoreKit::SKDownloads& all) override { control("cancel", all); }
  void restoreCompletedTransactions(const std::optional<std::string>& name) override {
    journal->emplace_back("restore");
    restoreUsernames.push_back(name);
    if (whileRestoring) whileRestoring();
  }
  void finishTransaction(const StoreKit::SKPaymentTransactionPtr& transaction) override {
    journal->push_back("finish " + transaction->payment()->productIdentifier());
    finished.push_back(transaction);
    if (whileFinishing) whileFinishing();
  }

 private:
  void control(const std::string& what, const StoreKit::SKDownloads& all) {
    journal->push_back(what + " downloads");
    downloads = all;
  }
};

}  // namespace TQStoreKitLib::tests
