#include "tools/tqstore/BuyCommand.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/DeferralWatch.hpp"
#include "tools/tqstore/Json.hpp"
#include "tools/tqstore/PurchaseEvents.hpp"
#include "tools/tqstore/StorePurchases.hpp"

namespace tqstore {

namespace {

using namespace TQStoreKitLib;

struct BuyOptions {
  std::string productIdentifier;
  std::int64_t quantity = 1;
  std::string user;
  bool finish = true;
  bool askToBuy = false;
  std::optional<int> failWith;
  bool cancel = false;
};

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

void showDeferred(const StoreKit::LedgerEntry& entry, bool json) {
  const auto& payment = entry.payment;
  const auto number = std::to_string(entry.identifier);
  if (json) {
    writeJson({{"result", "deferred"},
               {"productIdentifier", payment.productIdentifier},
               {"quantity", payment.quantity},
               {"identifier", number},
               {"transactionIdentifier", nullptr}});
    return;
  }
  writeLine(styled("result  ", Style::dim) + styled("deferred", Style::bold) + "  " +
            std::to_string(payment.quantity) + " x " + printable(payment.productIdentifier) +
            ", to be approved or declined as transaction " + number);
}

void prepare(StoreKit::StoreSession& session, const BuyOptions& purchase) {
  if (purchase.cancel) session.cancelPurchases();
  if (purchase.failWith) {
    session.failPurchases(static_cast<StoreKit::SKError::Code>(*purchase.failWith));
  }
}

ExitStatus buy(StoreKit::StoreSession& session, const GlobalOptions& options,
               const BuyOptions& purchase) {
  prepare(session, purchase);
  acceptStorePurchases();
  const auto events = showPurchaseEvents(options.json);
  std::optional<ExitStatus> status;
  const auto end = [&](ExitStatus how) {
    status = how;
    Dispatch::MainLoop::stop();
  };
  TQStoreKit::purchaseProduct(purchase.productIdentifier,
                              {.quantity = purchase.quantity,
                               .atomically = purchase.finish,
                               .applicationUsername = purchase.user,
                               .simulatesAskToBuyInSandbox = purchase.askToBuy},
                              [&](const TQPurchaseResult& result) {
                                result.match(
                                    [&](const TQPurchaseDetails& details) {
                                      showSuccess(details, options.json);
                                      end(kDone);
                                    },
                                    [&](const TQSKError& error) {
                                      showError(error, options.json);
                                      end(kRefused);
                                    });
                              });
  const DeferralWatch watch(purchase.productIdentifier, [&](const StoreKit::LedgerEntry& entry) {
    showDeferred(entry, options.json);
    end(kDone);
  });
  while (!status) Dispatch::MainLoop::run();
  while (Dispatch::MainLoop::drain() > 0) {
    // The finish is still under way.
  }
  return *status;
}

Manual manual() {
  return {
      .group = "Buying",
      .summary = "Buy a product and show what happens",
      .description =
          "Buys through the library, and shows the store's events and the result in the order in "
          "which they happen. What earlier runs left unfinished stays as it is.\n"
          "\n"
          "A purchase that somebody else has to approve (the setting askToBuyEnabled, or "
          "--ask-to-buy) ends as deferred; approve and decline settle it.",
      .refusal = "The purchase failed, or was cancelled.",
      .examples =
          " tqstore --config shop.storekit buy gems.100 --quantity 3\n"
          " tqstore --config shop.storekit buy gems.100 --cancel\n"
          " tqstore --config shop.storekit --json buy levels --user ann --no-finish\n"};
}

void addOptions(CLI::App& command, BuyOptions& purchase) {
  command.add_option("PRODUCT", purchase.productIdentifier, "The product to buy")->required();
  command.add_option("--quantity", purchase.quantity, "How many; the store sells 1 to 10 at once")
      ->type_name("N")
      ->capture_default_str();
  command.add_option("--user", purchase.user, "Account of the application's own user")
      ->type_name("NAME");
  command.add_flag("!--no-finish", purchase.finish, "Leave the transaction unfinished");
  command.add_flag("--ask-to-buy", purchase.askToBuy, "Ask somebody else to approve it");
  auto* fail = command.add_option("--fail", purchase.failWith,
                                  "Let the purchase fail with this store error code");
  fail->type_name("CODE");
  command.add_flag("--cancel", purchase.cancel, "Let the user cancel the purchase")->excludes(fail);
}

}  // namespace

void addBuy(CommandLine& line) {
  const auto purchase = std::make_shared<BuyOptions>();
  auto& command = line.add("buy", manual(), [purchase, &options = line.options()](auto& session) {
    return buy(session, options, *purchase);
  });
  addOptions(command, *purchase);
}

}  // namespace tqstore
