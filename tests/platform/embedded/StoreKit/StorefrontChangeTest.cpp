#include "platform/StoreKit/SKProductsRequest.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/RecordingDelegate.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::OpenShop;
using tests::outcome;
using tests::turn;
using tests::turnUntilIdle;

using StorefrontChange = tests::ObservedShop<OpenShop>;

TEST_F(StorefrontChange, IsToldInALaterTurn) {
  EXPECT_EQ(outcome(shop.session.setStorefront("BRA")), tests::kDone);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(heard(), ElementsAre("storefront changed"));
}

TEST_F(StorefrontChange, HoldsForPricesThatAreFetchedFromNowOn) {
  const auto before = shop.session.catalogue().find("gems")->product;
  (void)shop.session.setStorefront("BRA");
  const auto after = shop.session.catalogue().find("gems")->product;
  EXPECT_EQ(after->priceLocale().identifier(), "en_US@currency=BRL");
  EXPECT_EQ(before->priceLocale().identifier(), "en_US@currency=USD");
}

TEST_F(StorefrontChange, LeavesTheProductsEqual) {
  const auto before = shop.session.catalogue().find("gems")->product;
  (void)shop.session.setStorefront("BRA");
  EXPECT_TRUE(*before == *shop.session.catalogue().find("gems")->product);
}

TEST_F(StorefrontChange, ToTheSameCountryIsNoChange) {
  (void)shop.session.setStorefront("USA");
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(StorefrontChange, OfTheLocaleIsNoChangeOfTheStorefront) {
  EXPECT_EQ(outcome(shop.session.setLocale("de_DE")), tests::kDone);
  EXPECT_THAT(heard(), IsEmpty());
  EXPECT_EQ(shop.session.catalogue().find("gems")->product->priceLocale().identifier(),
            "de_DE@currency=USD");
}

TEST_F(StorefrontChange, ToACountryThatDoesNotExistIsRefused) {
  for (const char* country : {"", "US", "usa", "XYZ", "USAA"}) {
    EXPECT_EQ(outcome(shop.session.setStorefront(country)), tests::kInvalidSetting) << country;
  }
  EXPECT_EQ(shop.session.storefront(), "USA");
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(StorefrontChange, BackByTheResetIsAChange) {
  (void)shop.session.setStorefront("BRA");
  (void)heard();
  shop.session.resetToDefaultState();
  EXPECT_EQ(shop.session.storefront(), "USA");
  EXPECT_THAT(heard(), ElementsAre("storefront changed"));
}

TEST_F(StorefrontChange, InTheMiddleOfAPurchaseLetsItGoOn) {
  shop.add("gems");
  turn();
  (void)shop.session.setStorefront("BRA");
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(queue().transactions()), "gems purchased");
}

TEST_F(StorefrontChange, InTheMiddleOfAProductsRequestAnswersWithTheNewPrices) {
  const auto delegate = std::make_shared<tests::RecordingDelegate>();
  SKProductsRequest request({"gems"});
  request.setDelegate(delegate);
  request.start();
  (void)shop.session.setStorefront("BRA");
  (void)turnUntilIdle();
  ASSERT_EQ(delegate->responses.size(), 1U);
  EXPECT_EQ(delegate->responses[0].products.at(0)->priceLocale().identifier(),
            "en_US@currency=BRL");
}

TEST_F(StorefrontChange, ThatTheLedgerRefusesDoesNotHappen) {
  shop.ledger->refusal = Foundation::NSError::withDescription("disk", 28, "No space left.");
  const auto failure = shop.session.setStorefront("BRA");
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->localizedDescription(), "No space left.");
  EXPECT_EQ(shop.session.storefront(), "USA");
  EXPECT_THAT(heard(), IsEmpty());
}

}  // namespace
}  // namespace StoreKit
