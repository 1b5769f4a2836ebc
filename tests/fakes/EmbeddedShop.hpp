#pragma once

#include <stdexcept>
#include <utility>

#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/store/StoreSession.hpp"

namespace TQStoreKitLib::tests {

/// The real embedded store with three things for sale: "gems" and "coins" (consumable) and "level"
/// (not consumable).
struct EmbeddedShop {
  StoreKit::StoreSession session{configuration()};

  /// Runs the main queue until nothing is left to do there.
  static void settle() {
    while (Dispatch::MainLoop::drain() > 0) {
    }
  }

 private:
  static StoreKit::StoreConfiguration configuration() {
    auto reading = StoreKit::parseConfiguration(
        R"({"products":[{"productID":"gems","type":"Consumable","displayPrice":"0.99"},
                        {"productID":"coins","type":"Consumable","displayPrice":"1.99"},
                        {"productID":"level","type":"NonConsumable","displayPrice":"2.99"}]})",
        "shop.storekit");
    if (!reading.configuration) throw std::logic_error("the shop's configuration was refused");
    return std::move(*reading.configuration);
  }
};

}  // namespace TQStoreKitLib::tests
