// Purchases that the user begins in the store.

#include <thread>
#include <utility>

#include "platform/embedded/store/EmbeddedStore.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"
#include "tests/platform/embedded/store/ledger/WatchedDisk.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::books;
using tests::OpenShop;
using tests::outcome;
using tests::turn;
using tests::turnUntilIdle;

class StorePurchase : public tests::ObservedShop<OpenShop> {
 protected:
  std::string begin(const std::string& product) {
    return outcome(shop.session.beginStorePurchase(product));
  }
  void answerWith(bool wanted) {
    observer.onStorePayment = [wanted](const auto&, const auto&) { return wanted; };
  }
};

TEST_F(StorePurchase, IsAskedAboutInALaterTurn) {
  EXPECT_EQ(begin("gems"), tests::kDone);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(heard(), ElementsAre("asked: gems"));
}

TEST_F(StorePurchase, ComesWithThePaymentAndTheProduct) {
  observer.onStorePayment = [this](const SKPaymentPtr& payment, const SKProductPtr& product) {
    EXPECT_EQ(payment->productIdentifier(), "crown");
    EXPECT_EQ(payment->quantity(), 1);
    EXPECT_EQ(payment->product(), product);
    EXPECT_EQ(product, shop.session.catalogue().find("crown")->product);
    return false;
  };
  (void)begin("crown");
  EXPECT_THAT(heard(), ElementsAre("asked: crown"));
}

TEST_F(StorePurchase, ThatIsWantedGoesOnLikeAnyOther) {
  answerWith(true);
  (void)begin("gems");
  EXPECT_THAT(heard(),
              ElementsAre("asked: gems", "updated: gems purchasing", "updated: gems purchased"));
  EXPECT_EQ(observer.seen.back()->transactionIdentifier(), "101");
}

TEST_F(StorePurchase, ThatIsWantedIsJudgedLikeAnyOther) {
  answerWith(true);
  shop.session.setAskToBuyEnabled(true);
  (void)begin("gems");
  EXPECT_EQ(heard().back(), "updated: gems deferred");
}

TEST_F(StorePurchase, WaitsForTheApplicationWhenThisProgramIsNone) {
  StoreSession::setIsForApplication(false);
  (void)begin("gems");
  EXPECT_THAT(heard(), IsEmpty());
  goAway();
  StoreSession::setIsForApplication(true);
  EXPECT_THAT(heardAtStart(), ElementsAre("asked: gems"));
}

TEST_F(StorePurchase, OfWhatOnlyAnotherConfigurationSellsWaitsForIt) {
  const tests::TemporaryFolder folder;
  const auto openWith = [&](const StoreConfiguration& configuration) {
    return StoreSession(configuration, {}, tests::openLedger(folder.file("l")));
  };
  auto without = tests::shop();
  std::erase_if(without.products, [](const auto& each) { return each.productID == "gems"; });
  observer.stop();
  EXPECT_FALSE(openWith(tests::shop()).beginStorePurchase("gems"));
  observer.observe();
  (void)openWith(without);
  EXPECT_THAT(heard(), IsEmpty());
  (void)openWith(tests::shop());
  EXPECT_THAT(heard(), ElementsAre("asked: gems"));
}

