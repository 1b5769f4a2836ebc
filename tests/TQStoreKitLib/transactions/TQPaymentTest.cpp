#include "TQStoreKitLib/transactions/TQPayment.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/FakePayment.hpp"

namespace TQStoreKitLib::tests {
namespace {

TQPayment paymentFor(const StoreKit::SKProductPtr& product) { return {.product = product}; }

TEST(TQPayment, PaymentsForOneProductIdentifierAreEqualWhateverElseDiffers) {
  const auto plain = aPayment("gems");
  const TQPayment other{.product = aProduct("gems"),
                        .paymentDiscount = TQPaymentDiscount({.identifier = "offer"}),
                        .quantity = 3,
                        .atomically = false,
                        .applicationUsername = "anna",
                        .simulatesAskToBuyInSandbox = true,
                        .callback = [](const TQTransactionResult&) {}};

  EXPECT_TRUE(plain == other);
  EXPECT_FALSE(plain != other);
}

TEST(TQPayment, PaymentsForDifferentIdentifiersDifferAlsoForEqualProducts) {
  const auto gems = paymentFor(aNativeProduct("gems", "one and the same"));
  const auto coins = paymentFor(aNativeProduct("coins", "one and the same"));

  EXPECT_FALSE(gems == coins);
}

TEST(TQPayment, IdentifiersAreComparedExactly) {
  EXPECT_FALSE(aPayment("gems") == aPayment("Gems"));
  EXPECT_FALSE(aPayment("gems") == aPayment("gems "));
}

TEST(TQPayment, HashIsTheSameForTheSameValues) {
  const auto product = aProduct("gems");

  EXPECT_EQ(paymentFor(product).hashValue(), paymentFor(product).hashValue());
}

TEST(TQPayment, HashOfTheProductIsTheProductsOwn) {
  EXPECT_EQ(paymentFor(aNativeProduct("gems", "key")).hashValue(),
            paymentFor(aNativeProduct("coins", "key")).hashValue());
  EXPECT_NE(paymentFor(aNativeProduct("gems", "key")).hashValue(),
            paymentFor(aNativeProduct("gems", "another key")).hashValue());
}

TEST(TQPayment, HashTakesInTheQuantity) {
  auto payment = aPayment("gems");
  const auto before = payment.hashValue();
  payment.quantity = 2;
  EXPECT_NE(payment.hashValue(), before);
}

TEST(TQPayment, HashTakesInTheAtomicity) {
  auto payment = aPayment("gems");
  const auto before = payment.hashValue();
  payment.atomically = false;
  EXPECT_NE(payment.hashValue(), before);
}

TEST(TQPayment, HashTakesInTheUserName) {
  auto payment = aPayment("gems");
  const auto before = payment.hashValue();
  payment.applicationUsername = "anna";
  EXPECT_NE(payment.hashValue(), before);
}

TEST(TQPayment, HashTakesInTheAskToBuyFlag) {
  auto payment = aPayment("gems");
  const auto before = payment.hashValue();
  payment.simulatesAskToBuyInSandbox = true;
  EXPECT_NE(payment.hashValue(), before);
}

TEST(TQPayment, HashDependsOnWhichOfTheTwoFlagsIsSet) {
  auto atomic = aPayment("gems");
  auto asking = atomic;
  asking.atomically = false;
  asking.simulatesAskToBuyInSandbox = true;

  EXPECT_NE(atomic.hashValue(), asking.hashValue());
}

TEST(TQPayment, HashLeavesDiscountAndCallbackOut) {
  auto payment = aPayment("gems");
  const auto before = payment.hashValue();

  payment.paymentDiscount = TQPaymentDiscount({.identifier = "offer"});
  payment.callback = [](const TQTransactionResult&) {};

  EXPECT_EQ(payment.hashValue(), before);
}

TEST(TQPayment, EqualPaymentsMayHaveDifferentHashes) {
  auto three = aPayment("gems");
  auto one = three;
  three.quantity = 3;

  EXPECT_TRUE(three == one);
  EXPECT_NE(three.hashValue(), one.hashValue());
}

TEST(TQPaymentDiscount, KeepsTheOfferThatItIsMadeFrom) {
  const TQPaymentDiscount discount({.identifier = "offer", .timestamp = 17});

  const auto* const held = std::any_cast<StoreKit::SKPaymentDiscount>(&discount.discount);
  ASSERT_NE(held, nullptr);
  EXPECT_EQ(held->identifier, "offer");
  EXPECT_EQ(held->timestamp, 17);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
