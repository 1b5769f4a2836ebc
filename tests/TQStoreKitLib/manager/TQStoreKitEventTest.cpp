#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/FakeProduct.hpp"

namespace TQStoreKitLib::tests {
namespace {

using PurchaseEvent = TQStoreKitEvent::PurchaseEvent;
using RestoreEvent = TQStoreKitEvent::RestoreEvent;

TQSKError anError(const std::string& message) { return {detail::LibraryOnly{}, message}; }

TEST(PurchaseEvent, TagsAreNumberedInTheOrderOfTheCases) {
  EXPECT_EQ(static_cast<int>(PurchaseEvent::Case::begin), 0);
  EXPECT_EQ(static_cast<int>(PurchaseEvent::Case::success), 1);
  EXPECT_EQ(static_cast<int>(PurchaseEvent::Case::failed), 2);
  EXPECT_EQ(static_cast<int>(PurchaseEvent::Case::cancel), 3);
}

TEST(PurchaseEvent, BeginHoldsTheProductAndNothingElse) {
  const auto product = aProduct("gems");
  const auto event = PurchaseEvent::begin(product);

  EXPECT_EQ(event.tag(), PurchaseEvent::Case::begin);
  ASSERT_NE(event.asBegin(), nullptr);
  EXPECT_EQ(event.asBegin()->product, product);
  EXPECT_EQ(event.asSuccess(), nullptr);
  EXPECT_EQ(event.asFailed(), nullptr);
  EXPECT_EQ(event.asCancel(), nullptr);
}

TEST(PurchaseEvent, SuccessHoldsTheDetailsAndNothingElse) {
  const auto event = PurchaseEvent::success({.productId = "gems", .needsFinishTransaction = true});

  EXPECT_EQ(event.tag(), PurchaseEvent::Case::success);
  ASSERT_NE(event.asSuccess(), nullptr);
  EXPECT_TRUE(event.asSuccess()->needsFinishTransaction);
  EXPECT_EQ(event.asBegin(), nullptr);
  EXPECT_EQ(event.asFailed(), nullptr);
  EXPECT_EQ(event.asCancel(), nullptr);
}

TEST(PurchaseEvent, FailedHoldsIdentifierAndErrorAndNothingElse) {
  const auto event = PurchaseEvent::failed("gems", anError("no"));

  EXPECT_EQ(event.tag(), PurchaseEvent::Case::failed);
  ASSERT_NE(event.asFailed(), nullptr);
  EXPECT_EQ(event.asFailed()->productIdentifier, "gems");
  EXPECT_EQ(event.asFailed()->error->msg(), "no");
  EXPECT_EQ(event.asBegin(), nullptr);
  EXPECT_EQ(event.asSuccess(), nullptr);
  EXPECT_EQ(event.asCancel(), nullptr);
}

TEST(PurchaseEvent, FailedMayHaveNoError) {
  EXPECT_FALSE(PurchaseEvent::failed("gems", std::nullopt).asFailed()->error);
}

TEST(PurchaseEvent, CancelHoldsTheProductAndIsNoBegin) {
  const auto product = aProduct("gems");
  const auto event = PurchaseEvent::cancel(product);

  EXPECT_EQ(event.tag(), PurchaseEvent::Case::cancel);
  ASSERT_NE(event.asCancel(), nullptr);
  EXPECT_EQ(event.asCancel()->product, product);
  EXPECT_EQ(event.asBegin(), nullptr);
  EXPECT_EQ(event.asSuccess(), nullptr);
  EXPECT_EQ(event.asFailed(), nullptr);
}

TEST(RestoreEvent, TagsAreNumberedInTheOrderOfTheCases) {
  EXPECT_EQ(static_cast<int>(RestoreEvent::Case::failed), 0);
  EXPECT_EQ(static_cast<int>(RestoreEvent::Case::success), 1);
}

TEST(RestoreEvent, FailedHoldsTheErrorAndNothingElse) {
  const auto event = RestoreEvent::failed(anError("no"));

  EXPECT_EQ(event.tag(), RestoreEvent::Case::failed);
  ASSERT_NE(event.asFailed(), nullptr);
  EXPECT_EQ(event.asFailed()->msg(), "no");
  EXPECT_EQ(event.asSuccess(), nullptr);
}

TEST(RestoreEvent, SuccessHoldsNoError) {
  const auto event = RestoreEvent::success();

  EXPECT_EQ(event.tag(), RestoreEvent::Case::success);
  EXPECT_NE(event.asSuccess(), nullptr);
  EXPECT_EQ(event.asFailed(), nullptr);
}

TEST(TQStoreKitEvent, TagsAreNumberedInTheOrderOfTheCases) {
  EXPECT_EQ(static_cast<int>(TQStoreKitEvent::Case::purchase), 0);
  EXPECT_EQ(static_cast<int>(TQStoreKitEvent::Case::restore), 1);
}

TEST(TQStoreKitEvent, PurchaseHoldsAPurchaseEventAndNothingElse) {
  const auto event = TQStoreKitEvent::purchase(PurchaseEvent::begin(aProduct("gems")));

  EXPECT_EQ(event.tag(), TQStoreKitEvent::Case::purchase);
  ASSERT_NE(event.asPurchase(), nullptr);
  EXPECT_NE(event.asPurchase()->asBegin(), nullptr);
  EXPECT_EQ(event.asRestore(), nullptr);
}

TEST(TQStoreKitEvent, RestoreHoldsARestoreEventAndNothingElse) {
  const auto event = TQStoreKitEvent::restore(RestoreEvent::success());

  EXPECT_EQ(event.tag(), TQStoreKitEvent::Case::restore);
  ASSERT_NE(event.asRestore(), nullptr);
  EXPECT_NE(event.asRestore()->asSuccess(), nullptr);
  EXPECT_EQ(event.asPurchase(), nullptr);
}

TEST(TQStoreKitEvent, MatchReachesTheInnermostCase) {
  const auto event = TQStoreKitEvent::purchase(PurchaseEvent::failed("gems", anError("no")));

  const auto found = event.match(
      [](const PurchaseEvent& purchase) {
        return purchase.match([](const PurchaseEvent::Begin&) { return std::string("begin"); },
                              [](const TQPurchaseDetails&) { return std::string("success"); },
                              [](const PurchaseEvent::Failed& failed) {
                                return failed.productIdentifier + failed.error->msg();
                              },
                              [](const PurchaseEvent::Cancel&) { return std::string("cancel"); });
      },
      [](const RestoreEvent&) { return std::string("restore"); });

  EXPECT_EQ(found, "gemsno");
}

TEST(TQStoreKitEvent, IsDescribedInOneLineForLogs) {
  const auto described = [](PurchaseEvent event) {
    return TQStoreKitEvent::purchase(std::move(event)).description();
  };

  EXPECT_EQ(described(PurchaseEvent::begin(aProduct("gems"))), "purchase.begin gems");
  EXPECT_EQ(described(PurchaseEvent::success({.productId = "gems"})), "purchase.success gems");
  EXPECT_EQ(described(PurchaseEvent::failed("gems", std::nullopt)), "purchase.failed gems");
  EXPECT_EQ(described(PurchaseEvent::cancel(aProduct("gems"))), "purchase.cancel gems");
  EXPECT_EQ(TQStoreKitEvent::restore(RestoreEvent::success()).description(), "restore.success");
  EXPECT_EQ(TQStoreKitEvent::restore(RestoreEvent::failed(anError("no"))).description(),
            "restore.failed");
}

}  // namespace
}  // namespace TQStoreKitLib::tests
