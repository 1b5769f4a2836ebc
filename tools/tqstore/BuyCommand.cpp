#include "tools/tqstore/BuyCommand.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/DeferralWatch.hpp"
#include "tools/tqstore/Patience.hpp"
#include "tools/tqstore/PurchaseEvents.hpp"
#include "tools/tqstore/PurchaseResult.hpp"

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

void prepare(StoreKit::StoreSession& session, const BuyOptions& purchase) {
  if (purchase.cancel) session.cancelPurchases();
  if (purchase.failWith) {
    session.failPurchases(static_cast<StoreKit::SKError::Code>(*purchase.failWith));
  }
}

// How the purchase ended. A success is shown once its finish has had its turn.
struct Outcome {
  std::optional<TQPurchaseDetails> bought{};
  std::optional<ExitStatus> status{};

  void take(const TQPurchaseResult& result, bool json) {
    result.match([&](const TQPurchaseDetails& details) { bought = details; },
                 [&](const TQSKError& error) { status = showError(error, json); });
    Dispatch::MainLoop::stop();
  }
};

TQIdentifierPurchaseOptions libraryOptions(const BuyOptions& purchase) {
  return {.quantity = purchase.quantity,
          .atomically = purchase.finish,
          .applicationUsername = purchase.user,
          .simulatesAskToBuyInSandbox = purchase.askToBuy};
}

// The product is asked for, and then bought: the store takes its time twice.
bool waitFor(const Outcome& outcome, double answerDelay) {
  const auto hasEnded = [&] { return outcome.bought || outcome.status; };
  if (runUntil(hasEnded, 2 * answerDelay)) return true;
  complain(hasPurchasesUnderWay()
               ? "the outcome of the purchase could not be written down; the next application that "
                 "starts on the ledger carries the purchase on"
               : "the store has not answered");
  return false;
}

ExitStatus buy(StoreKit::StoreSession& session, const GlobalOptions& options,
               const BuyOptions& purchase) {
  prepare(session, purchase);
  StoreKit::StoreSession::setIsForApplication(false);
  const auto events = showPurchaseEvents(options.json);
  Outcome outcome;
  TQStoreKit::purchaseProduct(
      purchase.productIdentifier, libraryOptions(purchase),
      [&](const TQPurchaseResult& result) { outcome.take(result, options.json); });
  const DeferralWatch watch(purchase.productIdentifier, [&](const StoreKit::LedgerEntry& entry) {
    outcome.status = showDeferred(entry, options.json);
    Dispatch::MainLoop::stop();
  });
  if (!waitFor(outcome, session.answerDelay())) return kRefused;
  if (outcome.bought) return showSuccess(*outcome.bought, options.json);
  return outcome.status.value_or(kRefused);
}

Manual manual() {
  return {
      .group = "Buying",
      .summary = "Buy a product and show what happens",
      .description =
          "Buys through the library, and shows the store's events and the result in the order in "
          "which they happen. What earlier runs left unfinished stays as it is.\n"
          "\n"
          "It buys beside the application: purchases that a dead program had begun, or that the "
          "user began in the store, and refunds that nobody was told of are left for that one.\n"
          "\n"
          "A purchase that somebody else has to approve (the setting askToBuyEnabled, or "
          "--ask-to-buy) ends as deferred; approve and decline settle it.",
      .refusal =
          "The purchase failed, or was cancelled. Or its outcome or its finish could not be "
          "written down: standard error says which.",
      .examples =
          " tqstore --config shop.storekit buy gems.100 --quantity 3\n"
          " tqstore --config shop.storekit buy gems.100 --cancel\n"
          " tqstore --config shop.storekit --json buy levels --user ann --no-finish\n"};
}

// Why the store has no such error; empty when it has.
std::string negativeCode(const std::string& text) {
  return text.starts_with("-") ? "an error code is 0 or more, not " + text : "";
}

void addOptions(CommandOptions& command, BuyOptions& purchase) {
  command.addOption("PRODUCT", purchase.productIdentifier, "The product to buy").required();
  command.addOption("--quantity", purchase.quantity, "How many; the store sells 1 to 10 at once")
      .valueName("N")
      .showsDefault();
  command.addOption("--user", purchase.user, "Account of the application's own user")
      .valueName("NAME");
  command.addFlag("!--no-finish", purchase.finish, "Leave the transaction unfinished");
  command.addFlag("--ask-to-buy", purchase.askToBuy, "Ask somebody else to approve it");
  auto fail = command.addOption("--fail", purchase.failWith,
                                "Let the purchase fail with this store error code");
  fail.valueName("CODE").refusedFor(negativeCode);
  command.addFlag("--cancel", purchase.cancel, "Let the user cancel the purchase").excludes(fail);
}

}  // namespace

void addBuy(CommandLine& line) {
  const auto purchase = std::make_shared<BuyOptions>();
  auto command = line.add("buy", manual(), [purchase, &options = line.options()](auto& session) {
    return buy(session, options, *purchase);
  });
  addOptions(command, *purchase);
}

}  // namespace tqstore
