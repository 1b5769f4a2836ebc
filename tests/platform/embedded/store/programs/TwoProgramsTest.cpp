// Two programs with one shop on one ledger: this one is an application, the neighbour another one,
// or a tool that controls the store.

#include "platform/embedded/store/EmbeddedStore.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"

namespace tests {
namespace {

using StoreKit::EmbeddedStore;
using StoreKit::StoreSession;
using testing::ElementsAre;
using testing::IsEmpty;

class TwoPrograms : public LedgerInFolder {
 protected:
  TwoPrograms() {
    EXPECT_EQ(neighbour.ask("heard"), "");  // it has opened the ledger
    observer.onStorePayment = [](const auto&, const auto&) { return true; };
    launch();
  }
  ~TwoPrograms() override {
    session.emplace(shop());  // lets go of the file
    (void)turnUntilIdle();
  }

  void launch() {
    session.emplace(shop(), StoreKit::StoreSources(), openLedger(path));
    observer.observe();
    (void)turnUntilIdle();
  }

  // What this program is told from now on, after a look at the ledger.
  const Journal& heard() {
    observer.forget();
    EmbeddedStore::current().queue().absorbChanges();
    (void)turnUntilIdle();
    return observer.journal();
  }
  void buy(const std::string& product) {
    OpenShop::queue().addPayment(StoreKit::SKPayment({.productIdentifier = product}));
    (void)turnUntilIdle();
  }

