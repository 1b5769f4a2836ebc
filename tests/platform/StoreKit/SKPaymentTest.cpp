#include "platform/StoreKit/SKPayment.hpp"

#include <gtest/gtest.h>

namespace StoreKit {
namespace {

SKProductPtr gems() {
  return std::make_shared<const SKProduct>(SKProduct::Values{.productIdentifier = "gems"});
}

TEST(SKMutablePayment, IsForOnePieceOfItsProduct) {
  const auto product = gems();
  const SKMutablePayment payment(product);
  EXPECT_EQ(payment.productIdentifier(), "gems");
  EXPECT_EQ(payment.quantity(), 1);
  EXPECT_EQ(payment.product(), product);
  EXPECT_EQ(payment.native(), nullptr);
}

TEST(SKMutablePayment, HasNothingElseToBeginWith) {
  const SKMutablePayment payment(gems());
  EXPECT_FALSE(payment.requestData());
  EXPECT_FALSE(payment.applicationUsername());
  EXPECT_FALSE(payment.simulatesAskToBuyInSandbox());
  EXPECT_FALSE(payment.paymentDiscount());
}

TEST(SKMutablePayment, TakesWhatIsSet) {
  SKMutablePayment payment(gems());
  payment.setQuantity(3);
  payment.setRequestData({{std::byte{7}}});
  payment.setApplicationUsername("ann");
  payment.setSimulatesAskToBuyInSandbox(true);
  payment.setPaymentDiscount(SKPaymentDiscount{.identifier = "half"});
  EXPECT_EQ(payment.quantity(), 3);
  EXPECT_EQ(payment.requestData(), std::vector{std::byte{7}});
  EXPECT_EQ(payment.applicationUsername(), "ann");
  EXPECT_TRUE(payment.simulatesAskToBuyInSandbox());
  ASSERT_TRUE(payment.paymentDiscount());
  EXPECT_EQ(payment.paymentDiscount()->identifier, "half");
}

TEST(SKMutablePayment, AbsentAndEmptyUserNameAreTwoThings) {
  SKMutablePayment payment(gems());
  payment.setApplicationUsername("");
  EXPECT_EQ(payment.applicationUsername(), "");
  payment.setApplicationUsername(std::nullopt);
  EXPECT_FALSE(payment.applicationUsername());
}

TEST(SKMutablePayment, CopyDoesNotChangeWithIt) {
  SKMutablePayment payment(gems());
  const SKPayment copy = payment;
  payment.setQuantity(9);
  EXPECT_EQ(copy.quantity(), 1);
}

}  // namespace
}  // namespace StoreKit
