// A transaction's life: everything that can be done to it, in each of its states.

#include <map>

#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/SubscriptionShop.hpp"

namespace StoreKit {
namespace {

using tests::Journal;
using tests::kFastMonth;
using tests::outcome;
using tests::SubscriptionShop;
using tests::turn;
using tests::turnUntilIdle;

constexpr const char* kStates[] = {"purchasing",      "purchased",         "purchased finished",
                                   "refunded",        "refunded finished", "failed",
                                   "failed finished", "interrupted",       "interrupted finished",
                                   "resolved",        "restored",          "restored finished",
                                   "deferred",        "deferred finished", "deleted",
                                   "subscribed",      "not renewing",      "asked for consent",
                                   "retrying",        "renewed",           "expired"};

constexpr const char* kDeeds[] = {"approve",         "decline", "resolve",      "refund",
                                  "finish",          "delete",  "renew",        "do not renew",
                                  "ask for consent", "consent", "decline price"};

// What the books and the observers say after a deed that changes something.
struct Change {
  std::vector<std::string> books;
  Journal heard;
};

const std::map<std::pair<std::string, std::string>, Change> kChanges = {
    {{"purchasing", "delete"}, {{}, {"removed: gems purchasing"}}},
    {{"purchased", "refund"}, {{"gems purchased refunded"}, {"revoked: gems"}}},
    {{"purchased", "finish"}, {{"gems purchased finished"}, {"removed: gems purchased"}}},
    {{"purchased", "delete"}, {{}, {"removed: gems purchased"}}},
    {{"purchased finished", "refund"}, {{"gems purchased finished refunded"}, {"revoked: gems"}}},
    {{"purchased finished", "delete"}, {{}, {}}},
    {{"refunded", "finish"}, {{"gems purchased finished refunded"}, {"removed: gems purchased"}}},
    {{"refunded", "delete"}, {{}, {"removed: gems purchased"}}},
    {{"refunded finished", "delete"}, {{}, {}}},
    {{"failed", "finish"}, {{"gems failed finished"}, {"removed: gems failed"}}},
    {{"failed", "delete"}, {{}, {"removed: gems failed"}}},
    {{"failed finished", "delete"}, {{}, {}}},
    {{"interrupted", "resolve"}, {{"gems failed", "gems purchased"}, {"updated: gems purchased"}}},
    {{"interrupted", "finish"}, {{"gems failed finished issue"}, {"removed: gems failed"}}},
    {{"interrupted", "delete"}, {{}, {"removed: gems failed"}}},
    {{"interrupted finished", "resolve"},
     {{"gems failed finished", "gems purchased"}, {"updated: gems purchased"}}},
    {{"interrupted finished", "delete"}, {{}, {}}},
    {{"resolved", "finish"},
     {{"gems failed finished", "gems purchased"}, {"removed: gems failed"}}},
    {{"resolved", "delete"}, {{"gems purchased"}, {"removed: gems failed"}}},
    {{"restored", "finish"},
     {{"crown restored finished", "crown purchased finished"}, {"removed: crown restored"}}},
    {{"restored", "delete"}, {{"crown purchased finished"}, {"removed: crown restored"}}},
    {{"restored finished", "delete"}, {{"crown purchased finished"}, {}}},
    {{"deferred", "approve"}, {{"gems purchased"}, {"updated: gems purchased"}}},
    {{"deferred", "decline"}, {{"gems failed"}, {"updated: gems failed"}}},
    {{"deferred", "finish"}, {{"gems deferred finished"}, {"removed: gems deferred"}}},
    {{"deferred", "delete"}, {{}, {"removed: gems deferred"}}},
    {{"deferred finished", "approve"}, {{"gems purchased"}, {"updated: gems purchased"}}},
    {{"deferred finished", "decline"}, {{"gems failed"}, {"updated: gems failed"}}},
    {{"deferred finished", "delete"}, {{}, {}}},
    {{"subscribed", "refund"}, {{"monthly purchased refunded"}, {"revoked: monthly"}}},
    {{"subscribed", "finish"},
     {{"monthly purchased finished renews"}, {"removed: monthly purchased"}}},
    {{"subscribed", "delete"}, {{}, {"removed: monthly purchased"}}},
    {{"subscribed", "do not renew"}, {{"monthly purchased"}, {}}},
    {{"subscribed", "ask for consent"}, {{"monthly purchased renews asks"}, {}}},
    {{"not renewing", "refund"}, {{"monthly purchased refunded"}, {"revoked: monthly"}}},
    {{"not renewing", "finish"}, {{"monthly purchased finished"}, {"removed: monthly purchased"}}},
    {{"not renewing", "delete"}, {{}, {"removed: monthly purchased"}}},
    {{"not renewing", "renew"}, {{"monthly purchased renews"}, {}}},
    {{"not renewing", "ask for consent"}, {{"monthly purchased asks"}, {}}},
    {{"asked for consent", "refund"}, {{"monthly purchased refunded"}, {"revoked: monthly"}}},
    {{"asked for consent", "finish"},
     {{"monthly purchased finished renews asks"}, {"removed: monthly purchased"}}},
    {{"asked for consent", "delete"}, {{}, {"removed: monthly purchased"}}},
    {{"asked for consent", "do not renew"}, {{"monthly purchased asks"}, {}}},
    {{"asked for consent", "consent"}, {{"monthly purchased renews"}, {}}},
    {{"asked for consent", "decline price"}, {{"monthly purchased"}, {}}},
    {{"retrying", "resolve"},
     {{"monthly purchased", "monthly purchased renews"}, {"updated: monthly purchased"}}},
    {{"retrying", "refund"}, {{"monthly purchased refunded"}, {"revoked: monthly"}}},
    {{"retrying", "finish"},
     {{"monthly purchased finished issue renews"}, {"removed: monthly purchased"}}},
    {{"retrying", "delete"}, {{}, {"removed: monthly purchased"}}},
    {{"retrying", "do not renew"}, {{"monthly purchased issue"}, {}}},
    {{"retrying", "ask for consent"}, {{"monthly purchased issue renews asks"}, {}}},
    {{"renewed", "refund"},
     {{"monthly purchased refunded", "monthly purchased renews"}, {"revoked: monthly"}}},
    {{"renewed", "finish"},
     {{"monthly purchased finished", "monthly purchased renews"}, {"removed: monthly purchased"}}},
    {{"renewed", "delete"}, {{}, {"removed: monthly purchased, monthly purchased"}}},
    {{"renewed", "do not renew"}, {{"monthly purchased", "monthly purchased"}, {}}},
    {{"renewed", "ask for consent"}, {{"monthly purchased", "monthly purchased renews asks"}, {}}},
    {{"expired", "refund"}, {{"monthly purchased refunded"}, {"revoked: monthly"}}},
    {{"expired", "finish"}, {{"monthly purchased finished"}, {"removed: monthly purchased"}}},
    {{"expired", "delete"}, {{}, {"removed: monthly purchased"}}},
};

// What asks for something that is so already is done, and changes nothing.
const std::vector<std::pair<std::string, std::string>> kIdle = {
    {"subscribed", "renew"},        {"not renewing", "do not renew"},
    {"asked for consent", "renew"}, {"retrying", "renew"},
    {"renewed", "renew"},           {"asked for consent", "ask for consent"}};

class TransactionLife : public tests::ObservedShop<SubscriptionShop>,
                        public testing::WithParamInterface<std::tuple<const char*, const char*>> {
 protected:
  const std::string state = std::get<0>(GetParam());
  const std::string deed = std::get<1>(GetParam());
  std::int64_t subject = 1;
  SKPaymentTransactionPtr view;  // what the application holds of it

  [[nodiscard]] bool stateHas(const char* word) const {
    return state.find(word) != std::string::npos;
  }

  void arrange() {
    if (state == "purchasing") (void)shop.session.setAnswerDelay(1000);
    if (stateHas("deferred")) shop.session.setAskToBuyEnabled(true);
    if (stateHas("interrupted") || state == "resolved") {
      shop.session.setInterruptedPurchasesEnabled(true);
    }
    if (stateHas("failed")) shop.session.cancelPurchases();
    if (stateHas("restored")) return arrangeRestored();
    if (arrangeSubscription()) return;
    view = shop.buy("gems");
    if (state == "resolved") (void)shop.session.resolveIssueForTransaction(1);
    if (stateHas("refunded")) (void)shop.session.refundTransaction(1);
    if (stateHas("finished")) finish(view);
    if (state == "deleted") (void)shop.session.deleteTransaction(1);
  }
  void arrangeRestored() {
    shop.own("crown");
    (void)heardOfRestore();
    subject = 2;
    view = queue().transactions().at(0);
    if (stateHas("finished")) finish(view);
  }
  bool arrangeSubscription() {
    const std::vector<std::string> states = {"subscribed", "not renewing", "asked for consent",
                                             "retrying",   "renewed",      "expired"};
    if (std::find(states.begin(), states.end(), state) == states.end()) return false;
    view = shop.buy("monthly");
    if (state == "not renewing") (void)shop.session.disableAutoRenewForTransaction(1);
    if (state == "asked for consent")
      (void)shop.session.requestPriceIncreaseConsentForTransaction(1);
    if (state == "retrying") shop.session.setBillingRetryOnRenewalEnabled(true);
    if (state == "retrying" || state == "renewed") shop.wait(kFastMonth);
    if (state == "expired") (void)shop.session.expireSubscription("monthly");
    return true;
  }

  std::string act() {
    auto& session = shop.session;
    if (deed == "approve") return outcome(session.approveAskToBuyTransaction(subject));
    if (deed == "decline") return outcome(session.declineAskToBuyTransaction(subject));
    if (deed == "resolve") return outcome(session.resolveIssueForTransaction(subject));
    if (deed == "refund") return outcome(session.refundTransaction(subject));
    if (deed == "delete") return outcome(session.deleteTransaction(subject));
    if (deed == "renew") return outcome(session.enableAutoRenewForTransaction(subject));
    if (deed == "do not renew") return outcome(session.disableAutoRenewForTransaction(subject));
    if (deed == "ask for consent") {
      return outcome(session.requestPriceIncreaseConsentForTransaction(subject));
    }
    if (deed == "consent") return outcome(session.consentToPriceIncreaseForTransaction(subject));
    if (deed == "decline price") {
      return outcome(session.declinePriceIncreaseForTransaction(subject));
    }
    queue().finishTransaction(view);
    return tests::kDone;
  }

  // The subject first, then the others.
  std::vector<std::string> lines() {
    std::vector<std::string> lines;
    for (const auto& each : shop.session.allTransactions()) {
      auto line = each.productIdentifier + " " + tests::stateName(each.state);
      if (each.finished) line += " finished";
      if (each.cancelDate) line += " refunded";
      if (each.hasPurchaseIssue) line += " issue";
      if (each.autoRenewingEnabled) line += " renews";
      if (each.isPendingPriceIncreaseConsent) line += " asks";
      lines.insert(each.identifier == subject ? lines.begin() : lines.end(), line);
    }
    return lines;
  }

  [[nodiscard]] std::string refusal() const {
    if (deed == "finish") return tests::kDone;  // it has no answer; it is harmless
    if (state == "deleted") return tests::kNoTransaction;
    const bool running = state == "subscribed" || state == "not renewing" ||
                         state == "asked for consent" || state == "retrying" || state == "renewed";
    const bool aboutSubscriptions = deed == "renew" || deed == "do not renew" ||
                                    deed == "ask for consent" || deed == "consent" ||
                                    deed == "decline price";
    return aboutSubscriptions && !running ? tests::kNoSubscription : tests::kInvalidAction;
  }
};

TEST_P(TransactionLife, ALegalDeedChangesWhatItSaysAndAnIllegalOneNothing) {
  tests::CapturedError error;  // finishing a purchasing one says something
  arrange();
  (void)turnUntilIdle();
  observer.forget();
  const auto before = lines();

  const auto answer = act();
  (void)turnUntilIdle();

  const auto legal = kChanges.find({state, deed});
  const bool idle = std::find(kIdle.begin(), kIdle.end(), std::pair(state, deed)) != kIdle.end();
  EXPECT_EQ(answer, legal != kChanges.end() || idle ? tests::kDone : refusal());
  EXPECT_EQ(lines(), legal != kChanges.end() ? legal->second.books : before);
  EXPECT_EQ(observer.journal(), legal != kChanges.end() ? legal->second.heard : Journal());
}

std::string sentence(const testing::TestParamInfo<TransactionLife::ParamType>& info) {
  auto name = std::string(std::get<0>(info.param)) + "_" + std::get<1>(info.param);
  std::erase(name, ' ');
  return name;
}

INSTANTIATE_TEST_SUITE_P(EveryDeedInEveryState, TransactionLife,
                         testing::Combine(testing::ValuesIn(kStates), testing::ValuesIn(kDeeds)),
                         sentence);

}  // namespace
}  // namespace StoreKit
