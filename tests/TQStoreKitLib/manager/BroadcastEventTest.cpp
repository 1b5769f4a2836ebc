#include <gtest/gtest.h>

#include "tests/fakes/FakeProduct.hpp"
#include "tests/fakes/RecordedEvents.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Foundation::NotificationCenter;
using PurchaseEvent = TQStoreKitEvent::PurchaseEvent;

TQStoreKitEvent anEvent(const std::string& productId) {
  return TQStoreKitEvent::purchase(PurchaseEvent::begin(aProduct(productId)));
}

TEST(BroadcastEvent, NameIsTheSameObjectWithItsTextAtEachRead) {
  EXPECT_EQ(TQStoreKitEvent::kTQStoreKitEvent().rawValue(), "kTQStoreKitEvent");
  EXPECT_EQ(&TQStoreKitEvent::kTQStoreKitEvent(), &TQStoreKitEvent::kTQStoreKitEvent());
}

TEST(BroadcastEvent, ObserverGetsTheVeryEventAndNoUserInfo) {
  const RecordedEvents events;
  const auto product = aProduct("gems");

  TQStoreKitEvent::broadcastEvent(TQStoreKitEvent::purchase(PurchaseEvent::begin(product)), false);

  ASSERT_EQ(events.notifications.size(), 1U);
  EXPECT_EQ(events.notifications[0].name, TQStoreKitEvent::kTQStoreKitEvent());
  EXPECT_FALSE(events.notifications[0].userInfo);
  ASSERT_NE(events.purchase(0), nullptr);
  EXPECT_EQ(events.purchase(0)->asBegin()->product, product);
}

TEST(BroadcastEvent, IgnoredEventIsNotPosted) {
  const RecordedEvents events;

  TQStoreKitEvent::broadcastEvent(anEvent("gems"), true);

  EXPECT_TRUE(events.notifications.empty());
}

TEST(BroadcastEvent, RestoreEventsArePostedTheSameWay) {
  const RecordedEvents events;

  TQStoreKitEvent::broadcastEvent(
      TQStoreKitEvent::restore(TQStoreKitEvent::RestoreEvent::success()), false);

  ASSERT_EQ(events.notifications.size(), 1U);
  const auto* const event = events.notifications[0].object.as<TQStoreKitEvent>();
  ASSERT_NE(event, nullptr);
  EXPECT_NE(event->asRestore()->asSuccess(), nullptr);
}

TEST(BroadcastEvent, ObserversOfOtherNamesHearNothing) {
  int heard = 0;
  const auto listening = NotificationCenter::defaultCenter().addObserver(
      Foundation::NotificationName("kTQStoreKitEvents"), [&](const auto&) { ++heard; });

  TQStoreKitEvent::broadcastEvent(anEvent("gems"), false);

  EXPECT_EQ(heard, 0);
}

TEST(BroadcastEvent, ObserverHasRunWhenItReturns) {
  bool ran = false;
  const auto listening = NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&](const auto&) { ran = true; });

  TQStoreKitEvent::broadcastEvent(anEvent("gems"), false);

  EXPECT_TRUE(ran);
}

TEST(BroadcastEvent, ObserverMayBroadcastAnotherEvent) {
  const RecordedEvents events;
  bool again = true;
  const auto listening = NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&](const auto&) {
        if (std::exchange(again, false)) {
          TQStoreKitEvent::broadcastEvent(anEvent("coins"), false);
        }
      });

  TQStoreKitEvent::broadcastEvent(anEvent("gems"), false);

  EXPECT_EQ(events.lines(), (Journal{"event purchase.begin gems", "event purchase.begin coins"}));
}

TEST(BroadcastEvent, ObserverMayEndItsOwnObservation) {
  int heard = 0;
  Foundation::NotificationObservation listening;
  listening = NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&, captured = std::string(100, 'x')](const auto&) {
        listening.cancel();
        heard += captured.size() == 100 ? 1 : 0;
      });

  TQStoreKitEvent::broadcastEvent(anEvent("gems"), false);
  TQStoreKitEvent::broadcastEvent(anEvent("gems"), false);

  EXPECT_EQ(heard, 1);
}

TEST(BroadcastEvent, NotificationOutlivesTheBroadcast) {
  const RecordedEvents events;
  TQStoreKitEvent::broadcastEvent(anEvent("gems"), false);

  EXPECT_EQ(events.purchase(0)->asBegin()->product->productIdentifier(), "gems");
}

}  // namespace
}  // namespace TQStoreKitLib::tests
