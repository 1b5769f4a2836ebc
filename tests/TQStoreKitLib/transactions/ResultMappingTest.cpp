#include "TQStoreKitLib/transactions/ResultMapping.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/FakeProduct.hpp"
#include "tests/fakes/RecordedEvents.hpp"

namespace TQStoreKitLib::tests {
namespace {

using PurchaseCase = TQStoreKitEvent::PurchaseEvent::Case;
using StoreKit::SKError;

constexpr auto* kUnknown = "Unknown error. Please contact support";

TEST(PurchaseResultMapping, PurchasedIsASuccessWithTheSameDetails) {
  const RecordedEvents events;

  const auto mapped = mapPurchaseResult(
      "gems", TQTransactionResult::purchased(
                  {.productId = "gems", .quantity = 3, .needsFinishTransaction = true}));

  ASSERT_NE(mapped.asSuccess(), nullptr);
  EXPECT_EQ(mapped.asSuccess()->quantity, 3);
  EXPECT_TRUE(mapped.asSuccess()->needsFinishTransaction);
  ASSERT_EQ(events.notifications.size(), 1U);
  ASSERT_NE(events.purchase(0)->asSuccess(), nullptr);
  EXPECT_EQ(events.purchase(0)->asSuccess()->quantity, 3);
}

TEST(PurchaseResultMapping, CancelledIsAnErrorForTheCallerAndACancelEvent) {
  const RecordedEvents events;
  const auto product = aProduct("gems");

  const auto mapped = mapPurchaseResult(
      "gems", TQTransactionResult::failed(product, SKError(SKError::Code::paymentCancelled)));

  ASSERT_NE(mapped.asError(), nullptr);
  EXPECT_EQ(mapped.asError()->msg(), storeErrorMessage(SKError(SKError::Code::paymentCancelled)));
  ASSERT_EQ(events.notifications.size(), 1U);
  ASSERT_NE(events.purchase(0)->asCancel(), nullptr);
  EXPECT_EQ(events.purchase(0)->asCancel()->product, product);
}

TEST(PurchaseResultMapping, CancelledWithoutAProductIsAFailedEvent) {
  const RecordedEvents events;

  const auto mapped = mapPurchaseResult(
      "gems", TQTransactionResult::failed(nullptr, SKError(SKError::Code::paymentCancelled)));

  EXPECT_NE(mapped.asError(), nullptr);
  ASSERT_EQ(events.notifications.size(), 1U);
  ASSERT_NE(events.purchase(0)->asFailed(), nullptr);
  EXPECT_EQ(events.purchase(0)->asFailed()->productIdentifier, "gems");
}

TEST(PurchaseResultMapping, FailedIsAFailedEventWithTheIdentifierOfThePurchase) {
  const RecordedEvents events;

  const auto mapped = mapPurchaseResult(
      "asked",
      TQTransactionResult::failed(aProduct("other"), SKError(SKError::Code::paymentNotAllowed)));

  const std::string message = "The device is not allowed to make the payment";
  EXPECT_EQ(mapped.asError()->msg(), message);
  ASSERT_EQ(events.notifications.size(), 1U);
  const auto* const failed = events.purchase(0)->asFailed();
  ASSERT_NE(failed, nullptr);
  EXPECT_EQ(failed->productIdentifier, "asked");
  ASSERT_TRUE(failed->error);
  EXPECT_EQ(failed->error->msg(), message);
}

TEST(PurchaseResultMapping, CodesWithoutAnEnumeratorFailWithTheirOwnDescription) {
  for (const std::int64_t code : {99, -1}) {
    const RecordedEvents events;
    const auto error = Foundation::NSError::withDescription("SKErrorDomain", code, "odd");

    const auto mapped =
        mapPurchaseResult("gems", TQTransactionResult::failed(aProduct("gems"), SKError(error)));

    EXPECT_EQ(mapped.asError()->msg(), "odd");
    EXPECT_EQ(events.purchase(0)->tag(), PurchaseCase::failed);
  }
}

TEST(PurchaseResultMapping, RestoredIsAnUnknownErrorAndAFailedEvent) {
  const RecordedEvents events;

  const auto mapped =
      mapPurchaseResult("asked", TQTransactionResult::restored({.productId = "club"}));

  EXPECT_EQ(mapped.asError()->msg(), kUnknown);
  ASSERT_EQ(events.notifications.size(), 1U);
  const auto* const failed = events.purchase(0)->asFailed();
  ASSERT_NE(failed, nullptr);
  EXPECT_EQ(failed->productIdentifier, "asked");
  EXPECT_EQ(failed->error->msg(), kUnknown);
}

TEST(RestoreResultMapping, NothingMapsToNothing) {
  const RecordedEvents events;

  const auto mapped = mapRestoreResults({});

  EXPECT_TRUE(mapped.restoredPurchases.empty());
  EXPECT_TRUE(mapped.restoreFailedPurchases.empty());
  EXPECT_TRUE(events.notifications.empty());
}

TEST(RestoreResultMapping, RestoredPurchasesKeepTheirOrderAndTheirValues) {
  const auto mapped = mapRestoreResults(
      {TQTransactionResult::restored({.productId = "a", .needsFinishTransaction = true}),
       TQTransactionResult::failed(nullptr, SKError(SKError::Code::unknown)),
       TQTransactionResult::restored({.productId = "b", .quantity = 2})});

  ASSERT_EQ(mapped.restoredPurchases.size(), 2U);
  EXPECT_EQ(mapped.restoredPurchases[0].productId, "a");
  EXPECT_TRUE(mapped.restoredPurchases[0].needsFinishTransaction);
  EXPECT_EQ(mapped.restoredPurchases[1].productId, "b");
  EXPECT_EQ(mapped.restoredPurchases[1].quantity, 2);
}

TEST(RestoreResultMapping, FailureHasNoProductIdentifierEvenWithAProduct) {
  const auto mapped = mapRestoreResults({TQTransactionResult::failed(
      aProduct("club"), SKError(Foundation::NSError("NSURLErrorDomain", -1009)))});

  ASSERT_EQ(mapped.restoreFailedPurchases.size(), 1U);
  EXPECT_EQ(mapped.restoreFailedPurchases[0].first.nsError().domain(), "NSURLErrorDomain");
  EXPECT_EQ(mapped.restoreFailedPurchases[0].first.nsError().code(), -1009);
  EXPECT_EQ(mapped.restoreFailedPurchases[0].second, std::nullopt);
}

TEST(RestoreResultMapping, PurchasedIsAFailureWithItsIdentifier) {
  const auto mapped = mapRestoreResults({TQTransactionResult::purchased({.productId = "gems"})});

  EXPECT_TRUE(mapped.restoredPurchases.empty());
  ASSERT_EQ(mapped.restoreFailedPurchases.size(), 1U);
  const auto& [error, productId] = mapped.restoreFailedPurchases[0];
  EXPECT_EQ(error.nsError().domain(), "SKErrorDomain");
  EXPECT_EQ(error.nsError().code(), 0);
  EXPECT_EQ(error.localizedDescription(),
            "Cannot purchase product gems from restore purchases path");
  EXPECT_EQ(productId, "gems");
}

TEST(RestoreResultMapping, FailuresOfBothKindsKeepTheirOrderAndPostNoEvent) {
  const RecordedEvents events;

  const auto mapped = mapRestoreResults(
      {TQTransactionResult::failed(nullptr, SKError(SKError::Code::clientInvalid)),
       TQTransactionResult::purchased({.productId = "gems"}),
       TQTransactionResult::failed(nullptr, SKError(SKError::Code::paymentInvalid))});

  ASSERT_EQ(mapped.restoreFailedPurchases.size(), 3U);
  EXPECT_EQ(mapped.restoreFailedPurchases[0].first.code(), SKError::Code::clientInvalid);
  EXPECT_EQ(mapped.restoreFailedPurchases[1].second, "gems");
  EXPECT_EQ(mapped.restoreFailedPurchases[2].first.code(), SKError::Code::paymentInvalid);
  EXPECT_TRUE(events.notifications.empty());
}

}  // namespace
}  // namespace TQStoreKitLib::tests