TEST_F(StorePurchase, ThatIsNotWantedLeavesNothing) {
  answerWith(false);
  (void)begin("gems");
  EXPECT_THAT(heard(), ElementsAre("asked: gems"));
  EXPECT_THAT(books(shop.session), IsEmpty());
  shop.session.relaunch();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(StorePurchase, ThatIsNotWantedNowCanBeAddedLater) {
  SKPaymentPtr kept;
  observer.onStorePayment = [&](const SKPaymentPtr& payment, const auto&) {
    kept = payment;
    return false;
  };
  (void)begin("gems");
  (void)heard();
  queue().addPayment(*kept);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchasing", "updated: gems purchased"));
}

TEST_F(StorePurchase, ObserverThatDoesNotImplementTheQuestionIsNotSold) {
  struct Plain final : SKPaymentTransactionObserver {
    void paymentQueueUpdatedTransactions(const SKPaymentTransactions&) override {}
  };
  Plain plain;
  observer.stop();
  queue().addTransactionObserver(plain);
  (void)begin("gems");
  (void)turnUntilIdle();
  EXPECT_THAT(books(shop.session), IsEmpty());
  queue().removeTransactionObserver(plain);
}

TEST_F(StorePurchase, EveryObserverIsAskedAndOneThatWantsItIsEnough) {
  answerWith(true);
  tests::JournalingObserver second;
  second.observe();
  (void)begin("gems");
  (void)turnUntilIdle();
  EXPECT_EQ(second.journal().front(), "asked: gems");
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems purchased"));
}

TEST_F(StorePurchase, WaitsForAnObserver) {
  goAway();
  (void)begin("gems");
  (void)turnUntilIdle();
  EXPECT_THAT(heardAtStart(), ElementsAre("asked: gems"));
}

TEST_F(StorePurchase, IsAskedAboutAfterTheBacklog) {
  shop.buy("crown");
  goAway();
  (void)begin("gems");
  EXPECT_THAT(heardAtStart(), ElementsAre("updated: crown purchased", "asked: gems"));
}

TEST_F(StorePurchase, SurvivesARelaunchBeforeItIsAskedAbout) {
  (void)begin("gems");
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("asked: gems"));
}

TEST_F(StorePurchase, SeveralAreAskedAboutOneAfterTheOther) {
  answerWith(true);
  (void)begin("gems");
  (void)begin("crown");
  (void)turnUntilIdle();
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems purchased", "2 crown purchased"));
}

TEST_F(StorePurchase, IsNotInTheQueueBeforeTheAnswer) {
  std::size_t during = 99;
  observer.onStorePayment = [&](const auto&, const auto&) {
    during = queue().transactions().size();
    return true;
  };
  (void)begin("gems");
  (void)turnUntilIdle();
  EXPECT_EQ(during, 0U);
  EXPECT_EQ(queue().transactions().size(), 1U);
}

TEST_F(StorePurchase, OfAnUnknownProductIsAnError) {
  EXPECT_EQ(begin("nothing"), tests::kInvalidProduct);
  EXPECT_THAT(heard(), IsEmpty());
  EXPECT_THAT(books(shop.session), IsEmpty());
}

TEST_F(StorePurchase, ThatIsDeletedBeforeTheQuestionIsNotAskedAbout) {
  (void)begin("gems");
  EXPECT_EQ(outcome(shop.session.deleteTransaction(1)), tests::kDone);
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(StorePurchase, ThatIsDeletedDuringTheQuestionIsNotSold) {
  observer.onStorePayment = [this](const auto&, const auto&) {
    EXPECT_EQ(outcome(shop.session.deleteTransaction(1)), tests::kDone);
    return true;
  };
  (void)begin("gems");
  EXPECT_THAT(heard(), ElementsAre("asked: gems"));
  EXPECT_THAT(books(shop.session), IsEmpty());
}

TEST_F(StorePurchase, ThatTheLedgerDoesNotLetBeClaimedIsAskedAboutAtTheNextStart) {
  (void)begin("gems");
  shop.ledger->refusal = Foundation::NSError::withDescription("disk", 28, "No space left.");
  tests::CapturedError error;
  EXPECT_THAT(heard(), IsEmpty());
  EXPECT_EQ(error.text(),
            "The ledger refused a change: No space left. "
            "The store's purchase is asked about at the next start.\n");
  shop.ledger->refusal.reset();
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("asked: gems"));
}

TEST_F(StorePurchase, WhoseAnswerTheLedgerDoesNotTakeIsAskedAboutAtTheNextStart) {
  observer.onStorePayment = [this](const auto&, const auto&) {
    shop.ledger->refusal = Foundation::NSError::withDescription("disk", 28, "No space left.");
    return true;
  };
  (void)begin("gems");
  tests::CapturedError error;
  EXPECT_THAT(heard(), ElementsAre("asked: gems"));
  EXPECT_THAT(error.text(), testing::HasSubstr("asked about at the next start"));
  shop.ledger->refusal.reset();
  answerWith(true);
  shop.session.relaunch();
  EXPECT_EQ(heard().back(), "updated: gems purchased");
}

