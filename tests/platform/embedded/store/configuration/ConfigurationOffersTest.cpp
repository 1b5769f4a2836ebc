#include <gtest/gtest.h>

#include "tests/platform/embedded/store/configuration/ConfigurationTexts.hpp"

namespace StoreKit::tests {
namespace {

using Mode = SKProductDiscountPaymentMode;
using Period = SKProductSubscriptionPeriod;
using Unit = SKProductPeriodUnit;
using Subscription = StoreConfiguration::Subscription;

const std::string kPlace = "/subscriptionGroups/0/subscriptions/0";

std::optional<Subscription> subscriptionIn(const ConfigurationReading& reading) {
  if (!reading.configuration || reading.configuration->products.empty()) return std::nullopt;
  return reading.configuration->products[0].subscription;
}

Subscription subscriptionWith(std::string_view fields) {
  return subscriptionIn(parse(textWithSubscription(fields))).value_or(Subscription{});
}

std::string textWithIntroductory(std::string_view members) {
  return textWithSubscription(R"("introductoryOffer":{)" + std::string(members) + "},");
}

std::string textWithPromotional(std::string_view offers) {
  return textWithSubscription(R"("adHocOffers":[)" + std::string(offers) + "],");
}

TEST(ConfigurationSubscription, GroupLevelAndPeriodAreRead) {
  const auto subscription = subscriptionWith(R"("groupNumber":3,"subscriptionGroupID":"G",)");
  EXPECT_EQ(subscription.groupID, "G");
  EXPECT_EQ(subscription.groupNumber, 3);
  EXPECT_EQ(subscription.recurringPeriod, (Period{1, Unit::month}));
}

TEST(ConfigurationSubscription, GroupAroundItCountsWhenItNamesAnother) {
  const auto reading = parse(textWithSubscription(R"("subscriptionGroupID":"H",)"));
  EXPECT_EQ(subscriptionIn(reading)->groupID, "G");
  EXPECT_TRUE(isReadWith(reading, kPlace + "/subscriptionGroupID: \"H\" is not the group around "
                                           "it; read as \"G\"\n"));
}

TEST(ConfigurationSubscription, LevelBelowOneIsReadAsOneWithAWarning) {
  const auto reading = parse(textWithSubscription(R"("groupNumber":0,)"));
  EXPECT_EQ(subscriptionIn(reading)->groupNumber, 1);
  EXPECT_TRUE(isReadWith(reading, kPlace + "/groupNumber: 0 is no level of service; read as 1\n"));
}

TEST(ConfigurationSubscription, EachUnitOfAPeriodIsRead) {
  const auto periodOf = [](const std::string& text) {
    return subscriptionWith(R"("recurringSubscriptionPeriod":")" + text + "\",").recurringPeriod;
  };
  EXPECT_EQ(periodOf("P3D"), (Period{3, Unit::day}));
  EXPECT_EQ(periodOf("P2W"), (Period{2, Unit::week}));
  EXPECT_EQ(periodOf("P6M"), (Period{6, Unit::month}));
  EXPECT_EQ(periodOf("P10Y"), (Period{10, Unit::year}));
}

class MalformedConfigurationPeriod : public testing::TestWithParam<std::string> {};

TEST_P(MalformedConfigurationPeriod, LeavesTheSubscriptionOutWithAWarning) {
  const auto reading =
      parse(textWithSubscription(R"("recurringSubscriptionPeriod":")" + GetParam() + "\","));
  EXPECT_FALSE(subscriptionIn(reading));
  EXPECT_TRUE(isReadWith(reading, kPlace + "/recurringSubscriptionPeriod: \"" + GetParam() +
                                      "\" is no duration such as \"P1M\"; left out\n"));
}

INSTANTIATE_TEST_SUITE_P(Texts, MalformedConfigurationPeriod,
                         testing::Values("", "P", "PM", "P1", "1M", "p1m", "P1m", "P0D", "P-1D",
                                         "P+1D", "P1M15D", "PT1H", "P 1M", "P1M ", "P1.5M", "P1H",
                                         "P1000000D", "P99999999999999999999M"));

