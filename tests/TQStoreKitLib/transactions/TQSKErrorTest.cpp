#include "TQStoreKitLib/transactions/TQSKError.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "platform/embedded/Foundation/MainBundle.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKError;

std::string messageOf(std::int64_t code) {
  return storeErrorMessage(SKError(
      Foundation::NSError::withDescription("SKErrorDomain", code, "the store's own words")));
}

class Sentences : public testing::TestWithParam<std::pair<int, const char*>> {};

TEST_P(Sentences, KnownCodeHasItsFixedSentenceWhateverTheErrorSays) {
  EXPECT_EQ(messageOf(GetParam().first), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    StoreErrorMessage, Sentences,
    testing::Values(
        std::pair(0, "Unknown error. Please contact support"),
        std::pair(1, "Not allowed to make the payment"),
        std::pair(2,
                  "If you\xE2\x80\x99ve purchased a Premium Subscription, you may need to restore "
                  "your subscription to continually enjoy the Premium features"),
        std::pair(3, "The purchase identifier was invalid"),
        std::pair(4, "The device is not allowed to make the payment"),
        std::pair(5, "The product is not available in the current storefront"),
        std::pair(6, "Access to cloud service information is not allowed"),
        std::pair(7, "Could not connect to the network"),
        std::pair(8, "User has revoked permission to use this cloud service")),
    [](const auto& parameter) { return "Code" + std::to_string(parameter.param.first); });

TEST(StoreErrorMessage, SentenceForACancelledPaymentIs129BytesLong) {
  EXPECT_EQ(messageOf(2).size(), 129U);
}

TEST(StoreErrorMessage, LaterCodesKeepTheErrorsOwnDescription) {
  EXPECT_EQ(messageOf(9), "the store's own words");
  EXPECT_EQ(messageOf(99), "the store's own words");
  EXPECT_EQ(messageOf(std::numeric_limits<std::int64_t>::max()), "the store's own words");
}

TEST(StoreErrorMessage, NegativeCodesKeepTheErrorsOwnDescription) {
  EXPECT_EQ(messageOf(-1), "the store's own words");
  EXPECT_EQ(messageOf(std::numeric_limits<std::int64_t>::min()), "the store's own words");
}

TEST(StoreErrorMessage, LaterCodeWithoutADescriptionHasThePlatformsGeneralOne) {
  const SKError error(SKError::Code::privacyAcknowledgementRequired);

  EXPECT_EQ(storeErrorMessage(error), error.nsError().localizedDescription());
  EXPECT_NE(storeErrorMessage(error), "");
}

TEST(StoreErrorMessage, ErrorWithoutUserInfoHasTheSentenceOfItsCode) {
  EXPECT_EQ(storeErrorMessage(SKError(SKError::Code::unknown)),
            "Unknown error. Please contact support");
}

TEST(StoreErrorMessage, ErrorOfAnotherDomainIsReadByItsCode) {
  const auto inDomain = [](std::int64_t code) {
    return storeErrorMessage(
        SKError(Foundation::NSError::withDescription("NSURLErrorDomain", code, "offline")));
  };

  EXPECT_EQ(inDomain(-1009), "offline");
  EXPECT_EQ(inDomain(7), "Could not connect to the network");
}

TEST(TQSKError, IsMadeWithTheMessageOfTheStoreError) {
  EXPECT_EQ(
      makeStoreError(SKError(SKError::Code::paymentInvalid, "Invalid product id: gems")).msg(),
      "The purchase identifier was invalid");
}

TEST(TQSKError, DescriptionIsTheMessageWhenThereIsNoTranslation) {
  const TQSKError error(detail::LibraryOnly{}, "Not for sale");

  EXPECT_EQ(error.errorDescription(), "Not for sale");
}

TEST(TQSKError, DescriptionIsTheTranslationWhenThereIsOne) {
  Foundation::setMainBundleStrings({{"Not for sale", "Unverkäuflich"}});

  EXPECT_EQ(TQSKError(detail::LibraryOnly{}, "Not for sale").errorDescription(), "Unverkäuflich");
}

TEST(TQSKError, MessageStaysTheKeyWhenThereIsATranslation) {
  Foundation::setMainBundleStrings({{"Not for sale", "Unverkäuflich"}});

  EXPECT_EQ(TQSKError(detail::LibraryOnly{}, "Not for sale").msg(), "Not for sale");
}

TEST(TQSKError, DescriptionIsLookedUpAtEachRead) {
  const TQSKError error(detail::LibraryOnly{}, "Not for sale");
  Foundation::setMainBundleStrings({{"Not for sale", "Unverkäuflich"}});
  const auto german = error.errorDescription();

  Foundation::setMainBundleStrings({{"Not for sale", "Invendable"}});

  EXPECT_EQ(german, "Unverkäuflich");
  EXPECT_EQ(error.errorDescription(), "Invendable");
}

TEST(TQSKError, SentenceOfACancelledPaymentIsItsOwnTranslationKey) {
  const auto error = makeStoreError(SKError(SKError::Code::paymentCancelled));
  Foundation::setMainBundleStrings({{error.msg(), "Abgebrochen"}});

  EXPECT_EQ(error.errorDescription(), "Abgebrochen");
}

TEST(TQSKError, ErrorsWithOneMessageCannotBeToldApart) {
  const TQSKError error(detail::LibraryOnly{}, "Not for sale");

  EXPECT_TRUE(error == TQSKError(detail::LibraryOnly{}, "Not for sale"));
  EXPECT_FALSE(error == TQSKError(detail::LibraryOnly{}, "Sold out"));
}

TEST(TQSKError, CanBeThrownAndCaughtAsAStandardException) {
  try {
    throw TQSKError(detail::LibraryOnly{}, "Not for sale");
  } catch (const std::exception& caught) {
    EXPECT_STREQ(caught.what(), "Not for sale");
  }
}

}  // namespace
}  // namespace TQStoreKitLib::tests
