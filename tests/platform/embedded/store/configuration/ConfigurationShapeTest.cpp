#include <gtest/gtest.h>

#include "tests/platform/embedded/store/configuration/ConfigurationTexts.hpp"

namespace StoreKit::tests {
namespace {

struct WrongShape {
  std::string text, place, message;
};

void PrintTo(const WrongShape& shape, std::ostream* out) { *out << shape.place; }

class ConfigurationOfWrongShape : public testing::TestWithParam<WrongShape> {};

TEST_P(ConfigurationOfWrongShape, IsRefused) {
  EXPECT_TRUE(isRefusedWith(parse(GetParam().text), GetParam().place,
                            GetParam().message + "; the file is refused"));
}

INSTANTIATE_TEST_SUITE_P(
    Fields, ConfigurationOfWrongShape,
    testing::Values(
        WrongShape{R"({"products":{}})", "/products", "expected a list, found an object"},
        WrongShape{R"({"nonRenewingSubscriptions":7})", "/nonRenewingSubscriptions",
                   "expected a list, found a number"},
        WrongShape{R"({"subscriptionGroups":"G"})", "/subscriptionGroups",
                   "expected a list, found a text"},
        WrongShape{R"({"subscriptionGroups":[[]]})", "/subscriptionGroups/0",
                   "expected an object, found a list"},
        WrongShape{R"({"subscriptionGroups":[{"subscriptions":false}]})",
                   "/subscriptionGroups/0/subscriptions", "expected a list, found true or false"},
        WrongShape{R"({"products":["gems"]})", "/products/0", "expected an object, found a text"},
        WrongShape{textWithProduct(R"("productID":7,)"), "/products/0/productID",
                   "expected a text, found a number"},
        WrongShape{textWithProduct(R"("type":[],)"), "/products/0/type",
                   "expected a text, found a list"},
        WrongShape{textWithProduct(R"("displayPrice":0.99,)"), "/products/0/displayPrice",
                   "expected a text, found a number"},
        WrongShape{textWithSubscription(R"("recurringSubscriptionPeriod":1,)"),
                   "/subscriptionGroups/0/subscriptions/0/recurringSubscriptionPeriod",
                   "expected a text, found a number"},
        WrongShape{textWithSubscription(R"("adHocOffers":{},)"),
                   "/subscriptionGroups/0/subscriptions/0/adHocOffers",
                   "expected a list, found an object"},
        WrongShape{textWithSubscription(R"("introductoryOffer":{"numberOfPeriods":1.5},)"),
                   "/subscriptionGroups/0/subscriptions/0/introductoryOffer/numberOfPeriods",
                   "expected a whole number, found another number"},
        WrongShape{textWithSubscription(R"("introductoryOffers":[{"displayPrice":1}],)"),
                   "/subscriptionGroups/0/subscriptions/0/introductoryOffers/0/displayPrice",
                   "expected a text, found a number"}));

TEST(ConfigurationShape, ARefusedFileHasItsOtherProblemsReportedToo) {
  const auto reading = parse(R"({"x":1,"x":2,"products":[{"productID":1},{},{"productID":2}]})");
  EXPECT_FALSE(reading.configuration);
  ASSERT_EQ(reading.problems.size(), 4U);
  EXPECT_EQ(reading.problems[0].message, "has the key \"x\" more than once; the first one counts");
  EXPECT_EQ(problemsOf(reading),
            "/products/0/productID: expected a text, found a number; the file is refused\n"
            "/products/1: has no productID; left out\n"
            "/products/2/productID: expected a text, found a number; the file is refused\n");
}

TEST(ConfigurationShape, OfAReasonForRefusalItIsNotSaidWhatItWouldBeReadAs) {
  const auto reading = parse(R"({"subscriptionGroups":[7,{"subscriptions":[
      {"productID":"a","displayPrice":1,"recurringSubscriptionPeriod":2}]}],"products":{}})");
  EXPECT_FALSE(reading.configuration);
  EXPECT_EQ(problemsOf(reading),
            "/subscriptionGroups/0: expected an object, found a number; the file is refused\n"
            "/subscriptionGroups/1/subscriptions/0/displayPrice: expected a text, found a number; "
            "the file is refused\n"
            "/subscriptionGroups/1/subscriptions/0/recurringSubscriptionPeriod: expected a text, "
            "found a number; the file is refused\n"
            "/products: expected a list, found an object; the file is refused\n");
}

}  // namespace
}  // namespace StoreKit::tests