TEST(ConfigurationSubscription, WithoutAPeriodIsLeftOut) {
  const auto reading = parse(R"({"subscriptionGroups":[{"id":"G","subscriptions":[{"productID":)"
                             R"("a","type":"RecurringSubscription","displayPrice":"1"}]}]})");
  EXPECT_TRUE(isReadWith(reading, kPlace + ": has no recurringSubscriptionPeriod; left out\n"));
}

TEST(ConfigurationOffer, FieldsOfAnIntroductoryOneAreRead) {
  const auto offer =
      subscriptionIn(
          parse(textWithIntroductory(
              R"("paymentMode":"payAsYouGo","displayPrice":"0.49","subscriptionPeriod":"P1W",)"
              R"("numberOfPeriods":4)")))
          ->introductoryOffer;
  ASSERT_TRUE(offer);
  EXPECT_EQ(offer->paymentMode, Mode::payAsYouGo);
  EXPECT_EQ(offer->displayPrice.toString(), "0.49");
  EXPECT_EQ(offer->subscriptionPeriod, (Period{1, Unit::week}));
  EXPECT_EQ(offer->numberOfPeriods, 4U);
  EXPECT_EQ(offer->offerID, "");
}

TEST(ConfigurationOffer, FreeOneCostsNothingWhateverIsWritten) {
  const auto reading = parse(textWithIntroductory(
      R"("paymentMode":"free","displayPrice":"0.99","subscriptionPeriod":"P3D")"));
  EXPECT_TRUE(isReadWith(reading, ""));
  EXPECT_TRUE(subscriptionIn(reading)->introductoryOffer->displayPrice.isZero());
  EXPECT_EQ(subscriptionIn(reading)->introductoryOffer->paymentMode, Mode::freeTrial);
}

TEST(ConfigurationOffer, MissingNumberOfPeriodsIsOne) {
  const auto reading = parse(textWithIntroductory(
      R"("paymentMode":"payUpFront","displayPrice":"9","subscriptionPeriod":"P3M")"));
  EXPECT_TRUE(isReadWith(reading, ""));
  EXPECT_EQ(subscriptionIn(reading)->introductoryOffer->numberOfPeriods, 1U);
}

TEST(ConfigurationOffer, ImpossibleNumberOfPeriodsIsReadAsTheNearestWithAWarning) {
  const auto reading = parse(textWithIntroductory(
      R"("paymentMode":"free","subscriptionPeriod":"P3M","numberOfPeriods":-2)"));
  EXPECT_EQ(subscriptionIn(reading)->introductoryOffer->numberOfPeriods, 1U);
  EXPECT_TRUE(isReadWith(reading, kPlace + "/introductoryOffer/numberOfPeriods: -2 is no possible "
                                           "number of periods; read as 1\n"));
}

TEST(ConfigurationOffer, NullAndModeNoneMeanNoneSilently) {
  const auto null = parse(textWithSubscription(R"("introductoryOffer":null,)"));
  EXPECT_TRUE(isReadWith(null, ""));
  const auto none = parse(textWithIntroductory(R"("paymentMode":"none","displayPrice":"")"));
  EXPECT_TRUE(isReadWith(none, ""));
  EXPECT_FALSE(subscriptionIn(none)->introductoryOffer);
}

struct Unusable {
  std::string members, problem;
};

void PrintTo(const Unusable& offer, std::ostream* out) { *out << offer.problem; }

class UnusableConfigurationOffer : public testing::TestWithParam<Unusable> {};

