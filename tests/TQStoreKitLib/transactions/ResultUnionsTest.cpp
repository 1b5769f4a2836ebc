#include <gtest/gtest.h>

#include "TQStoreKitLib/transactions/TQPurchaseResult.hpp"
#include "TQStoreKitLib/transactions/TQTransactionResult.hpp"
#include "tests/fakes/FakeProduct.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKError;

TQSKError anError(const std::string& message) { return {detail::LibraryOnly{}, message}; }

TEST(TQTransactionResult, TagsAreNumberedInTheOrderOfTheCases) {
  using Case = TQTransactionResult::Case;
  EXPECT_EQ(static_cast<int>(Case::purchased), 0);
  EXPECT_EQ(static_cast<int>(Case::restored), 1);
  EXPECT_EQ(static_cast<int>(Case::failed), 2);
}

TEST(TQTransactionResult, PurchasedHoldsDetailsAndNothingElse) {
  const auto result = TQTransactionResult::purchased({.productId = "gems", .quantity = 2});

  EXPECT_EQ(result.tag(), TQTransactionResult::Case::purchased);
  ASSERT_NE(result.asPurchased(), nullptr);
  EXPECT_EQ(result.asPurchased()->quantity, 2);
  EXPECT_EQ(result.asRestored(), nullptr);
  EXPECT_EQ(result.asFailed(), nullptr);
}

TEST(TQTransactionResult, RestoredHoldsAPurchaseAndNothingElse) {
  const auto result = TQTransactionResult::restored({.productId = "club"});

  EXPECT_EQ(result.tag(), TQTransactionResult::Case::restored);
  ASSERT_NE(result.asRestored(), nullptr);
  EXPECT_EQ(result.asRestored()->productId, "club");
  EXPECT_EQ(result.asPurchased(), nullptr);
  EXPECT_EQ(result.asFailed(), nullptr);
}

TEST(TQTransactionResult, FailedHoldsProductAndErrorAndNothingElse) {
  const auto product = aProduct("gems");
  const auto result = TQTransactionResult::failed(product, SKError(SKError::Code::paymentInvalid));

  EXPECT_EQ(result.tag(), TQTransactionResult::Case::failed);
  ASSERT_NE(result.asFailed(), nullptr);
  EXPECT_EQ(result.asFailed()->product, product);
  EXPECT_EQ(result.asFailed()->error.code(), SKError::Code::paymentInvalid);
  EXPECT_EQ(result.asPurchased(), nullptr);
  EXPECT_EQ(result.asRestored(), nullptr);
}

TEST(TQTransactionResult, ErrorCodeWithoutAnEnumeratorArrivesUnchanged) {
  const auto result =
      TQTransactionResult::failed(nullptr, SKError(Foundation::NSError("SKErrorDomain", -1)));

  EXPECT_EQ(static_cast<std::int64_t>(result.asFailed()->error.code()), -1);
}

TEST(TQTransactionResult, MatchCallsTheFunctionOfItsCase) {
  const auto name = [](const TQTransactionResult& result) {
    return result.match(
        [](const TQPurchaseDetails& details) { return "purchased " + details.productId; },
        [](const TQPurchase& purchase) { return "restored " + purchase.productId; },
        [](const TQTransactionResult::Failed&) { return std::string("failed"); });
  };

  EXPECT_EQ(name(TQTransactionResult::purchased({.productId = "gems"})), "purchased gems");
  EXPECT_EQ(name(TQTransactionResult::restored({.productId = "club"})), "restored club");
  EXPECT_EQ(name(TQTransactionResult::failed(nullptr, SKError(SKError::Code::unknown))), "failed");
}

TEST(TQPurchaseResult, TagsAreNumberedInTheOrderOfTheCases) {
  EXPECT_EQ(static_cast<int>(TQPurchaseResult::Case::success), 0);
  EXPECT_EQ(static_cast<int>(TQPurchaseResult::Case::error), 1);
}

TEST(TQPurchaseResult, SuccessHoldsDetailsAndNothingElse) {
  const auto result = TQPurchaseResult::success({.productId = "gems"});

  EXPECT_EQ(result.tag(), TQPurchaseResult::Case::success);
  ASSERT_NE(result.asSuccess(), nullptr);
  EXPECT_EQ(result.asSuccess()->productId, "gems");
  EXPECT_EQ(result.asError(), nullptr);
}

TEST(TQPurchaseResult, ErrorHoldsAnErrorAndNothingElse) {
  const auto result = TQPurchaseResult::error(anError("no"));

  EXPECT_EQ(result.tag(), TQPurchaseResult::Case::error);
  ASSERT_NE(result.asError(), nullptr);
  EXPECT_EQ(result.asError()->msg(), "no");
  EXPECT_EQ(result.asSuccess(), nullptr);
}

TEST(TQPurchaseResult, MatchGivesAReferenceIntoThePayload) {
  const auto result = TQPurchaseResult::error(anError("no"));
  const std::string empty;

  const std::string& message =
      result.match([&](const TQPurchaseDetails&) -> const std::string& { return empty; },
                   [](const TQSKError& error) -> const std::string& { return error.msg(); });

  EXPECT_EQ(&message, &result.asError()->msg());
}

TEST(TQPurchaseResult, CopyOutlivesTheOriginal) {
  auto original = std::make_unique<TQPurchaseResult>(TQPurchaseResult::error(anError("no")));
  const auto copy = *original;

  original.reset();

  EXPECT_EQ(copy.asError()->msg(), "no");
}

}  // namespace
}  // namespace TQStoreKitLib::tests
