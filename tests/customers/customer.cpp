// What a customer's program looks like: it names one target and includes one header.

#include <TQStoreKitLib/TQStoreKitLib.hpp>
#include <cstdio>
#include <platform/embedded/Dispatch/MainLoop.hpp>
#include <platform/embedded/store/StoreSession.hpp>

int main() {
  StoreKit::StoreConfiguration shop;
  shop.products.push_back({.productID = "gems", .displayPrice = 1});
  const StoreKit::StoreSession session(shop);
  bool bought = false;
  TQStoreKitLib::TQStoreKit::completeTransactions({}, nullptr);
  TQStoreKitLib::TQStoreKit::purchaseProduct(
      "gems", {.quantity = 2}, [&](const TQStoreKitLib::TQPurchaseResult& result) {
        const auto* details = result.asSuccess();
        bought = details != nullptr && details->quantity == 2;
        Dispatch::MainLoop::stop();
      });
  Dispatch::MainLoop::run();
  std::puts(bought ? "bought" : "not bought");
  return bought ? 0 : 1;
}
