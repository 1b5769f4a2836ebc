#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"

using Event = TQStoreKitLib::TQStoreKitEvent::PurchaseEvent;

void use(const Event& event) {
#ifdef MAKE_IT_RIGHT
  event.match([](const Event::Begin&) {}, [](const TQStoreKitLib::TQPurchaseDetails&) {},
              [](const Event::Failed&) {}, [](const Event::Cancel&) {});
#else
  event.match([](const Event::Begin&) {}, [](const TQStoreKitLib::TQPurchaseDetails&) {},
              [](const Event::Failed&) {});
#endif
}
