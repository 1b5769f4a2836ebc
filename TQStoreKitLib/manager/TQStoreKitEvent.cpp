#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"

namespace TQStoreKitLib {

namespace {

std::string describe(const TQStoreKitEvent::PurchaseEvent& event) {
  using Event = TQStoreKitEvent::PurchaseEvent;
  return event.match(
      [](const Event::Begin& begin) {
        return "purchase.begin " + begin.product->productIdentifier();
      },
      [](const TQPurchaseDetails& details) { return "purchase.success " + details.productId; },
      [](const Event::Failed& failed) { return "purchase.failed " + failed.productIdentifier; },
      [](const Event::Cancel& cancel) {
        return "purchase.cancel " + cancel.product->productIdentifier();
      });
}

std::string describe(const TQStoreKitEvent::RestoreEvent& event) {
  return event.asSuccess() ? "restore.success" : "restore.failed";
}

}  // namespace

std::string TQStoreKitEvent::description() const {
  return match([](const auto& event) { return describe(event); });
}

const Foundation::NotificationName& TQStoreKitEvent::kTQStoreKitEvent() {
  static const auto& name = *new Foundation::NotificationName("kTQStoreKitEvent");
  return name;
}

void TQStoreKitEvent::broadcastEvent(const TQStoreKitEvent& event, bool ignore) {
  if (ignore) return;
  Foundation::NotificationCenter::defaultCenter().post(kTQStoreKitEvent(),
                                                       Foundation::NotificationObject::box(event));
}

}  // namespace TQStoreKitLib
