// Another program with the shop of the tests on the ledger of its first argument. It answers each
// line of its standard input with a line: what a session can do (`approve 1`, `set NAME=VALUE`, ...)
// with "done" or the error; `add PRODUCT`, and `finish` for all that is in its queue, with "done";
// `heard` with everything that its observer was told since the last time.

#include <iostream>
#include <map>
#include <sstream>

#include "platform/embedded/store/EmbeddedStore.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/fakes/OpenShop.hpp"
#include "tests/fakes/StoreBooks.hpp"

namespace {

using StoreKit::StoreSession;
using ByNumber = StoreSession::Failure (StoreSession::*)(std::int64_t);
using ByProduct = StoreSession::Failure (StoreSession::*)(const std::string&);

class Neighbour {
 public:
  explicit Neighbour(std::unique_ptr<StoreKit::Ledger> ledger)
      : session_(tests::shop(), {}, std::move(ledger)) {
    observer_.onStorePayment = [](const auto&, const auto&) { return true; };
  }

  std::string answer(const std::string& order, const std::string& subject) {
    static const std::map<std::string, ByNumber> kByNumber = {
        {"approve", &StoreSession::approveAskToBuyTransaction},
        {"decline", &StoreSession::declineAskToBuyTransaction},
        {"resolve", &StoreSession::resolveIssueForTransaction},
        {"refund", &StoreSession::refundTransaction},
        {"delete", &StoreSession::deleteTransaction},
        {"disable", &StoreSession::disableAutoRenewForTransaction}};
    static const std::map<std::string, ByProduct> kByProduct = {
        {"buy", &StoreSession::buyProduct},
        {"begin", &StoreSession::beginStorePurchase},
        {"renew", &StoreSession::forceRenewalOfSubscription},
        {"expire", &StoreSession::expireSubscription}};
    if (const auto found = kByNumber.find(order); found != kByNumber.end()) {
      return tests::outcome((session_.*found->second)(std::stoll(subject)));
    }
    if (const auto found = kByProduct.find(order); found != kByProduct.end()) {
      return tests::outcome((session_.*found->second)(subject));
    }
    return other(order, subject);
  }

 private:
  std::string other(const std::string& order, const std::string& subject) {
    if (order == "clear") return tests::outcome(session_.clearTransactions());
    if (order == "set") {
      const auto equals = subject.find('=');
      return tests::outcome(session_.set(subject.substr(0, equals), subject.substr(equals + 1)));
    }
    if (order == "add") {
      tests::OpenShop::queue().addPayment(StoreKit::SKPayment({.productIdentifier = subject}));
      return "done";
    }
    if (order == "finish") {
      for (const auto& each : tests::OpenShop::queue().transactions()) {
        tests::OpenShop::queue().finishTransaction(each);
      }
      return "done";
    }
    if (order == "observe") return observe(subject);
    return heard();
  }

  // "observe hanging": the question whether a purchase is wanted is never answered.
  std::string observe(const std::string& manner) {
    if (manner == "hanging") {
      observer_.onStorePayment = [](const auto&, const auto&) {
        std::cout << "asking" << std::endl;
        for (std::string line; std::getline(std::cin, line);) {
        }
        return false;
      };
    }
    observer_.observe();
    (void)tests::turnUntilIdle();
    return "done";
  }

  std::string heard() {
    StoreKit::EmbeddedStore::current().queue().absorbChanges();
    (void)tests::turnUntilIdle();
    std::string all;
    for (const auto& line : observer_.journal()) all += (all.empty() ? "" : " | ") + line;
    observer_.forget();
    return all;
  }

  StoreSession session_;
  tests::JournalingObserver observer_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  auto opening = StoreKit::SqliteLedger::open(argv[1]);
  if (!opening.ledger) {
    std::cerr << opening.error << '\n';
    return 1;
  }
  Neighbour neighbour(std::move(opening.ledger));
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string order;
    std::string subject;
    words >> order >> subject;
    std::cout << neighbour.answer(order, subject) << std::endl;
  }
}
