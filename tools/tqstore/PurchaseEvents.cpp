#include "tools/tqstore/PurchaseEvents.hpp"

#include <nlohmann/json.hpp>

#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/Json.hpp"

namespace tqstore {

namespace {

using TQStoreKitLib::TQPurchaseDetails;
using TQStoreKitLib::TQStoreKitEvent;
using PurchaseEvent = TQStoreKitEvent::PurchaseEvent;

// What is shown of an event.
struct EventText {
  const char* name;
  std::string productIdentifier;
};

EventText describe(const PurchaseEvent& event) {
  return event.match(
      [](const PurchaseEvent::Begin& begin) {
        return EventText{"purchase.begin", begin.product->productIdentifier()};
      },
      [](const TQPurchaseDetails& details) {
        return EventText{"purchase.success", details.productId};
      },
      [](const PurchaseEvent::Failed& failed) {
        return EventText{"purchase.failed", failed.productIdentifier};
      },
      [](const PurchaseEvent::Cancel& cancel) {
        return EventText{"purchase.cancel", cancel.product->productIdentifier()};
      });
}

void showEvent(const Foundation::Notification& notification, bool json) {
  const auto* event = notification.object.as<TQStoreKitEvent>();
  if (!event || !event->asPurchase()) return;
  const auto text = describe(*event->asPurchase());
  if (json) {
    writeJson({{"event", text.name}, {"productIdentifier", text.productIdentifier}});
  } else {
    writeLine(styled("event   ", Style::dim) + text.name + "  " +
              printable(text.productIdentifier));
  }
}

}  // namespace

Foundation::NotificationObservation showPurchaseEvents(bool json) {
  return Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(),
      [json](const Foundation::Notification& notification) { showEvent(notification, json); });
}

}  // namespace tqstore