// This program, and another one on its ledger that does what a test says.
class SharedStorePurchase : public tests::LedgerInFolder {
 protected:
  struct DiskToWatch {
    DiskToWatch() { tests::WatchedDisk::install(nullptr); }  // before SQLite opens the ledger
  };
  DiskToWatch disk;
  const std::thread::id mainThread = std::this_thread::get_id();
  StoreSession session{tests::shop(), tests::countingSources(), tests::openLedger(path)};
  std::unique_ptr<SqliteLedger> other = tests::openLedger(path);
  tests::JournalingObserver observer;

  ~SharedStorePurchase() override {
    (void)StoreSession(tests::shop());  // lets go of the file
    (void)turnUntilIdle();
  }

  LedgerEntry ownedBy(std::optional<std::int64_t> owner) const {
    LedgerEntries entries = {*other->find(1)};
    entries[0].owner = owner;
    EXPECT_FALSE(other->update(entries, Ledger::Durability::killedProcess));
    return entries[0];
  }
  static void absorb() {
    EmbeddedStore::current().queue().absorbChanges();
    (void)turnUntilIdle();
  }
};

TEST_F(SharedStorePurchase, OfAnotherProgramIsAskedAboutHere) {
  observer.observe();
  (void)turnUntilIdle();
  LedgerEntries entries = {tests::entry("gems", SKPaymentTransactionState::purchasing)};
  entries[0].asksApplication = true;
  EXPECT_FALSE(other->add(entries, Ledger::Durability::killedProcess));
  absorb();
  EXPECT_THAT(observer.journal(), ElementsAre("asked: gems"));
}

TEST_F(SharedStorePurchase, ThatAnotherProgramIsAskingAboutIsNotAskedAboutHere) {
  observer.observe();
  (void)turnUntilIdle();
  (void)session.beginStorePurchase("gems");
  turn();  // it is known here
  (void)ownedBy(other->owner());
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_EQ(other->find(1)->owner, other->owner());
}

// Between the look at it and the claim.
TEST_F(SharedStorePurchase, ThatAnotherProgramClaimsAtTheSameTimeIsNotAskedAboutHere) {
  observer.observe();
  (void)turnUntilIdle();
  (void)session.beginStorePurchase("gems");
  bool claims = true;
  tests::WatchedDisk::install(nullptr, [&](tests::WatchedDisk::Glance glance) {
    const bool here = std::this_thread::get_id() == mainThread;
    if (!here || glance != tests::WatchedDisk::Glance::change || !std::exchange(claims, false))
      return;
    (void)ownedBy(other->owner());
  });
  (void)turnUntilIdle();
  tests::WatchedDisk::install(nullptr);
  EXPECT_FALSE(claims);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_EQ(other->find(1)->owner, other->owner());
}

TEST_F(SharedStorePurchase, ThatAnotherProgramClaimedBeforeTheStartIsNotAskedAboutHere) {
  (void)session.beginStorePurchase("gems");
  (void)ownedBy(other->owner());
  session.relaunch();
  observer.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), IsEmpty());
}

TEST_F(SharedStorePurchase, WhoseProgramDiedBeforeItsAnswerIsAskedAboutAtTheNextStart) {
  (void)session.beginStorePurchase("gems");
  (void)ownedBy(other->owner());
  other.reset();
  session.relaunch();
  observer.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("asked: gems"));
}

TEST_F(SharedStorePurchase, ThatAnotherProgramRefusedIsNotAskedAboutHere) {
  (void)session.beginStorePurchase("gems");
  LedgerEntries entries = {*other->find(1)};
  entries[0].deleted = entries[0].finished = true;
  EXPECT_FALSE(other->update(entries, Ledger::Durability::killedProcess));
  observer.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), IsEmpty());
}

}  // namespace
}  // namespace StoreKit
