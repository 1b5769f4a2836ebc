#include <gtest/gtest.h>

#include "tests/fakes/PurchasingStore.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKError;

TEST(PurchaseByProduct, BeginIsAnnouncedBeforeThePaymentIsAdded) {
  PurchasingStore subject;

  subject.buy();

  EXPECT_EQ(*subject.journal, (Journal{"event purchase.begin gems", "add gems"}));
  ASSERT_NE(subject.events.purchase(0)->asBegin(), nullptr);
  EXPECT_EQ(subject.events.purchase(0)->asBegin()->product, subject.gems);
}

TEST(PurchaseByProduct, DefaultsAreOneAtomicPieceForNobodyInParticular) {
  PurchasingStore subject;

  subject.buy();

  const auto& platform = subject.queue.payments.at(0);
  EXPECT_EQ(platform.quantity(), 1);
  EXPECT_EQ(platform.applicationUsername(), std::optional<std::string>(""));
  EXPECT_FALSE(platform.simulatesAskToBuyInSandbox());
  EXPECT_FALSE(platform.paymentDiscount());
  EXPECT_TRUE(subject.payments->payments().at(0).atomically);
}

TEST(PurchaseByProduct, OptionsReachThePayment) {
  PurchasingStore subject;

  subject.buy({.quantity = 3,
               .atomically = false,
               .applicationUsername = "anna",
               .simulatesAskToBuyInSandbox = true,
               .paymentDiscount = TQPaymentDiscount({.identifier = "offer"})});

  const auto& platform = subject.queue.payments.at(0);
  EXPECT_EQ(platform.product(), subject.gems);
  EXPECT_EQ(platform.quantity(), 3);
  EXPECT_EQ(platform.applicationUsername(), "anna");
  EXPECT_TRUE(platform.simulatesAskToBuyInSandbox());
  ASSERT_TRUE(platform.paymentDiscount());
  EXPECT_EQ(platform.paymentDiscount()->identifier, "offer");
  EXPECT_FALSE(subject.payments->payments().at(0).atomically);
}

TEST(PurchaseByProduct, SuccessIsAnnouncedThenCompletedThenFinished) {
  PurchasingStore subject;
  subject.buy();
  subject.journal->clear();

  subject.report({aTransaction("gems").purchased()});

  EXPECT_EQ(*subject.journal,
            (Journal{"event purchase.success gems", "completion success", "finish gems"}));
  EXPECT_TRUE(subject.payments->payments().empty());
}

TEST(PurchaseByProduct, SuccessThatIsNotAtomicIsNotFinished) {
  PurchasingStore subject;
  subject.buy({.atomically = false});
  subject.journal->clear();

  subject.report({aTransaction("gems").purchased()});

  EXPECT_EQ(*subject.journal, (Journal{"event purchase.success gems", "completion success"}));
  EXPECT_TRUE(subject.events.purchase(1)->asSuccess()->needsFinishTransaction);
}

TEST(PurchaseByProduct, CancellationIsOneCancelEventAndAnError) {
  PurchasingStore subject;
  subject.buy({.atomically = false});
  subject.journal->clear();

  subject.report({aTransaction("gems").failedWith(SKError::Code::paymentCancelled)});

  EXPECT_EQ(*subject.journal,
            (Journal{"event purchase.cancel gems", "completion error", "finish gems"}));
  EXPECT_EQ(subject.events.purchase(1)->asCancel()->product, subject.gems);
}

TEST(PurchaseByProduct, FailureIsAnnouncedThenCompletedThenFinished) {
  PurchasingStore subject;
  subject.buy();
  subject.journal->clear();

  subject.report({aTransaction("gems").failedWith(SKError::Code::paymentInvalid)});

  EXPECT_EQ(*subject.journal,
            (Journal{"event purchase.failed gems", "completion error", "finish gems"}));
  EXPECT_EQ(subject.events.purchase(1)->asFailed()->error->msg(),
            "The purchase identifier was invalid");
}

TEST(PurchaseByProduct, RestoredTransactionIsASuccessAndGoesOnToTheCompletion) {
  PurchasingStore subject;
  subject.buy();
  subject.journal->clear();

  subject.report({aTransaction("gems").restored()});

  EXPECT_EQ(
      *subject.journal,
      (Journal{"Unexpected restored transaction for payment gems", "event purchase.success gems",
               "completion success", "finish gems",
               "Finishing transaction for payment \"gems\" with state: restored", "finish gems"}));
}

TEST(PurchaseByProduct, EmptyCompletionStillAnnouncesAndFinishes) {
  PurchasingStore subject;
  subject.instance->purchaseProduct(subject.gems, {}, nullptr);
  subject.journal->clear();

  subject.report({aTransaction("gems").purchased()});

  EXPECT_EQ(*subject.journal, (Journal{"event purchase.success gems", "finish gems"}));
}

}  // namespace
}  // namespace TQStoreKitLib::tests
