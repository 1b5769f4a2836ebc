#include "tools/tqstore/BuyCommand.hpp"

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/Foundation/NotificationCenter.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Json.hpp"

namespace tqstore {

namespace {

using namespace TQStoreKitLib;
using PurchaseEvent = TQStoreKitEvent::PurchaseEvent;

// What is shown of an event.
struct EventText {
  const char* name;
  std::string productIdentifier;
};

EventText describe(const PurchaseEvent& event) {
  return event.match(
      [](const PurchaseEvent::Begin& begin) {
        return EventText{"purchase.begin", begin.product->productIdentifier()};
      },
      [](const TQPurchaseDetails& details) {
        return EventText{"purchase.success", details.productId};
      },
      [](const PurchaseEvent::Failed& failed) {
        return EventText{"purchase.failed", failed.productIdentifier};
      },
      [](const PurchaseEvent::Cancel& cancel) {
        return EventText{"purchase.cancel", cancel.product->productIdentifier()};
      });
}

void showEvent(const Foundation::Notification& notification, bool json) {
  const auto* event = notification.object.as<TQStoreKitEvent>();
  if (!event || !event->asPurchase()) return;
  const auto text = describe(*event->asPurchase());
  if (json) {
    writeJson({{"event", text.name}, {"productIdentifier", text.productIdentifier}});
  } else {
    writeLine(styled("event   ", Style::dim) + text.name + "  " +
              printable(text.productIdentifier));
  }
}

void showSuccess(const TQPurchaseDetails& details, bool json) {
  const auto identifier = details.transaction->transactionIdentifier();
  if (json) {
    writeJson({{"result", "success"},
               {"productIdentifier", details.productId},
               {"quantity", details.quantity},
               {"transactionIdentifier", identifier ? Json(*identifier) : Json(nullptr)},
               {"needsFinishTransaction", details.needsFinishTransaction}});
    return;
  }
  writeLine(styled("result  ", Style::dim) + styled("bought", Style::green) + "  " +
            std::to_string(details.quantity) + " x " + printable(details.productId) +
            ", transaction " + identifier.value_or("without identifier") +
            (details.needsFinishTransaction ? ", still to be finished" : ", finished"));
}

void showError(const TQSKError& error, bool json) {
  if (json) {
    writeJson({{"result", "error"}, {"message", error.msg()}});
  } else {
    writeLine(styled("result  ", Style::dim) + styled("error", Style::red) + "  " +
              printable(error.msg()));
  }
}

void prepare(StoreKit::StoreSession& session, const BuyOptions& purchase) {
  if (purchase.cancel) session.cancelPurchases();
  if (purchase.failWith) {
    session.failPurchases(static_cast<StoreKit::SKError::Code>(*purchase.failWith));
  }
}

}  // namespace

ExitStatus buy(StoreKit::StoreSession& session, const GlobalOptions& options,
               const BuyOptions& purchase) {
  prepare(session, purchase);
  const auto observation = Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(),
      [&](const Foundation::Notification& notification) { showEvent(notification, options.json); });
  auto status = kRefused;
  bool ended = false;
  TQStoreKit::purchaseProduct(purchase.productIdentifier,
                              {.quantity = purchase.quantity,
                               .atomically = purchase.finish,
                               .applicationUsername = purchase.user},
                              [&](const TQPurchaseResult& result) {
                                status = result.match(
                                    [&](const TQPurchaseDetails& details) {
                                      showSuccess(details, options.json);
                                      return kDone;
                                    },
                                    [&](const TQSKError& error) {
                                      showError(error, options.json);
                                      return kRefused;
                                    });
                                ended = true;
                                Dispatch::MainLoop::stop();
                              });
  while (!ended) Dispatch::MainLoop::run();
  while (Dispatch::MainLoop::drain() > 0) {
    // The finish is still under way.
  }
  return status;
}

}  // namespace tqstore
