#include "platform/apple/StoreKit/ObserverBridges.hpp"

#include <algorithm>
#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/apple/ExceptionBarrier.hpp"

namespace StoreKit {

ObserverBridges::Bridges::iterator ObserverBridges::find(
    const SKPaymentTransactionObserver& observer) {
  return std::find_if(bridges_.begin(), bridges_.end(),
                      [&](const Bridge& bridge) { return [bridge.get() observer] == &observer; });
}

void ObserverBridges::add(SKPaymentTransactionObserver& observer) {
  if (find(observer) != bridges_.end()) return;
  bridges_.push_back(
      Bridge::adopt([[TQStoreKitLibObserverBridge alloc] initWithObserver:&observer]));
  Foundation::callPlatform("SKPaymentQueue::addTransactionObserver", [bridge = bridges_.back()] {
    [[::SKPaymentQueue defaultQueue] addTransactionObserver:bridge.get()];
  });
}

void ObserverBridges::remove(SKPaymentTransactionObserver& observer) {
  const auto found = find(observer);
  if (found == bridges_.end()) return;
  auto bridge = std::move(*found);
  bridges_.erase(found);
  [bridge.get() disconnect];
  Foundation::callPlatform("SKPaymentQueue::removeTransactionObserver", [&] {
    [[::SKPaymentQueue defaultQueue] removeTransactionObserver:bridge.get()];
  });
  Dispatch::mainQueue().async([bridge = std::move(bridge)] {});
}

void ObserverBridges::notify(const Call& call) const {
  const auto bridges = bridges_;
  for (const auto& bridge : bridges) {
    if (auto* const observer = [bridge.get() observer]) call(*observer);
  }
}

}  // namespace StoreKit
