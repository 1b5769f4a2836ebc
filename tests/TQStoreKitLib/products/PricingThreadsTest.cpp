#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "TQStoreKitLib/products/ProductPricing.hpp"
#include "platform/embedded/Foundation/EmulatedSystem.hpp"
#include "tests/TQStoreKitLib/products/pricing/TextTable.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Foundation::Decimal;
using Foundation::Locale;

// Runs the work on four threads that begin together; gives how many of its answers were wrong.
int wrongOnFourThreads(const std::function<bool()>& isRight) {
  constexpr int kThreads = 4;
  std::atomic<int> waiting = kThreads;
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      for (--waiting; waiting > 0;) std::this_thread::yield();
      if (!isRight()) ++wrong;
    });
  }
  for (auto& thread : threads) thread.join();
  return wrong;
}

bool isPriced(const std::vector<std::string>& row) {
  return StoreKit::localizedPrice({.price = *Decimal::fromString(row[1]),
                                   .priceLocale = Locale(row[0]),
                                   .subscriptionPeriod = {}}) == row[2];
}

TEST(PricingThreads, ManyFormatPricesOfManyLocalesAtOnce) {
  const auto table = readTextTable("prices.tsv");
  ASSERT_FALSE(table.empty());
  EXPECT_EQ(wrongOnFourThreads([&] {
              bool right = true;
              for (const auto& texts : table) right = right && isPriced(texts.rows.front());
              return right;
            }),
            0);
}

std::string threeWeeks() {
  return localizedSubscriptionPeriod(
      StoreKit::SKProductSubscriptionPeriod{3, StoreKit::SKProductPeriodUnit::week});
}

TEST(PricingThreads, PeriodIsInOneLocaleOrTheOtherWhileItChanges) {
  Foundation::setCurrentLocale(Locale("en_US"));
  EXPECT_EQ(wrongOnFourThreads([] {
              bool right = true;
              for (int i = 0; i < 50; ++i) {
                Foundation::setCurrentLocale(Locale(i % 2 == 0 ? "de_DE" : "en_US"));
                const auto text = threeWeeks();
                right = right && (text == "3 Wochen" || text == "3 weeks");
              }
              return right;
            }),
            0);
  Foundation::setCurrentLocale(std::nullopt);
}

TEST(PricingThreads, ManyAskForTheEnvironmentsLocaleAtOnce) {
  EXPECT_EQ(wrongOnFourThreads([] { return !Locale::current().identifier().empty(); }), 0);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
