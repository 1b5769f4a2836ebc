#include "tools/tqstore/LaunchCommand.hpp"

#include <algorithm>
#include <chrono>
#include <memory>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Deliveries.hpp"
#include "tools/tqstore/Interruption.hpp"
#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/StorePurchases.hpp"

namespace tqstore {

namespace {

using namespace TQStoreKitLib;

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenLooks{10};
constexpr double kPatience = 5;  // seconds, beside those that the store takes

struct LaunchOptions {
  bool finishes = false;
  bool watches = false;
  bool refuses = false;
};

// Purchases that this program carries on, and that the store has not decided on yet.
bool hasPurchasesUnderWay() {
  const auto entries = ledger().unfinished();
  return std::any_of(entries.begin(), entries.end(), [](const StoreKit::LedgerEntry& entry) {
    return entry.owner == ledger().owner();
  });
}

// Not for ever: a ledger that cannot be written to leaves purchases under way.
void runUntilQuiet(double answerDelay) {
  const auto start = Clock::now();
  runQueued();
  while (hasPurchasesUnderWay()) {
    const std::chrono::duration<double> waited = Clock::now() - start;
    if (waited.count() > answerDelay + kPatience) return complain("purchases are still under way");
    Dispatch::MainLoop::runFor(kBetweenLooks);
    runQueued();
  }
}

void runUntilInterrupted() {
  const Interruption interruption;
  Dispatch::MainLoop::run();
  runQueued();
}

ExitStatus launch(const StoreKit::StoreSession& session, const GlobalOptions& options,
                  const LaunchOptions& wanted) {
  answerStorePurchases(!wanted.refuses, options.json);
  TQStoreKit::completeTransactions(
      {.atomically = false}, [&](const std::vector<TQPurchase>& purchases) {
        handleDeliveries(purchases, {.json = options.json, .finishes = wanted.finishes});
      });
  if (wanted.watches) {
    runUntilInterrupted();
  } else {
    runUntilQuiet(session.answerDelay());
  }
  return kDone;
}

Manual manual() {
  return {.group = "Buying",
          .summary = "Start as an application does, and show what it is given",
          .description =
              "Registers the launch-time completion and shows what it is given, until the queue "
              "is quiet: what earlier runs left unfinished, what was bought or approved "
              "meanwhile. Purchases that a dead program had begun are carried on.\n"
              "\n"
              "Asked about a purchase that the user began in the store (see storefront-buy), it "
              "says so, and accepts.\n"
              "\n"
              "With --watch it stays, and shows what other programs do, until it is interrupted.",
          .examples =
              " tqstore --config shop.storekit launch --finish\n"
              " tqstore --config shop.storekit --json launch --watch\n"};
}

}  // namespace

void addLaunch(CommandLine& line) {
  const auto wanted = std::make_shared<LaunchOptions>();
  auto& command = line.add("launch", manual(), [wanted, &options = line.options()](auto& session) {
    return launch(session, options, *wanted);
  });
  command.add_flag("--finish", wanted->finishes, "Finish what is delivered");
  command.add_flag("--watch", wanted->watches, "Stay until interrupted");
  command.add_flag("--refuse", wanted->refuses, "Refuse purchases that begin in the store");
}

}  // namespace tqstore
