// A small shop on the store manager, from launch to purchase: what a game's shop screen does, in
// one file. On an iPhone only main() differs: the application's run loop is there already, and
// there is no store to open.
//
//     example_storefront shop.storekit BRA pt_BR [PRODUCT TO BUY]

#include <cstdio>
#include <string>
#include <vector>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/Foundation/EmulatedSystem.hpp"
#include "platform/embedded/store/StoreSession.hpp"

using namespace TQStoreKitLib;

namespace {

const std::vector<std::string> kProducts = {"gems.100", "levels.sunken-city", "season.spring"};
const std::vector<std::string> kSubscriptions = {"club.monthly", "club.yearly"};

void say(const std::string& text) { std::printf("%s\n", text.c_str()); }

void grant(const std::string& productId, std::int64_t quantity) {
  say("  granted: " + std::to_string(quantity) + " x " + productId);
}

// Transactions that nobody in this run waits for: left over from an earlier run, approved by a
// parent, renewed by the store. Failed and deferred ones come here too, and the library finishes
// what it hands over, so grant after a look at the state only: these two were paid for, the rest
// was not.
void grantWhatWasPaidFor(const std::vector<TQPurchase>& purchases) {
  for (const auto& purchase : purchases) {
    const auto state = purchase.transaction->transactionState();
    if (state == StoreKit::SKPaymentTransactionState::purchased ||
        state == StoreKit::SKPaymentTransactionState::restored) {
      grant(purchase.productId, purchase.quantity);
    }
  }
}

std::string describe(const StoreKit::SKProduct& product) {
  auto text = product.localizedTitle() + ": " + regularPrice(product).value_or("no price");
  if (const auto& period = product.subscriptionPeriod()) {
    text += " / " + localizedSubscriptionPeriod(*period);
  }
  if (const auto& offer = product.introductoryPrice()) {
    text += " (" + localizedPrice(*offer).value_or("") + " / " +
            localizedSubscriptionPeriod(*offer) + ")";
  }
  return text;
}

// The catalogue is a set; the application's own lists know the order of its shop.
StoreKit::SKProductPtr find(const std::string& productId) {
  for (const auto& product : TQStoreKitManager::products()) {
    if (product->productIdentifier() == productId) return product;
  }
  return nullptr;
}

void showShop() {
  for (const auto& list : {TQStoreKitManager::consumableOrNonConsumableProductIds(),
                           TQStoreKitManager::subscriptionProductIds()}) {
    for (const auto& productId : list) {
      if (const auto product = find(productId)) say("  " + describe(*product));
    }
  }
}

void buy(const std::string& productId) {
  const auto product = find(productId);
  if (!product) {
    say("  not for sale: " + productId);
    return Dispatch::MainLoop::stop();
  }
  TQStoreKitManager::purchaseProduct(product, "", std::nullopt, [](const TQPurchaseResult& result) {
    result.match([](const TQPurchaseDetails& bought) { grant(bought.productId, bought.quantity); },
                 [](const TQSKError& error) { say("  " + *error.errorDescription()); });
    Dispatch::MainLoop::stop();
  });
}

void launch(const std::string& productToBuy) {
  TQStoreKitManager::setup(kProducts, kSubscriptions, grantWhatWasPaidFor);
  TQProductIdentifiers all(kProducts.begin(), kProducts.end());
  all.insert(kSubscriptions.begin(), kSubscriptions.end());
  TQStoreKitManager::retriveProducts(all, [productToBuy](const TQProductsResponse& response) {
    if (response.error()) say("  no shop today: " + response.error()->localizedDescription());
    showShop();
    if (productToBuy.empty()) return Dispatch::MainLoop::stop();
    buy(productToBuy);
  });
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() < 3) {
    say("usage: example_storefront CONFIGURATION COUNTRY LOCALE [PRODUCT TO BUY]");
    return 2;
  }
  auto opening = StoreKit::StoreSession::open(arguments[0]);
  for (const auto& problem : opening.problems) say(problem.description());
  if (!opening.ledgerError.empty()) say(opening.ledgerError);
  if (!opening.session) return 2;
  auto refusal = opening.session->setStorefront(arguments[1]);
  if (!refusal) refusal = opening.session->setLocale(arguments[2]);
  if (refusal) {
    say(refusal->localizedDescription());
    return 2;
  }
  Foundation::setCurrentLocale(Foundation::Locale(arguments[2]));

  say(arguments[1] + ", " + arguments[2]);
  launch(arguments.size() > 3 ? arguments[3] : "");
  Dispatch::MainLoop::run();
  while (Dispatch::MainLoop::drain() > 0) {
    // The library still finishes the transaction.
  }
  return 0;
}
