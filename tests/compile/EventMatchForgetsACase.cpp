#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"

using TQStoreKitLib::TQStoreKitEvent;

void use(const TQStoreKitEvent& event) {
#ifdef MAKE_IT_RIGHT
  event.match([](const TQStoreKitEvent::PurchaseEvent&) {},
              [](const TQStoreKitEvent::RestoreEvent&) {});
#else
  event.match([](const TQStoreKitEvent::PurchaseEvent&) {});
#endif
}
