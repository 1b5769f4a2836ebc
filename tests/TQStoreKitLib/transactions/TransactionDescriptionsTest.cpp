#include "TQStoreKitLib/transactions/TransactionDescriptions.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::debugDescription;
using State = StoreKit::SKPaymentTransactionState;

std::string named(std::int64_t raw) { return debugDescription(static_cast<State>(raw)); }

TEST(TransactionDescriptions, StatesAreNamedByTheirRawValue) {
  EXPECT_EQ(named(0), "purchasing");
  EXPECT_EQ(named(1), "purchased");
  EXPECT_EQ(named(2), "failed");
  EXPECT_EQ(named(3), "restored");
  EXPECT_EQ(named(4), "deferred");
}

TEST(TransactionDescriptions, StateAboveTheKnownOnesIsCalledDefault) {
  EXPECT_EQ(named(5), "default");
  EXPECT_EQ(named(std::numeric_limits<std::int64_t>::max()), "default");
}

TEST(TransactionDescriptions, NegativeStateIsCalledDefault) {
  EXPECT_EQ(named(-1), "default");
  EXPECT_EQ(named(std::numeric_limits<std::int64_t>::min()), "default");
}

TEST(TransactionDescriptions, TransactionTellsProductIdentifierStateAndDate) {
  const auto transaction =
      aTransaction("gems.100").purchased().identifiedBy("1000").datedAt(1795247290).make();

  EXPECT_EQ(debugDescription(*transaction),
            "productId: gems.100, transactionId: 1000, state: purchased, date: Optional(" +
                Foundation::Date::sinceEpoch(1795247290).description() + ")");
}

TEST(TransactionDescriptions, TransactionWithoutIdentifierAndDateSaysNullAndNil) {
  const auto transaction = aTransaction("gems").failed().make();

  EXPECT_EQ(debugDescription(*transaction),
            "productId: gems, transactionId: null, state: failed, date: nil");
}

TEST(TransactionDescriptions, EmptyIdentifierIsNotNull) {
  const auto transaction = aTransaction("gems").restored().identifiedBy("").make();

  EXPECT_EQ(debugDescription(*transaction),
            "productId: gems, transactionId: , state: restored, date: nil");
}

TEST(TransactionDescriptions, TransactionInAnUnknownStateSaysDefault) {
  const auto transaction = aTransaction("gems").inState(5).make();

  EXPECT_EQ(debugDescription(*transaction),
            "productId: gems, transactionId: null, state: default, date: nil");
}

TEST(TransactionDescriptions, TransactionIsDescribedAsItStandsNow) {
  const auto transaction = aTransaction("gems").deferred().make();

  transaction->changeState(State::purchased);

  EXPECT_EQ(debugDescription(*transaction),
            "productId: gems, transactionId: null, state: purchased, date: nil");
}

}  // namespace
}  // namespace TQStoreKitLib::tests
