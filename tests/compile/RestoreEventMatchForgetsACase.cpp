#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"

using Event = TQStoreKitLib::TQStoreKitEvent::RestoreEvent;

void use(const Event& event) {
#ifdef MAKE_IT_RIGHT
  event.match([](const TQStoreKitLib::TQSKError&) {}, [](const Event::Success&) {});
#else
  event.match([](const TQStoreKitLib::TQSKError&) {});
#endif
}
