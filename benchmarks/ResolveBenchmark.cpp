// Resolving a purchased transaction while 1, 5 or 20 purchases wait, beside the loop that an
// application without the library would write: scan a list, call the callback, finish, erase.
// Both build the same result for the same callback. The resolved purchase is the last in the list
// and is added again, so that each round finds the same state.

#include <benchmark/benchmark.h>

#include <algorithm>

#include "TQStoreKitLib/transactions/TQPaymentsController.hpp"

namespace {

using namespace TQStoreKitLib;
using namespace StoreKit;

class PurchasedTransaction final : public SKPaymentTransaction {
 public:
  explicit PurchasedTransaction(const SKProductPtr& product)
      : payment_(std::make_shared<const SKMutablePayment>(product)) {}
  SKPaymentPtr payment() const override { return payment_; }
  SKPaymentTransactionState transactionState() const override {
    return SKPaymentTransactionState::purchased;
  }
  std::optional<std::string> transactionIdentifier() const override { return "1"; }
  std::optional<Foundation::Date> transactionDate() const override { return Foundation::Date(); }
  std::optional<Foundation::NSError> error() const override { return std::nullopt; }
  SKPaymentTransactionPtr originalTransaction() const override { return nullptr; }
  SKDownloads downloads() const override { return {}; }

 private:
  SKPaymentPtr payment_;
};

class IdleQueue final : public TQPaymentQueue {
 public:
  void add(SKPaymentTransactionObserver&) override {}
  void remove(SKPaymentTransactionObserver&) override {}
  void add(const SKPayment&) override {}
  void start(const SKDownloads&) override {}
  void pause(const SKDownloads&) override {}
  void resume(const SKDownloads&) override {}
  void cancel(const SKDownloads&) override {}
  void restoreCompletedTransactions(const std::optional<std::string>&) override {}
  void finishTransaction(const SKPaymentTransactionPtr& transaction) override {
    benchmark::DoNotOptimize(transaction.get());
  }
};

std::vector<TQPayment> waitingPayments(std::int64_t count) {
  std::vector<TQPayment> payments;
  for (std::int64_t i = 0; i < count; ++i) {
    SKProduct::Values values;
    values.productIdentifier = "com.example.game.product." + std::to_string(i);
    payments.push_back({.product = std::make_shared<const SKProduct>(values),
                        .callback = [](const TQTransactionResult& result) {
                          benchmark::DoNotOptimize(result.asPurchased()->quantity);
                        }});
  }
  return payments;
}

void resolveOurs(benchmark::State& state) {
  const auto payments = waitingPayments(state.range(0));
  const SKPaymentTransactions batch = {
      std::make_shared<const PurchasedTransaction>(payments.back().product)};
  IdleQueue queue;
  const auto controller = std::make_shared<TQPaymentsController>();
  for (const auto& payment : payments) controller->append(payment);
  for (auto _ : state) {
    benchmark::DoNotOptimize(controller->processTransactions(batch, queue).size());
    controller->append(payments.back());
  }
}

TQTransactionResult bareResult(const TQPayment& payment,
                               const SKPaymentTransactionPtr& transaction) {
  const auto sold = transaction->payment();
  return TQTransactionResult::purchased(
      {.productId = sold->productIdentifier(),
       .quantity = sold->quantity(),
       .product = payment.product,
       .transaction = paymentTransaction(transaction),
       .originalTransaction = paymentTransaction(transaction->originalTransaction()),
       .needsFinishTransaction = !payment.atomically});
}

void resolveBare(benchmark::State& state) {
  auto payments = waitingPayments(state.range(0));
  const auto last = payments.back();
  const SKPaymentTransactions batch = {std::make_shared<const PurchasedTransaction>(last.product)};
  IdleQueue queue;
  for (auto _ : state) {
    for (const auto& transaction : batch) {
      const auto productId = transaction->payment()->productIdentifier();
      const auto found =
          std::find_if(payments.begin(), payments.end(), [&](const TQPayment& payment) {
            return payment.product->productIdentifier() == productId;
          });
      if (found == payments.end()) continue;
      found->callback(bareResult(*found, transaction));
      if (found->atomically) queue.finishTransaction(transaction);
      payments.erase(found);
    }
    payments.push_back(last);
  }
}

BENCHMARK(resolveOurs)->Name("resolve a transaction/ours")->Arg(1)->Arg(5)->Arg(20);
BENCHMARK(resolveBare)->Name("resolve a transaction/bare")->Arg(1)->Arg(5)->Arg(20);

}  // namespace
