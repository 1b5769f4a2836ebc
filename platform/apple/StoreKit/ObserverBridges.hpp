#pragma once

#import <StoreKit/StoreKit.h>

#include <functional>
#include <vector>

#include "platform/apple/Retained.hpp"
#include "platform/apple/StoreKit/ObserverBridge.hpp"

namespace StoreKit {

/// The observers that we have put into the platform's payment queue, behind one bridge each.
///
/// Thread: main.
class ObserverBridges {
 public:
  using Call = std::function<void(SKPaymentTransactionObserver&)>;

  /// Puts a bridge into the platform's queue, unless `observer` has one there.
  void add(SKPaymentTransactionObserver& observer);

  /// Cuts the bridge and takes it out of the platform's queue. The queue does not own it and may
  /// be about to call it: it is let go of in a later turn of the main queue.
  void remove(SKPaymentTransactionObserver& observer);

  /// Calls each observer, as the platform would. Observers may come and go meanwhile: one that is
  /// gone is not called any more, one that is new is not called yet.
  void notify(const Call& call) const;

 private:
  using Bridge = Foundation::Retained<TQStoreKitLibObserverBridge*>;
  using Bridges = std::vector<Bridge>;

  [[nodiscard]] Bridges::iterator find(const SKPaymentTransactionObserver& observer);

  Bridges bridges_;
};

}  // namespace StoreKit
