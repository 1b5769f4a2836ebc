#include "TQStoreKitLib/transactions/TQPaymentTransaction.hpp"

#include <gtest/gtest.h>

#include "TQStoreKitLib/transactions/TransactionDescriptions.hpp"
#include "tests/fakes/FakeDownload.hpp"
#include "tests/fakes/ForeignTransaction.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using State = StoreKit::SKPaymentTransactionState;

TEST(TQPaymentTransaction, NothingGivesNothing) { EXPECT_EQ(paymentTransaction(nullptr), nullptr); }

TEST(TQPaymentTransaction, SaysWhatThePlatformTransactionSays) {
  const auto download = aDownload("level");
  const auto view = paymentTransaction(
      aTransaction("gems").purchased().identifiedBy("7").datedAt(42).withDownloads({download}));

  EXPECT_EQ(view->transactionState(), State::purchased);
  EXPECT_EQ(view->transactionIdentifier(), "7");
  EXPECT_EQ(view->transactionDate(), Foundation::Date::sinceEpoch(42));
  EXPECT_EQ(view->downloads(), StoreKit::SKDownloads{download});
}

TEST(TQPaymentTransaction, SaysNothingWhereThePlatformSaysNothing) {
  const auto view = paymentTransaction(aTransaction("gems").failed());

  EXPECT_FALSE(view->transactionIdentifier());
  EXPECT_FALSE(view->transactionDate());
  EXPECT_TRUE(view->downloads().empty());
}

TEST(TQPaymentTransaction, FollowsTheChangesOfThePlatform) {
  const auto transaction = aTransaction("gems").deferred().make();
  const auto view = paymentTransaction(transaction);

  transaction->changeState(State::purchased);

  EXPECT_EQ(view->transactionState(), State::purchased);
}

TEST(TQPaymentTransaction, StateWithoutAnEnumeratorArrivesUnchanged) {
  const auto view = paymentTransaction(aTransaction("gems").inState(-1));

  EXPECT_EQ(static_cast<std::int64_t>(view->transactionState()), -1);
}

TEST(TQPaymentTransaction, KeepsThePlatformTransactionAlive) {
  auto transaction = aTransaction("gems").make();
  const std::weak_ptr<FakeTransaction> witness = transaction;
  const auto view = paymentTransaction(std::move(transaction));

  EXPECT_FALSE(witness.expired());
}

TEST(TQPaymentTransaction, LeadsBackToThePlatformsOwnTransaction) {
  const auto transaction = aTransaction("gems").make();

  EXPECT_EQ(platformTransaction(*paymentTransaction(transaction)), transaction);
}

TEST(TQPaymentTransaction, ForeignTransactionHasNoPlatformTransaction) {
  EXPECT_EQ(platformTransaction(ForeignTransaction()), nullptr);
}

TEST(TQPaymentTransaction, ForeignTransactionIsDescribedByItsIdentifierAndState) {
  EXPECT_EQ(ForeignTransaction().description(), "transactionId: 77, state: purchased");
}

TEST(TQPaymentTransaction, IsDescribedAsThePlatformTransactionIs) {
  const auto transaction = aTransaction("gems").purchased().identifiedBy("7").make();

  EXPECT_EQ(paymentTransaction(transaction)->description(),
            StoreKit::debugDescription(*transaction));
}

}  // namespace
}  // namespace TQStoreKitLib::tests
