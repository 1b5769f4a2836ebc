// A purchase that survives a power cut, from its begin to its finish, beside one transaction of
// SQLite with full synchronisation; several purchases in one turn of the main queue, beside as many
// one after another; and opening a ledger with a long past, beside an empty one.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>

#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/store/StoreSession.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"

namespace {

using namespace StoreKit;

constexpr int kFinished = 100'000;

class Folder {
 public:
  Folder() {
    auto name = (std::filesystem::temp_directory_path() / "tqstorekit-bench-XXXXXX").string();
    path_ = ::mkdtemp(name.data());
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  [[nodiscard]] std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

void turnUntilIdle() {
  while (Dispatch::MainLoop::drain() > 0) {
  }
}

// An application that is handed what it bought, and finishes it.
class Shop : SKPaymentTransactionObserver {
 public:
  explicit Shop(const Folder& folder)
      : session_(configuration(), {}, SqliteLedger::open(folder.file("shop.ledger")).ledger) {
    queue().addTransactionObserver(*this);
    turnUntilIdle();
  }
  ~Shop() override { queue().removeTransactionObserver(*this); }

  static void buy(std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
      queue().addPayment(SKPayment({.productIdentifier = "gems"}));
    }
    turnUntilIdle();
  }

 private:
  static SKPaymentQueue& queue() { return SKPaymentQueue::defaultQueue(); }
  static StoreConfiguration configuration() {
    StoreConfiguration configuration;
    configuration.products.push_back({.productID = "gems"});
    return configuration;
  }

  void paymentQueueUpdatedTransactions(const SKPaymentTransactions& transactions) override {
    for (const auto& transaction : transactions) {
      if (transaction->transactionState() == SKPaymentTransactionState::purchased) {
        queue().finishTransaction(transaction);
      }
    }
  }

  StoreSession session_;
};

void buyInOneTurn(benchmark::State& state) {
  const Folder folder;
  const Shop shop(folder);
  for (auto _ : state) Shop::buy(state.range(0));
}

void buyOneByOne(benchmark::State& state) {
  const Folder folder;
  const Shop shop(folder);
  for (auto _ : state) {
    for (std::int64_t i = 0; i < state.range(0); ++i) Shop::buy(1);
  }
}

void commitBare(benchmark::State& state) {
  const Folder folder;
  sqlite3* database = nullptr;
  sqlite3_open(folder.file("bare.sqlite").c_str(), &database);
  const auto execute = [&](const char* sql) {
    sqlite3_exec(database, sql, nullptr, nullptr, nullptr);
  };
  execute("PRAGMA journal_mode = WAL");
  execute("PRAGMA synchronous = FULL");
  execute("CREATE TABLE purchases(id INTEGER PRIMARY KEY, product TEXT, date REAL)");
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(database, "INSERT INTO purchases VALUES(NULL, 'gems', 1.0)", -1, &insert,
                     nullptr);
  for (auto _ : state) {
    sqlite3_step(insert);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  sqlite3_close(database);
}

void open(benchmark::State& state, int finished) {
  const Folder folder;
  const auto path = folder.file("shop.ledger");
  const LedgerEntry past{.state = SKPaymentTransactionState::purchased,
                         .finished = true,
                         .payment = {.productIdentifier = "gems"},
                         .transactionIdentifier = "2000000001",
                         .transactionDate = Foundation::Date::now()};
  LedgerEntries entries(static_cast<std::size_t>(finished), past);
  const auto error = SqliteLedger::open(path).ledger->add(entries, Ledger::Durability::powerCut);
  if (error) return state.SkipWithError("the ledger refused its past");
  for (auto _ : state) {
    const auto opening = SqliteLedger::open(path);
    benchmark::DoNotOptimize(opening.ledger->unfinished());
  }
}
void openLong(benchmark::State& state) { open(state, kFinished); }
void openEmpty(benchmark::State& state) { open(state, 0); }

BENCHMARK(buyInOneTurn)->Name("durable purchase/ours")->Arg(1)->UseRealTime();
BENCHMARK(commitBare)->Name("durable purchase/bare")->Arg(1)->UseRealTime();
BENCHMARK(buyInOneTurn)->Name("purchases in one turn/ours")->Arg(10)->Arg(100)->UseRealTime();
BENCHMARK(buyOneByOne)->Name("purchases in one turn/bare")->Arg(10)->Arg(100)->UseRealTime();
BENCHMARK(openLong)->Name("opening 100,000 finished/ours")->UseRealTime();
BENCHMARK(openEmpty)->Name("opening 100,000 finished/bare")->UseRealTime();

}  // namespace
