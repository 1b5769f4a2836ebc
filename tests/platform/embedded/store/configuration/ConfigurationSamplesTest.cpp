#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/platform/embedded/store/configuration/ConfigurationTexts.hpp"

namespace StoreKit::tests {
namespace {

namespace fs = std::filesystem;

const fs::path kOwnFiles = fs::path(TQSTOREKIT_TEST_DATA) / "configurations";
const fs::path kShop =
    fs::path(TQSTOREKIT_TEST_DATA) / ".." / "examples" / "configurations" / "shop.storekit";

// The files of a person who has a collection of real ones, else our own.
std::vector<fs::path> sampleFiles() {
  const char* const folder = std::getenv("TQSTOREKIT_SAMPLES");
  std::vector<fs::path> files;
  for (const auto& file : fs::recursive_directory_iterator(folder ? folder : kOwnFiles)) {
    if (file.path().extension() == ".storekit") files.push_back(file.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string textOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// What every outcome has to keep, whatever the text.
void expectSoundReading(const ConfigurationReading& reading) {
  const bool hasError =
      std::any_of(reading.problems.begin(), reading.problems.end(), [](const auto& problem) {
        return problem.severity == ConfigurationProblem::Severity::error;
      });
  ASSERT_NE(reading.configuration.has_value(), hasError);
  if (!reading.configuration) return;
  for (const auto& product : reading.configuration->products) {
    ASSERT_FALSE(product.productID.empty());
    ASSERT_FALSE(product.displayPrice.isNegative());
    ASSERT_EQ(product.subscription.has_value(),
              product.type == ProductType::autoRenewableSubscription);
  }
}

TEST(ConfigurationSamples, EachGivesProductsOrSaysWhyNot) {
  const auto files = sampleFiles();
  ASSERT_FALSE(files.empty());
  for (const auto& file : files) {
    SCOPED_TRACE(file);
    const auto reading = readConfiguration(file.string());
    expectSoundReading(reading);
    const auto text = textOf(file);
    const bool sells = reading.configuration && !reading.configuration->products.empty();
    const bool namesProducts = text.find("\"productID\"") != text.npos;
    EXPECT_TRUE(sells || !namesProducts || !reading.problems.empty());
  }
}

TEST(ConfigurationSamples, EveryVersionIsReadWithoutAWord) {
  for (const std::string version : {"1.0", "1.1", "2.0", "3.0", "4.0", "5.0", "6.3"}) {
    SCOPED_TRACE(version);
    const auto reading =
        readConfiguration((kOwnFiles / ("version-" + version + ".storekit")).string());
    ASSERT_TRUE(isReadWith(reading, ""));
    const auto& club = reading.configuration->products.back();
    EXPECT_EQ(club.productID, "orchard.monthly");
    ASSERT_TRUE(club.subscription && club.subscription->introductoryOffer);
    EXPECT_EQ(club.subscription->introductoryOffer->displayPrice.toString(), "0.99");
    EXPECT_EQ(club.subscription->adHocOffers.at(0).offerID, "orchard.winter");
  }
}

TEST(ConfigurationSamples, SubscriptionPriceComesBeforeThatOfABillingPlan) {
  const auto reading = readConfiguration((kOwnFiles / "version-5.0.storekit").string());
  EXPECT_EQ(reading.configuration->products.back().displayPrice.toString(), "4.99");
}

TEST(ConfigurationSamples, SettingsOfVersionTwoNameTheFailure) {
  const auto reading = readConfiguration((kOwnFiles / "version-2.0.storekit").string());
  EXPECT_TRUE(reading.configuration->settings.failTransactionsEnabled);
  EXPECT_EQ(reading.configuration->settings.failureError, 2);
}

TEST(ConfigurationSamples, MarkCarriageReturnsAndCompactStyleDoNotMatter) {
  const auto reading =
      readConfiguration((kOwnFiles / "compact-with-bom-and-crlf.storekit").string());
  ASSERT_TRUE(reading.configuration);
  EXPECT_EQ(reading.configuration->products.at(0).productID, "compact.one");
}

TEST(ConfigurationSamples, ShopOfTheExamplesIsReadWithoutAWord) {
  const auto reading = readConfiguration(kShop.string());
  ASSERT_TRUE(isReadWith(reading, ""));
  std::vector<std::string> identifiers;
  for (const auto& product : reading.configuration->products) {
    identifiers.push_back(product.productID);
  }
  EXPECT_EQ(identifiers,
            (std::vector<std::string>{"gems.100", "gems.550", "levels.sunken-city", "season.spring",
                                      "club.yearly", "club.monthly"}));
}

TEST(ConfigurationRobustness, EveryPrefixOfAFileIsRefused) {
  const auto text = textOf(kShop);
  const auto end = text.find_last_of('}');
  ASSERT_NE(end, text.npos);
  for (std::size_t length = 0; length <= end; ++length) {
    const auto reading = parse(std::string_view(text).substr(0, length));
    ASSERT_FALSE(reading.configuration) << length;
    ASSERT_EQ(reading.problems.size(), 1U) << length;
    ASSERT_FALSE(reading.problems[0].message.empty()) << length;
  }
}

// Each byte by three of these in turn; of an indentation the last blank only.
TEST(ConfigurationRobustness, FileWithAnyByteReplacedIsReadSoundlyOrRefused) {
  constexpr std::string_view kOthers("\0\"{],0-e\\\xFF", 10);
  auto text = textOf(kOwnFiles / "version-4.0.storekit");
  std::size_t turn = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char original = text[at];
    if (text.compare(at, 2, "  ") == 0) continue;
    for (int i = 0; i < 3; ++i) {
      text[at] = kOthers[turn++ % kOthers.size()];
      ASSERT_NO_FATAL_FAILURE(expectSoundReading(parse(text))) << at;
    }
    text[at] = original;
  }
}

TEST(ConfigurationRobustness, FileWithAnyByteMissingIsReadSoundlyOrRefused) {
  const auto text = textOf(kOwnFiles / "odd-offers.storekit");
  for (std::size_t at = 0; at < text.size(); ++at) {
    auto shorter = text;
    shorter.erase(at, 1);
    ASSERT_NO_FATAL_FAILURE(expectSoundReading(parse(shorter))) << at;
  }
}

}  // namespace
}  // namespace StoreKit::tests
