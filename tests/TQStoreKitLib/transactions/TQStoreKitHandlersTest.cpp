#include <gtest/gtest.h>

#include "TQStoreKitLib/transactions/TQStoreKitInstance.hpp"
#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/EmbeddedShop.hpp"
#include "tests/fakes/FakeDownload.hpp"
#include "tests/fakes/FakeProduct.hpp"
#include "tests/fakes/OnDestruction.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKPaymentQueue;

// Payments wait in the queue until somebody observes it.
bool libraryObserves(EmbeddedShop& shop) {
  const StoreKit::SKMutablePayment payment(aProduct("gems"));
  SKPaymentQueue::defaultQueue().addPayment(payment);
  shop.settle();
  return !SKPaymentQueue::defaultQueue().transactions().empty();
}

PaymentQueueController& controller() {
  return TQStoreKitInstance::shared().paymentQueueController();
}

bool asked() {
  const auto payment = std::make_shared<const StoreKit::SKPayment>(StoreKit::SKPayment::Values{});
  return controller().paymentQueueShouldAddStorePayment(payment, aProduct("gems"));
}

TEST(TQStoreKitHandlers, AreAbsentAtFirst) {
  const EmbeddedShop shop;
  EXPECT_FALSE(TQStoreKit::shouldAddStorePaymentHandler());
  EXPECT_FALSE(TQStoreKit::updatedDownloadsHandler());
}

TEST(TQStoreKitHandlers, ReadingThemOrAskingForPaymentsDoesNotBeginToObserve) {
  EmbeddedShop shop;
  const CapturedPrints prints;

  EXPECT_FALSE(TQStoreKit::shouldAddStorePaymentHandler());
  EXPECT_FALSE(TQStoreKit::updatedDownloadsHandler());
  EXPECT_TRUE(TQStoreKit::canMakePayments());

  EXPECT_FALSE(libraryObserves(shop));
}

TEST(TQStoreKitHandlers, SettingTheStorePaymentHandlerFirstBeginsToObserve) {
  EmbeddedShop shop;
  const CapturedPrints prints;

  TQStoreKit::setShouldAddStorePaymentHandler([](const auto&, const auto&) { return true; });

  EXPECT_TRUE(libraryObserves(shop));
}

TEST(TQStoreKitHandlers, SettingTheDownloadsHandlerFirstBeginsToObserve) {
  EmbeddedShop shop;
  const CapturedPrints prints;

  TQStoreKit::setUpdatedDownloadsHandler([](const auto&) {});

  EXPECT_TRUE(libraryObserves(shop));
}

TEST(TQStoreKitHandlers, ControllingDownloadsFirstBeginsToObserve) {
  EmbeddedShop shop;
  const CapturedPrints prints;

  TQStoreKit::pause({});

  EXPECT_TRUE(libraryObserves(shop));
}

TEST(TQStoreKitHandlers, StorePaymentHandlerReachesTheObserver) {
  const EmbeddedShop shop;

  TQStoreKit::setShouldAddStorePaymentHandler([](const auto&, const auto&) { return true; });

  EXPECT_TRUE(asked());
}

TEST(TQStoreKitHandlers, ReadingGivesBackWhatWasStored) {
  const EmbeddedShop shop;

  TQStoreKit::setShouldAddStorePaymentHandler([](const auto&, const auto&) { return true; });

  ASSERT_TRUE(TQStoreKit::shouldAddStorePaymentHandler());
  EXPECT_TRUE(TQStoreKit::shouldAddStorePaymentHandler()(nullptr, nullptr));
}

TEST(TQStoreKitHandlers, NewStorePaymentHandlerReplacesTheOldOneAtOnce) {
  const EmbeddedShop shop;
  TQStoreKit::setShouldAddStorePaymentHandler([](const auto&, const auto&) { return true; });

  TQStoreKit::setShouldAddStorePaymentHandler([](const auto&, const auto&) { return false; });

  EXPECT_FALSE(asked());
  EXPECT_FALSE(TQStoreKit::shouldAddStorePaymentHandler()(nullptr, nullptr));
}

TEST(TQStoreKitHandlers, EmptyHandlerTakesTheOldOneAway) {
  const EmbeddedShop shop;
  TQStoreKit::setShouldAddStorePaymentHandler([](const auto&, const auto&) { return true; });

  TQStoreKit::setShouldAddStorePaymentHandler(nullptr);

  EXPECT_FALSE(asked());
  EXPECT_FALSE(TQStoreKit::shouldAddStorePaymentHandler());
}

TEST(TQStoreKitHandlers, DownloadsHandlerReachesTheObserverAndIsReplacedAtOnce) {
  const EmbeddedShop shop;
  std::string log;
  TQStoreKit::setUpdatedDownloadsHandler([&](const auto&) { log += "first"; });
  controller().paymentQueueUpdatedDownloads({});

  TQStoreKit::setUpdatedDownloadsHandler(
      [&](const auto& downloads) { log += downloads.at(0)->contentIdentifier(); });
  controller().paymentQueueUpdatedDownloads({aDownload("second")});

  EXPECT_EQ(log, "firstsecond");
  EXPECT_TRUE(TQStoreKit::updatedDownloadsHandler());
}

TEST(TQStoreKitHandlers, HandlerMayReplaceItselfWhileItRuns) {
  const EmbeddedShop shop;
  bool kept = false;
  TQStoreKit::setShouldAddStorePaymentHandler(
      [&kept, captured = std::string(100, 'x')](const auto&, const auto&) {
        TQStoreKit::setShouldAddStorePaymentHandler(nullptr);
        kept = captured == std::string(100, 'x');
        return kept;
      });

  EXPECT_TRUE(asked());

  EXPECT_TRUE(kept);
  EXPECT_FALSE(asked());
}

TEST(TQStoreKitHandlers, ReleasingAHandlerMayReadAndSetTheNextOne) {
  const EmbeddedShop shop;
  bool present = false;
  TQStoreKit::setUpdatedDownloadsHandler([witness = onDestruction([&] {
                                            present = bool(TQStoreKit::updatedDownloadsHandler());
                                            TQStoreKit::setUpdatedDownloadsHandler(nullptr);
                                          })](const auto&) {});

  TQStoreKit::setUpdatedDownloadsHandler([](const auto&) {});

  EXPECT_TRUE(present);
  EXPECT_FALSE(TQStoreKit::updatedDownloadsHandler());
}

}  // namespace
}  // namespace TQStoreKitLib::tests
