// Somebody else changes the ledger between a look and a commit, or it refuses the commit.

#include "platform/embedded/store/EmbeddedStore.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::books;
using tests::OpenShop;
using tests::outcome;
using tests::turn;
using tests::turnUntilIdle;
using State = SKPaymentTransactionState;

// 1: crown, finished. 2: cape, deferred. 3: gems, interrupted. 4: club, running.
class ServerOperation : public tests::ObservedShop<OpenShop>,
                        public testing::WithParamInterface<const char*> {
 protected:
  ServerOperation() {
    shop.own("crown");
    shop.session.setAskToBuyEnabled(true);
    shop.buy("cape");
    shop.session.setAskToBuyEnabled(false);
    shop.session.setInterruptedPurchasesEnabled(true);
    shop.buy("gems");
    shop.session.setInterruptedPurchasesEnabled(false);
    shop.own("club");
    observer.forget();
  }

  StoreSession::Failure operate() {
    const std::string operation = GetParam();
    auto& session = shop.session;
    if (operation == "approve") return session.approveAskToBuyTransaction(2);
    if (operation == "decline") return session.declineAskToBuyTransaction(2);
    if (operation == "resolve") return session.resolveIssueForTransaction(3);
    if (operation == "refund") return session.refundTransaction(1);
    if (operation == "delete") return session.deleteTransaction(1);
    if (operation == "clear") return session.clearTransactions();
    if (operation == "buy") return session.buyProduct("coins");
    if (operation == "begin") return session.beginStorePurchase("coins");
    if (operation == "disable") return session.disableAutoRenewForTransaction(4);
    if (operation == "ask") return session.requestPriceIncreaseConsentForTransaction(4);
    if (operation == "renew") return session.forceRenewalOfSubscription("club");
    return session.expireSubscription("club");
  }
};

TEST_P(ServerOperation, IsTriedAgainWhenSomebodyElseWasFaster) {
  shop.ledger->conflicts = 5;
  EXPECT_EQ(outcome(operate()), tests::kDone);
  EXPECT_EQ(shop.ledger->conflicts, 0);
}

TEST_P(ServerOperation, GivesUpWhenSomebodyElseIsAlwaysFaster) {
  const auto before = books(shop.session);
  shop.ledger->conflicts = 1'000'000;
  EXPECT_EQ(outcome(operate()), tests::kUnavailable);
  shop.ledger->conflicts = 0;
  EXPECT_EQ(books(shop.session), before);
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_P(ServerOperation, AnswersWithTheLedgersErrorAndChangesNothing) {
  const auto before = books(shop.session);
  shop.ledger->refusal = Foundation::NSError("disk", 28);
  EXPECT_EQ(outcome(operate()), "disk 28");
  shop.ledger->refusal.reset();
  EXPECT_EQ(books(shop.session), before);
  EXPECT_THAT(heard(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, ServerOperation,
                         testing::Values("approve", "decline", "resolve", "refund", "delete",
                                         "clear", "buy", "begin", "disable", "ask", "renew",
                                         "expire"),
                         [](const auto& test) { return std::string(test.param); });

using SettlingConflict = tests::ObservedShop<OpenShop>;

TEST_F(SettlingConflict, IsSettledInALaterTurn) {
  shop.ledger->conflicts = 3;
  shop.add("gems");
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchasing", "updated: gems purchased"));
}

TEST_F(SettlingConflict, ThatDoesNotEndBlocksNobody) {
  shop.ledger->conflicts = 1'000'000;
  shop.add("gems");
  for (int i = 0; i < 20; ++i) turn();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchasing"));
  shop.ledger->conflicts = 0;
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

// This program, and another one on its ledger that does what a test says.
class SharedSettling : public tests::LedgerInFolder {
 protected:
  StoreSession session{tests::shop(), tests::countingSources(), tests::openLedger(path)};
  std::unique_ptr<SqliteLedger> other = tests::openLedger(path);
  tests::JournalingObserver observer;

  SharedSettling() {
    observer.observe();
    (void)turnUntilIdle();
    tests::OpenShop::queue().addPayment(SKPayment({.productIdentifier = "gems"}));
    turn();  // it has begun
    observer.forget();
  }
  ~SharedSettling() override {
    (void)StoreSession(tests::shop());  // lets go of the file
    (void)turnUntilIdle();
  }

  template <class Change>
  void change(const Change& work) {
    LedgerEntries entries = {*other->find(1)};
    work(entries[0]);
    ASSERT_FALSE(other->update(entries, Ledger::Durability::powerCut));
  }
};

TEST_F(SharedSettling, AnOutcomeThatSomebodyElseWroteIsTheOutcome) {
  change([](LedgerEntry& entry) {
    entry.state = State::failed;
    entry.owner.reset();
    entry.error = SKError(SKError::Code::paymentCancelled).nsError();
  });
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems failed"));
  EXPECT_THAT(books(session), ElementsAre("1 gems failed"));
}

TEST_F(SharedSettling, WhatSomebodyElseDeletedHasNoOutcome) {
  change([](LedgerEntry& entry) { entry.deleted = entry.finished = true; });
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("removed: gems purchasing"));
  EXPECT_THAT(books(session), IsEmpty());
}

TEST_F(SharedSettling, AChangeThatLeavesItPurchasingDoesNotKeepItFromItsOutcome) {
  change([](LedgerEntry&) {});  // only the revision
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchased"));
}

TEST_F(SharedSettling, AChangeThatWasJustMadeIsKnownInTheNextTurns) {
  change([](LedgerEntry&) {});
  for (int i = 0; i < 10; ++i) turn();  // the ledger's own thread takes longer to tell
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchased"));
}

TEST_F(SharedSettling, OthersOfTheSameTurnAreSettledAllTheSame) {
  tests::OpenShop::queue().addPayment(SKPayment({.productIdentifier = "crown"}));
  change([](LedgerEntry& entry) { entry.deleted = entry.finished = true; });
  (void)turnUntilIdle();
  EXPECT_THAT(books(session), ElementsAre("2 crown purchased"));
}

}  // namespace
}  // namespace StoreKit
