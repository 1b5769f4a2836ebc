// One purchase, from launch to finish, on the embedded store. On an iPhone only main() differs: the
// application's own run loop is there already, and there is no store to open.
//
//     example_purchase shop.storekit [PRODUCT]

#include <cstdio>
#include <string>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/store/StoreSession.hpp"

using namespace TQStoreKitLib;

namespace {

void say(const std::string& text) { std::printf("%s\n", text.c_str()); }

// Analytics, screens and the like listen here; they need not know who buys.
Foundation::NotificationObservation listen() {
  return Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [](const Foundation::Notification& notification) {
        if (const auto* event = notification.object.as<TQStoreKitEvent>()) {
          say("event:    " + event->description());
        }
      });
}

// What an earlier run paid for and did not get delivered arrives here, so register at launch.
void deliverLeftovers() {
  TQStoreKit::completeTransactions({}, [](const std::vector<TQPurchase>& purchases) {
    for (const auto& purchase : purchases) {
      const auto state = purchase.transaction->transactionState();
      // Failed and deferred transactions come here too: only these two were paid for.
      if (state == StoreKit::SKPaymentTransactionState::purchased ||
          state == StoreKit::SKPaymentTransactionState::restored) {
        say("delivered: " + purchase.productId);
      }
    }
  });
}

void buy(const StoreKit::SKProductPtr& product) {
  TQStoreKit::purchaseProduct(product, {.quantity = 1}, [](const TQPurchaseResult& result) {
    result.match(
        [](const TQPurchaseDetails& details) {
          say("bought:   " + std::to_string(details.quantity) + " x " + details.productId +
              ", transaction " + details.transaction->transactionIdentifier().value_or("?"));
        },
        [](const TQSKError& error) { say("error:    " + *error.errorDescription()); });
    Dispatch::MainLoop::stop();
  });
}

void fetchAndBuy(const std::string& productId) {
  TQStoreKit::fetchProductsInfo({productId}, [productId](const TQProductsResponse& response) {
    if (response.valids().empty()) {
      say("the store does not sell " + productId);
      return Dispatch::MainLoop::stop();
    }
    const auto& product = *response.valids().begin();
    say("fetched:  " + product->localizedTitle() + ", " +
        regularPrice(*product).value_or("no price"));
    buy(product);
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s CONFIGURATION.storekit [PRODUCT]\n", argv[0]);
    return 2;
  }
  const auto opening = StoreKit::StoreSession::open(argv[1]);
  for (const auto& problem : opening.problems) {
    std::fprintf(stderr, "%s\n", problem.description().c_str());
  }
  if (!opening.ledgerError.empty()) std::fprintf(stderr, "%s\n", opening.ledgerError.c_str());
  if (!opening.session) return 2;

  const auto listening = listen();
  deliverLeftovers();
  fetchAndBuy(argc > 2 ? argv[2] : "gems.100");
  Dispatch::MainLoop::run();
  while (Dispatch::MainLoop::drain() > 0) {
    // The library still finishes the transaction.
  }
  say("left in the queue: " +
      std::to_string(StoreKit::SKPaymentQueue::defaultQueue().transactions().size()));
  return 0;
}
