#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/OpenShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turnUntilIdle;

// The ledger and the observer write into one journal.
class CommitOrder : public testing::Test {
 protected:
  OpenShop shop;
  std::shared_ptr<tests::Journal> journal = std::make_shared<tests::Journal>();
  JournalingObserver observer{journal};

  CommitOrder() {
    shop.ledger->journal = journal;
    observer.observe();
  }
};

TEST_F(CommitOrder, EveryStateIsCommittedBeforeItIsReported) {
  shop.buy("gems");
  EXPECT_THAT(*journal, ElementsAre("commit: gems purchasing", "updated: gems purchasing",
                                    "commit: gems purchased", "updated: gems purchased"));
}

TEST_F(CommitOrder, FailureIsCommittedBeforeItIsReported) {
  shop.session.cancelPurchases();
  shop.buy("gems");
  EXPECT_THAT(*journal, ElementsAre("commit: gems purchasing", "updated: gems purchasing",
                                    "commit: gems failed", "updated: gems failed"));
}

TEST_F(CommitOrder, FinishIsCommittedBeforeTheRemovalIsReported) {
  const auto transaction = shop.buy("gems");
  journal->clear();
  OpenShop::queue().finishTransaction(transaction);
  EXPECT_THAT(*journal, testing::IsEmpty());
  (void)turnUntilIdle();
  EXPECT_THAT(*journal, ElementsAre("commit: gems purchased finished", "removed: gems purchased"));
}

TEST_F(CommitOrder, RestoredOnesAreCommittedBeforeTheyAreReported) {
  shop.own("crown");
  journal->clear();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  EXPECT_THAT(*journal,
              ElementsAre("commit: crown restored", "updated: crown restored", "restore finished"));
}

TEST_F(CommitOrder, PurchasesOfOneTurnAreOneCommitBeforeTheirReport) {
  shop.add("gems");
  shop.add("crown");
  (void)turnUntilIdle();
  EXPECT_THAT(*journal,
              ElementsAre("commit: gems purchasing", "commit: crown purchasing",
                          "updated: gems purchasing, crown purchasing", "commit: gems purchased",
                          "commit: crown purchased", "updated: gems purchased, crown purchased"));
}

TEST_F(CommitOrder, ReportedFieldsAreTheCommittedOnes) {
  const auto transaction = shop.buy("gems", "ann");
  shop.session.relaunch();
  const auto kept = OpenShop::queue().transactions().at(0);
  EXPECT_EQ(kept->transactionIdentifier(), transaction->transactionIdentifier());
  EXPECT_EQ(kept->transactionDate(), transaction->transactionDate());
}

}  // namespace
}  // namespace StoreKit