TEST_P(UnusableConfigurationOffer, IsNoOfferButKeepsTheSubscription) {
  const auto reading = parse(textWithIntroductory(GetParam().members));
  ASSERT_TRUE(subscriptionIn(reading));
  EXPECT_FALSE(subscriptionIn(reading)->introductoryOffer);
  EXPECT_TRUE(isReadWith(
      reading, kPlace + "/introductoryOffer" + GetParam().problem + "; there is no such offer\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, UnusableConfigurationOffer,
    testing::Values(
        Unusable{R"("subscriptionPeriod":"P1W")", ": has no paymentMode"},
        Unusable{R"("paymentMode":"Free","subscriptionPeriod":"P1W")",
                 R"(/paymentMode: the payment mode "Free" is unknown)"},
        Unusable{R"("paymentMode":"free")", ": has no subscriptionPeriod"},
        Unusable{R"("paymentMode":"free","subscriptionPeriod":"PT1H")",
                 R"(/subscriptionPeriod: "PT1H" is no duration such as "P1M")"},
        Unusable{R"("paymentMode":"payUpFront","subscriptionPeriod":"P1W")",
                 ": has no displayPrice"},
        Unusable{R"("paymentMode":"payUpFront","subscriptionPeriod":"P1W","displayPrice":"?")",
                 R"(/displayPrice: the price "?" has no number)"}));

TEST(ConfigurationOffer, FirstUsableOfTheListComesBeforeTheSingleOne) {
  const auto subscription = subscriptionWith(
      R"("introductoryOffers":[{"paymentMode":"later"},{"paymentMode":"free",)"
      R"("subscriptionPeriod":"P2D"},{"paymentMode":"free","subscriptionPeriod":"P3D"}],)"
      R"("introductoryOffer":{"paymentMode":"free","subscriptionPeriod":"P4D"},)");
  ASSERT_TRUE(subscription.introductoryOffer);
  EXPECT_EQ(subscription.introductoryOffer->subscriptionPeriod, (Period{2, Unit::day}));
}

TEST(ConfigurationOffer, SingleOneIsReadWhenTheListHasNone) {
  const auto subscription =
      subscriptionWith(R"("introductoryOffers":[],"introductoryOffer":{"paymentMode":"free",)"
                       R"("subscriptionPeriod":"P4D"},)");
  ASSERT_TRUE(subscription.introductoryOffer);
  EXPECT_EQ(subscription.introductoryOffer->subscriptionPeriod, (Period{4, Unit::day}));
}

TEST(ConfigurationOffer, PromotionalOnesAreReadInOrder) {
  const auto reading = parse(
      textWithPromotional(R"({"offerID":"b","paymentMode":"free","subscriptionPeriod":"P1M"},)"
                          R"({"offerID":"a","paymentMode":"payUpFront","subscriptionPeriod":"P1M",)"
                          R"("displayPrice":"1"})"));
  ASSERT_EQ(subscriptionIn(reading)->adHocOffers.size(), 2U);
  EXPECT_EQ(subscriptionIn(reading)->adHocOffers[0].offerID, "b");
  EXPECT_EQ(subscriptionIn(reading)->adHocOffers[1].offerID, "a");
}

TEST(ConfigurationOffer, PromotionalOneThatNothingCanNameIsLeftOut) {
  const auto reading = parse(
      textWithPromotional(R"({"paymentMode":"free","subscriptionPeriod":"P1M"},)"
                          R"({"offerID":"","paymentMode":"free","subscriptionPeriod":"P1M"})"));
  EXPECT_TRUE(subscriptionIn(reading)->adHocOffers.empty());
  EXPECT_TRUE(
      isReadWith(reading, kPlace + "/adHocOffers/0: has no offerID to name it by; left out\n" +
                              kPlace + "/adHocOffers/1: has no offerID to name it by; left out\n"));
}

TEST(ConfigurationOffer, RepeatedPromotionalIdentifierKeepsTheFirst) {
  const auto reading = parse(
      textWithPromotional(R"({"offerID":"a","paymentMode":"free","subscriptionPeriod":"P1M"},)"
                          R"({"offerID":"a","paymentMode":"free","subscriptionPeriod":"P2M"})"));
  ASSERT_EQ(subscriptionIn(reading)->adHocOffers.size(), 1U);
  EXPECT_EQ(subscriptionIn(reading)->adHocOffers[0].subscriptionPeriod, (Period{1, Unit::month}));
  EXPECT_TRUE(isReadWith(reading, kPlace + "/adHocOffers/1/offerID: the offer \"a\" is there "
                                           "already; the first one is kept\n"));
}

}  // namespace
}  // namespace StoreKit::tests
