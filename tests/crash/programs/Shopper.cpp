#include "tests/crash/programs/Shopper.hpp"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tests/crash/Telling.hpp"

namespace crash {

namespace {

using StoreKit::SKPaymentTransactions;
using State = StoreKit::SKPaymentTransactionState;
using Code = StoreKit::SKError::Code;

std::string toldLine(const StoreKit::SKPaymentTransaction& transaction) {
  const auto state = static_cast<std::int64_t>(transaction.transactionState());
  return "told\t" + std::to_string(numberOf(transaction)) + '\t' + std::to_string(state) + '\t' +
         paymentOf(transaction) + '\t' + outcomeOf(transaction);
}

bool isUnderWay(const StoreKit::SKPaymentTransactionPtr& transaction) {
  return transaction->transactionState() == State::purchasing;
}

}  // namespace

void Teller::operator()(const std::string& line) const {
  const auto text = name_ + '\t' + line + '\n';
  if (::write(STDOUT_FILENO, text.data(), text.size()) < 0) std::_Exit(3);
}

void Witness::paymentQueueUpdatedTransactions(const SKPaymentTransactions& transactions) {
  for (const auto& each : transactions) {
    tell_(toldLine(*each));
    if (each->transactionState() != State::purchased) continue;
    purchases_.push_back({numberOf(*each), each->payment()->productIdentifier()});
  }
}

void Witness::paymentQueueRemovedTransactions(const SKPaymentTransactions& transactions) {
  for (const auto& each : transactions) tell_("removed\t" + std::to_string(numberOf(*each)));
}

void Witness::paymentQueueDidRevokeEntitlements(const std::vector<std::string>& products) {
  for (const auto& product : products) tell_("revoked\t" + product);
}

Shopper::Shopper(StoreKit::StoreSession& session, std::string name, std::uint64_t seed)
    : session_(session), name_(std::move(name)), tell_(name_), witness_(tell_), random_(seed) {
  tell_("opened");
  queue().addTransactionObserver(witness_);
  (void)Dispatch::MainLoop::drain();
  tell_("delivered");
}

void Shopper::shop() {
  for (;;) {
    for (auto count = below(3); count > 0; --count) buy();
    for (auto count = below(4); count > 0; --count) settleOne();
    if (oneIn(20)) refundOne();
    if (oneIn(20)) (void)done(session_.expireSubscription("club"));
    if (oneIn(200)) queue().restoreCompletedTransactions(std::nullopt);
    if (oneIn(5)) session_.clockDidChange();
    for (auto turns = below(4); turns > 0; --turns) (void)Dispatch::MainLoop::drain();
  }
}

void Shopper::carryOn() {
  const auto anythingUnderWay = [] {
    const auto all = queue().transactions();
    return std::any_of(all.begin(), all.end(), isUnderWay);
  };
  while (Dispatch::MainLoop::drain() > 0 || anythingUnderWay()) {
    Dispatch::MainLoop::runFor(std::chrono::milliseconds(1));
  }
  tell_("quiet");
}

void Shopper::buy() {
  static constexpr const char* kProducts[] = {"gems", "coins", "crown", "cape", "season", "club"};
  if (oneIn(6)) session_.failPurchases(oneIn(2) ? Code::paymentCancelled : Code::unknown);
  StoreKit::SKPayment::Values payment;
  payment.productIdentifier = kProducts[below(std::size(kProducts))];
  payment.quantity = static_cast<std::int64_t>(1 + below(11));  // 11 is refused
  payment.simulatesAskToBuyInSandbox = oneIn(6);
  if (!oneIn(8)) payment.applicationUsername = name_ + "." + std::to_string(++purchases_);
  queue().addPayment(StoreKit::SKPayment(payment));
}

// Finishes one, or approves or declines it first.
void Shopper::settleOne() {
  const auto all = queue().transactions();
  if (all.empty()) return;
  const auto& one = all[below(all.size())];
  const auto number = numberOf(*one);
  if (one->transactionState() == State::deferred) {
    (void)done(oneIn(3) ? session_.declineAskToBuyTransaction(number)
                        : session_.approveAskToBuyTransaction(number));
  } else if (!isUnderWay(one)) {
    tell_("may\t" + std::to_string(number));
    queue().finishTransaction(one);
  }
}

void Shopper::refundOne() {
  if (witness_.purchases().empty()) return;
  const auto one = witness_.purchases()[below(witness_.purchases().size())];
  tell_("refunding\t" + one.product);
  if (done(session_.refundTransaction(one.number))) tell_("refunded\t" + one.product);
}

// Another program may have been faster, and a subscription is not always running.
bool Shopper::done(const StoreKit::StoreSession::Failure& failure) {
  using Error = StoreKit::StoreSessionError;
  if (!failure) return true;
  const auto is = [&](Error error) { return failure->code() == static_cast<std::int64_t>(error); };
  const bool tooLate = failure->domain() == StoreKit::kStoreSessionErrorDomain &&
                       (is(Error::invalidAction) || is(Error::noSubscriptionFound));
  if (!tooLate) tell_("refused\t" + failure->localizedDescription());
  return false;
}

}  // namespace crash