  ChildProgram neighbour{{STORE_NEIGHBOUR, path}};
  std::optional<StoreSession> session;
  JournalingObserver observer;
};

TEST_F(TwoPrograms, AnApprovalOfTheOtherIsDeliveredHere) {
  session->setAskToBuyEnabled(true);
  buy("gems");
  EXPECT_EQ(neighbour.ask("approve 1"), kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
  EXPECT_TRUE(observer.seen.at(0)->transactionIdentifier());
}

TEST_F(TwoPrograms, ADeclineOfTheOtherIsDeliveredHere) {
  session->setAskToBuyEnabled(true);
  buy("gems");
  EXPECT_EQ(neighbour.ask("decline 1"), kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems failed"));
}

TEST_F(TwoPrograms, AnApprovalOfWhatWasFinishedHereIsDeliveredHere) {
  session->setAskToBuyEnabled(true);
  buy("gems");
  OpenShop::queue().finishTransaction(OpenShop::queue().transactions().at(0));
  (void)turnUntilIdle();
  EXPECT_EQ(neighbour.ask("approve 1"), kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(TwoPrograms, OneOfThemSettlesADeferredPurchase) {
  session->setAskToBuyEnabled(true);
  buy("gems");
  EXPECT_EQ(neighbour.ask("approve 1"), kDone);
  EXPECT_EQ(outcome(session->declineAskToBuyTransaction(1)), kInvalidAction);
  EXPECT_THAT(books(*session), ElementsAre("1 gems purchased"));
}

TEST_F(TwoPrograms, AResolutionOfTheOtherIsDeliveredHere) {
  session->setInterruptedPurchasesEnabled(true);
  buy("gems");
  EXPECT_EQ(neighbour.ask("resolve 1"), kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(TwoPrograms, APurchaseOutsideArrivesInBoth) {
  EXPECT_EQ(neighbour.ask("observe"), "done");
  EXPECT_EQ(outcome(session->buyProduct("gems")), kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
  EXPECT_EQ(neighbour.ask("heard"), "updated: gems purchased");
}

TEST_F(TwoPrograms, ARefundIsToldToBoth) {
  EXPECT_EQ(neighbour.ask("observe"), "done");
  buy("gems");
  EXPECT_EQ(neighbour.ask("heard"), "updated: gems purchased");
  EXPECT_EQ(neighbour.ask("refund 1"), kDone);
  EXPECT_THAT(heard(), ElementsAre("revoked: gems"));
  EXPECT_EQ(neighbour.ask("heard"), "revoked: gems");
}

TEST_F(TwoPrograms, ARefundIsNotToldAgainWithALaterChange) {
  buy("gems");
  EXPECT_EQ(neighbour.ask("refund 1"), kDone);
  EXPECT_THAT(heard(), ElementsAre("revoked: gems"));
  OpenShop::queue().finishTransaction(OpenShop::queue().transactions().at(0));
  (void)turnUntilIdle();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(TwoPrograms, ARefundThatOneWasToldOfIsNotToldAtTheNextStart) {
  buy("gems");
  EXPECT_EQ(neighbour.ask("refund 1"), kDone);
  EXPECT_THAT(heard(), ElementsAre("revoked: gems"));
  session->relaunch();
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(TwoPrograms, ARefundWhileNobodyObservesIsToldAtTheNextStart) {
  buy("gems");
  observer.stop();
  session->relaunch();
  EXPECT_EQ(neighbour.ask("refund 1"), kDone);
  observer.observe();
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased", "revoked: gems"));
}

TEST_F(TwoPrograms, ARefundIsGrantedOnce) {
  buy("gems");
  EXPECT_EQ(neighbour.ask("refund 1"), kDone);
  EXPECT_EQ(outcome(session->refundTransaction(1)), kInvalidAction);
}

TEST_F(TwoPrograms, APurchaseThatTheOtherBeginsInTheStoreIsAskedAboutHere) {
  EXPECT_EQ(neighbour.ask("begin gems"), kDone);
  EXPECT_THAT(heard(),
              ElementsAre("asked: gems", "updated: gems purchasing", "updated: gems purchased"));
}

TEST_F(TwoPrograms, OneOfThemAsksAboutAStorePurchase) {
  EXPECT_EQ(neighbour.ask("observe"), "done");
  for (int round = 0; round < 20; ++round) {
    EXPECT_EQ(outcome(session->beginStorePurchase("gems")), kDone);
    neighbour.order("heard");  // both look at it at the same time
    const auto here = heard();
    const auto there = neighbour.line();
    const bool askedHere = std::count(here.begin(), here.end(), "asked: gems") == 1;
    const bool askedThere = there.find("asked: gems") != std::string::npos;
    EXPECT_NE(askedHere, askedThere) << there;
    (void)neighbour.ask("heard");
  }
  EXPECT_EQ(books(*session).size(), 20U);
  EXPECT_THAT(books(*session), testing::Each(testing::EndsWith("gems purchased")));
}

TEST_F(TwoPrograms, AStorePurchaseWhoseProgramIsKilledWhileItAsksIsAskedAboutAtTheNextStart) {
  EXPECT_EQ(neighbour.ask("observe hanging"), "done");
  EXPECT_EQ(neighbour.ask("begin gems"), kDone);
  EXPECT_EQ(neighbour.ask("heard"), "asking");
  EXPECT_THAT(heard(), IsEmpty());  // it is being asked there
  neighbour.end(SIGKILL);
  launch();
  EXPECT_THAT(books(*session), ElementsAre("1 gems purchased"));
}

TEST_F(TwoPrograms, AStorefrontOfTheOtherIsTold) {
  EXPECT_EQ(neighbour.ask("set storefront=BRA"), kDone);
  EXPECT_THAT(heard(), ElementsAre("storefront changed"));
  EXPECT_EQ(session->storefront(), "BRA");
}

TEST_F(TwoPrograms, PurchasesGoByTheSettingsOfTheOther) {
  EXPECT_EQ(neighbour.ask("set askToBuyEnabled=true"), kDone);
  (void)heard();
  buy("gems");
  EXPECT_THAT(books(*session), ElementsAre("1 gems deferred"));
}

TEST_F(TwoPrograms, ADeletionOfTheOtherIsARemoval) {
  buy("gems");
  buy("coins");
  EXPECT_EQ(neighbour.ask("delete 1"), kDone);
  EXPECT_THAT(heard(), ElementsAre("removed: gems purchased"));
  EXPECT_EQ(neighbour.ask("clear"), kDone);
  EXPECT_THAT(heard(), ElementsAre("removed: coins purchased"));
}

TEST_F(TwoPrograms, ARenewalOfTheOtherIsDeliveredHereWithItsOriginal) {
  buy("club");
  EXPECT_EQ(neighbour.ask("renew club"), kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: club purchased"));
  ASSERT_NE(observer.seen.at(0)->originalTransaction(), nullptr);
  EXPECT_EQ(session->allTransactions().at(1).originalTransactionIdentifier, 1);
}

// Nobody else is left to do it.
TEST_F(TwoPrograms, ASubscriptionOfTheOtherIsRenewedHereWhenThatHasEnded) {
  constexpr const char* kPeriodsOfTwoSeconds = "set timeRate=1005";
  EXPECT_EQ(neighbour.ask(kPeriodsOfTwoSeconds), kDone);
  EXPECT_THAT(heard(), IsEmpty());
  EXPECT_EQ(neighbour.ask("buy club"), kDone);
  neighbour.end(0);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (observer.journal().size() < 3 && std::chrono::steady_clock::now() < end) {
    Dispatch::MainLoop::runFor(std::chrono::milliseconds(10));
  }
  EXPECT_THAT(observer.journal(), ElementsAre("updated: club purchased", "updated: club purchased",
                                              "updated: club purchased"));
}

TEST_F(TwoPrograms, RenewAtTheSameTimeWithoutLosingOrDoublingOne) {
  buy("club");
  for (int round = 0; round < 20; ++round) {
    neighbour.order("renew club");
    EXPECT_EQ(outcome(session->forceRenewalOfSubscription("club")), kDone);
    EXPECT_EQ(neighbour.line(), kDone);
  }
  const auto all = session->allTransactions();
  EXPECT_EQ(all.size(), 41U);
  EXPECT_EQ(std::count_if(all.begin(), all.end(),
                          [](const auto& each) { return each.autoRenewingEnabled; }),
            1);
}

TEST_F(TwoPrograms, AnExpiryOfTheOtherHoldsHere) {
  buy("club");
  EXPECT_EQ(neighbour.ask("expire club"), kDone);
  EXPECT_EQ(outcome(session->forceRenewalOfSubscription("club")), kNoSubscription);
}

TEST_F(TwoPrograms, APurchaseThatIsUnderWayThereIsSettledThereOnly) {
  EXPECT_EQ(neighbour.ask("observe"), "done");
  EXPECT_EQ(neighbour.ask("set answerDelay=1000"), kDone);
  EXPECT_EQ(neighbour.ask("add gems"), "done");
  EXPECT_EQ(neighbour.ask("heard"), "updated: gems purchasing");
  EXPECT_EQ(neighbour.ask("set answerDelay=0"), kDone);
  (void)heard();
  buy("coins");
  EXPECT_THAT(books(*session), ElementsAre("1 gems purchasing", "2 coins purchased"));
}

}  // namespace
}  // namespace tests
