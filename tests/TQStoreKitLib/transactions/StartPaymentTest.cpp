#include <gtest/gtest.h>

#include "platform/embedded/Foundation/EmulatedSystem.hpp"
#include "tests/fakes/FakePayment.hpp"
#include "tests/fakes/FakeStore.hpp"

namespace TQStoreKitLib::tests {
namespace {

TQPayment discounted() {
  auto payment = aPayment("club");
  payment.paymentDiscount = TQPaymentDiscount({.identifier = "offer",
                                               .keyIdentifier = "key",
                                               .nonce = "nonce",
                                               .signature = "c2lnbmVk",
                                               .timestamp = 17});
  return payment;
}

StoreKit::SKPayment added(TQPayment payment) {
  FakeStore store;
  store.controller->startPayment(std::move(payment));
  return store.queue.payments.at(0);
}

TEST(StartPayment, PaymentIsAddedToTheQueueBeforeItIsRecorded) {
  FakeStore store;
  std::size_t waiting = 99;
  store.queue.whileAdding = [&] { waiting = store.payments->payments().size(); };

  store.controller->startPayment(aPayment("gems"));

  EXPECT_EQ(waiting, 0U);
  EXPECT_EQ(store.payments->payments().size(), 1U);
}

TEST(StartPayment, PlatformPaymentIsForTheProduct) {
  const auto payment = aPayment("gems");

  const auto platform = added(payment);

  EXPECT_EQ(platform.productIdentifier(), "gems");
  EXPECT_EQ(platform.product(), payment.product);
}

TEST(StartPayment, PlatformPaymentHasTheQuantity) {
  auto payment = aPayment("gems");
  payment.quantity = 7;

  EXPECT_EQ(added(payment).quantity(), 7);
}

TEST(StartPayment, PlatformPaymentHasTheUserName) {
  auto payment = aPayment("gems");
  payment.applicationUsername = "anna";

  EXPECT_EQ(added(payment).applicationUsername(), "anna");
}

TEST(StartPayment, EmptyUserNameArrivesEmptyAndNotAbsent) {
  EXPECT_EQ(added(aPayment("gems")).applicationUsername(), std::optional<std::string>(""));
}

TEST(StartPayment, PlatformPaymentHasTheAskToBuyFlag) {
  auto payment = aPayment("gems");
  EXPECT_FALSE(added(payment).simulatesAskToBuyInSandbox());

  payment.simulatesAskToBuyInSandbox = true;
  EXPECT_TRUE(added(payment).simulatesAskToBuyInSandbox());
}

TEST(StartPayment, PaymentWithoutADiscountHasNone) {
  EXPECT_FALSE(added(aPayment("gems")).paymentDiscount());
}

TEST(StartPayment, DiscountIsPassedOnAsItIs) {
  Foundation::setOperatingSystemVersion(12, 2);

  const auto discount = added(discounted()).paymentDiscount();

  ASSERT_TRUE(discount);
  EXPECT_EQ(discount->identifier, "offer");
  EXPECT_EQ(discount->keyIdentifier, "key");
  EXPECT_EQ(discount->nonce, "nonce");
  EXPECT_EQ(discount->signature, "c2lnbmVk");
  EXPECT_EQ(discount->timestamp, 17);
}

TEST(StartPayment, DiscountIsPassedOnFromSystem12Point2On) {
  const auto passedOn = [](int major, int minor) {
    Foundation::setOperatingSystemVersion(major, minor);
    return added(discounted()).paymentDiscount().has_value();
  };

  EXPECT_TRUE(passedOn(12, 2));
  EXPECT_TRUE(passedOn(12, 3));
  EXPECT_TRUE(passedOn(13, 0));
  EXPECT_FALSE(passedOn(12, 1));
  EXPECT_FALSE(passedOn(12, 0));
  EXPECT_FALSE(passedOn(11, 4));
}

TEST(StartPayment, OtherValuesArePassedOnAlsoWhereTheDiscountIsNot) {
  Foundation::setOperatingSystemVersion(11, 2);
  auto payment = discounted();
  payment.quantity = 2;
  payment.simulatesAskToBuyInSandbox = true;

  const auto platform = added(payment);

  EXPECT_EQ(platform.quantity(), 2);
  EXPECT_TRUE(platform.simulatesAskToBuyInSandbox());
}

TEST(StartPayment, DiscountThatIsSomethingElseIsIgnored) {
  auto payment = discounted();

  payment.paymentDiscount->discount = std::string("offer");
  EXPECT_FALSE(added(payment).paymentDiscount());

  payment.paymentDiscount->discount.reset();
  EXPECT_FALSE(added(payment).paymentDiscount());
}

TEST(StartPayment, RecordedPaymentIsTheOneThatWasStarted) {
  FakeStore store;
  auto payment = discounted();
  payment.quantity = 4;
  payment.atomically = false;

  store.controller->startPayment(payment);

  const auto recorded = store.payments->payments().at(0);
  EXPECT_EQ(recorded.product, payment.product);
  EXPECT_EQ(recorded.quantity, 4);
  EXPECT_FALSE(recorded.atomically);
  EXPECT_TRUE(recorded.paymentDiscount);
}

TEST(StartPayment, PaymentOfOneProductMayBeStartedTwice) {
  FakeStore store;

  store.controller->startPayment(aPayment("gems"));
  store.controller->startPayment(aPayment("gems"));

  EXPECT_EQ(store.queue.payments.size(), 2U);
  EXPECT_EQ(store.payments->payments().size(), 2U);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
