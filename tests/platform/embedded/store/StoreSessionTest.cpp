#include "platform/embedded/store/StoreSession.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/fakes/OpenShop.hpp"

namespace StoreKit {
namespace {

namespace fs = std::filesystem;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turnUntilIdle;

// A configuration file that lives as long as one test.
class StoreSessionTest : public testing::Test {
 protected:
  OpenShop shop;
  JournalingObserver observer;
  fs::path file =
      fs::temp_directory_path() / ("session-" + std::to_string(::getpid()) + ".storekit");

  ~StoreSessionTest() override { fs::remove(file); }

  [[nodiscard]] StoreSession::Opening open(std::string_view text) const {
    std::ofstream(file) << text;
    return StoreSession::open(file.string(),
                              {.ledger = ":memory:", .sources = tests::countingSources()});
  }
};

constexpr auto kPearls =
    R"({"products":[{"productID":"pearls","type":"Consumable","displayPrice":"1.99"}]})";

TEST_F(StoreSessionTest, OpensAFile) {
  const auto opening = open(kPearls);
  ASSERT_NE(opening.session, nullptr);
  EXPECT_THAT(opening.problems, testing::IsEmpty());
  EXPECT_NE(opening.session->catalogue().find("pearls"), nullptr);
  EXPECT_EQ(opening.session->catalogue().find("gems"), nullptr);
}

TEST_F(StoreSessionTest, UsesTheSourcesThatItIsGiven) {
  const auto opening = open(kPearls);
  observer.observe();
  EXPECT_EQ(shop.buy("pearls")->transactionIdentifier(), "101");
}

TEST_F(StoreSessionTest, SaysWhatIsOddAboutAFileThatItOpens) {
  const auto opening = open(R"({"products":[{"productID":"x","type":"Odd","displayPrice":"1"}]})");
  EXPECT_NE(opening.session, nullptr);
  EXPECT_EQ(opening.problems.size(), 1U);
}

TEST_F(StoreSessionTest, RefusedFileGivesNoSessionAndTheReason) {
  const auto opening = open("{ truncated");
  EXPECT_EQ(opening.session, nullptr);
  ASSERT_EQ(opening.problems.size(), 1U);
  EXPECT_EQ(opening.problems[0].severity, ConfigurationProblem::Severity::error);
}

TEST_F(StoreSessionTest, RefusedFileLeavesTheStoreThatWasOpenUntouched) {
  observer.observe();
  const auto transaction = shop.buy("gems");
  const auto product = shop.session.catalogue().find("gems")->product;
  shop.add("crown");
  (void)open("{ truncated");
  EXPECT_EQ(shop.session.catalogue().find("gems")->product, product);
  EXPECT_EQ(OpenShop::queue().transactions().at(0), transaction);
  (void)turnUntilIdle();
  EXPECT_EQ(observer.journal().back(), "updated: crown purchased");
}

TEST_F(StoreSessionTest, RefusedFileLeavesTheScriptOfTheStoreThatWasOpen) {
  observer.observe();
  shop.session.cancelPurchases();
  (void)open("{ truncated");
  EXPECT_EQ(shop.buy("gems")->transactionState(), SKPaymentTransactionState::failed);
}

TEST_F(StoreSessionTest, DestroyingASessionClosesNothing) {
  observer.observe();
  {
    const StoreSession another(tests::shop());
  }
  EXPECT_EQ(shop.buy("gems")->transactionState(), SKPaymentTransactionState::purchased);
}

TEST_F(StoreSessionTest, AnotherStoreBeginsWithAnEmptyLedger) {
  observer.observe();
  shop.buy("gems");
  const StoreSession another(tests::shop());
  observer.forget();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), testing::IsEmpty());
  EXPECT_THAT(OpenShop::queue().transactions(), testing::IsEmpty());
}

TEST_F(StoreSessionTest, ConfigurationChoosesLocaleAndStorefront) {
  auto configuration = tests::shop();
  configuration.settings.locale = "de_DE";
  configuration.settings.storefront = "JPN";
  const StoreSession session(configuration);
  EXPECT_EQ(session.catalogue().find("gems")->product->priceLocale().identifier(),
            "de_DE@currency=JPY");
}

TEST_F(StoreSessionTest, IdentifiersAreDigitsAndDifferWhenNoSourceIsGiven) {
  const StoreSession session(tests::shop());
  observer.observe();
  const auto first = shop.buy("gems")->transactionIdentifier();
  const auto second = shop.buy("gems")->transactionIdentifier();
  ASSERT_TRUE(first && second);
  EXPECT_EQ(first->find_first_not_of("0123456789"), std::string::npos);
  EXPECT_NE(first, second);
}

TEST_F(StoreSessionTest, DatesAreTheSystemsTimeWhenNoSourceIsGiven) {
  const StoreSession session(tests::shop());
  observer.observe();
  const auto before = Foundation::Date::now();
  const auto date = shop.buy("gems")->transactionDate();
  ASSERT_TRUE(date);
  EXPECT_FALSE(*date < before);
  EXPECT_FALSE(Foundation::Date::now() < *date);
}

}  // namespace
}  // namespace StoreKit
