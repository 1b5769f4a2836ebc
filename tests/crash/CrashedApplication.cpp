// An application that buys, finishes and restores without end, on the ledger of its first argument,
// as the seed of its second decides. It says on standard output what the payment queue tells it.

#include <unistd.h>

#include <cstdlib>
#include <random>
#include <vector>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/store/StoreSession.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/crash/Telling.hpp"
#include "tests/fakes/ShopConfigurations.hpp"

namespace {

using namespace TQStoreKitLib;
using State = StoreKit::SKPaymentTransactionState;

constexpr unsigned kLongestLife = 20;  // seconds, if nobody kills it

// One write a line: a pipe takes it whole or not at all.
void tell(const std::string& line) {
  const auto text = line + '\n';
  if (::write(STDOUT_FILENO, text.data(), text.size()) < 0) std::_Exit(3);
}

void tellMayFinish(std::int64_t number) { tell("may\t" + std::to_string(number)); }

std::int64_t numberOf(const TQPaymentTransaction& transaction) {
  return crash::numberOf(*platformTransaction(transaction));
}

// Hears of everything before the library does.
class Teller final : public StoreKit::SKPaymentTransactionObserver {
 public:
  bool restoresAtomically = false;

  void paymentQueueUpdatedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override {
    for (const auto& each : transactions) {
      const auto state = each->transactionState();
      const auto number = crash::numberOf(*each);
      tell("told\t" + std::to_string(number) + '\t' +
           std::to_string(static_cast<std::int64_t>(state)) + '\t' + crash::paymentOf(*each) +
           '\t' + crash::outcomeOf(*each));
      // The library finishes what has failed, and what it restores atomically.
      const bool libraryFinishes =
          state == State::failed || (state == State::restored && restoresAtomically);
      if (libraryFinishes) tellMayFinish(number);
    }
  }

  void paymentQueueRemovedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override {
    for (const auto& each : transactions) {
      tell("removed\t" + std::to_string(crash::numberOf(*each)));
    }
  }
};

class Application {
 public:
  Application(StoreKit::StoreSession& session, const char* seed)
      : session_(session), name_(seed), random_(std::strtoull(seed, nullptr, 10)) {
    StoreKit::SKPaymentQueue::defaultQueue().addTransactionObserver(teller_);
    TQStoreKit::completeTransactions({.atomically = false}, [this](const auto& purchases) {
      for (const auto& purchase : purchases) keep(purchase.transaction);
    });
    (void)Dispatch::MainLoop::drain();
    tell("delivered");
  }

  [[noreturn]] void run() {
    for (;;) {
      for (auto count = below(4); count > 0; --count) buy();
      if (oneIn(2)) finishOne();
      if (oneIn(400)) restore();
      for (auto turns = below(4); turns > 0; --turns) (void)Dispatch::MainLoop::drain();
    }
  }

 private:
  std::size_t below(std::size_t bound) { return random_() % bound; }
  bool oneIn(std::size_t count) { return below(count) == 0; }

  void buy() {
    static constexpr const char* kProducts[] = {"gems", "coins", "crown", "cape", "season"};
    const auto* const sold = session_.catalogue().find(kProducts[below(std::size(kProducts))]);
    if (oneIn(5))
      session_.failPurchases(oneIn(2) ? StoreKit::SKError::Code::paymentCancelled
                                      : StoreKit::SKError::Code::storeProductNotAvailable);
    TQProductPurchaseOptions options;
    options.quantity = static_cast<std::int64_t>(1 + below(11));  // 11 is refused
    options.atomically = oneIn(2);
    if (!oneIn(4)) options.applicationUsername = name_ + "." + std::to_string(++purchases_);
    TQStoreKit::purchaseProduct(sold->product, options,
                                [this, atomically = options.atomically](const auto& result) {
                                  const auto* details = result.asSuccess();
                                  if (!details) return;
                                  if (atomically)
                                    tellMayFinish(numberOf(*details->transaction));
                                  else
                                    keep(details->transaction);
                                });
  }

  void keep(const TQPaymentTransactionPtr& transaction) {
    if (transaction->transactionState() != State::failed) kept_.push_back(transaction);
  }

  void finishOne() {
    if (kept_.empty()) return;
    std::swap(kept_[below(kept_.size())], kept_.back());
    tellMayFinish(numberOf(*kept_.back()));
    TQStoreKit::finishTransaction(*kept_.back());
    if (!oneIn(4)) kept_.pop_back();  // else it is finished twice
  }

  void restore() {
    teller_.restoresAtomically = true;
    TQStoreKit::restorePurchases({.atomically = true}, [](const auto&) {});
  }

  StoreKit::StoreSession& session_;
  std::string name_;
  std::mt19937_64 random_;
  Teller teller_;
  std::vector<TQPaymentTransactionPtr> kept_;
  int purchases_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  ::alarm(kLongestLife);
  Foundation::setPrintHandler([](std::string_view) {});
  auto opening = StoreKit::SqliteLedger::open(argv[1]);
  if (!opening.ledger) {
    tell(opening.error);
    return 1;
  }
  StoreKit::StoreSession session(tests::shop(), {}, std::move(opening.ledger));
  tell("opened");
  Application(session, argv[2]).run();
}
