#include "tools/tqstore/LaunchCommand.hpp"

#include <memory>
#include <vector>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Deliveries.hpp"
#include "tools/tqstore/Interruption.hpp"
#include "tools/tqstore/Patience.hpp"
#include "tools/tqstore/RevocationWatch.hpp"
#include "tools/tqstore/StorePurchases.hpp"

namespace tqstore {

namespace {

using namespace TQStoreKitLib;

struct LaunchOptions {
  bool finishes = false;
  bool watches = false;
  bool refuses = false;
};

// What is given to the launch-time completion, shown a turn later: a finish has happened by then, or
// was refused.
class Deliveries {
 public:
  explicit Deliveries(Handling handling) : handling_(handling) {
    TQStoreKit::completeTransactions(
        {.atomically = false},
        [this](const std::vector<TQPurchase>& purchases) { take(purchases); });
  }

  [[nodiscard]] bool areFinished() const { return finished_; }

 private:
  void take(const std::vector<TQPurchase>& purchases) {
    finishDelivered(purchases, handling_);
    Dispatch::mainQueue().async([this, purchases] {
      if (!showDelivered(purchases, handling_)) finished_ = false;
      if (outputIsLost()) Dispatch::MainLoop::stop();
    });
  }

  Handling handling_;
  bool finished_ = true;
};

bool runUntilQuiet(double answerDelay) {
  if (runUntil([] { return !hasPurchasesUnderWay(); }, answerDelay)) return true;
  complain("purchases are still under way");
  return false;
}

bool runUntilInterrupted() {
  const Interruption interruption;
  Dispatch::MainLoop::run();
  runQueued();
  return true;
}

ExitStatus launch(const StoreKit::StoreSession& session, const GlobalOptions& options,
                  const LaunchOptions& wanted) {
  answerStorePurchases(!wanted.refuses, options.json);
  const RevocationWatch revocations(options.json);
  const Deliveries deliveries({.json = options.json, .finishes = wanted.finishes});
  const bool quiet = wanted.watches ? runUntilInterrupted() : runUntilQuiet(session.answerDelay());
  return quiet && deliveries.areFinished() ? kDone : kRefused;
}

Manual manual() {
  return {
      .group = "Buying",
      .summary = "Start as an application does, and show what it is given",
      .description =
          "Registers the launch-time completion and shows what it is given, until the queue "
          "is quiet: what earlier runs left unfinished, what was bought or approved "
          "meanwhile, and what was lost by a refund. Purchases that a dead program had begun are "
          "carried on.\n"
          "\n"
          "Asked about a purchase that the user began in the store (see storefront-buy), it "
          "says so, and accepts.\n"
          "\n"
          "With --watch it stays, and shows what other programs do, until it is interrupted.",
      .refusal =
          "A finish could not be written down, or purchases are still under way after "
          "eight seconds more than the store takes.",
      .examples =
          " tqstore --config shop.storekit launch --finish\n"
          " tqstore --config shop.storekit --json launch --watch\n"};
}

}  // namespace

void addLaunch(CommandLine& line) {
  const auto wanted = std::make_shared<LaunchOptions>();
  auto command = line.add("launch", manual(), [wanted, &options = line.options()](auto& session) {
    return launch(session, options, *wanted);
  });
  command.addFlag("--finish", wanted->finishes, "Finish what is delivered");
  command.addFlag("--watch", wanted->watches, "Stay until interrupted");
  command.addFlag("--refuse", wanted->refuses, "Refuse purchases that begin in the store");
}

}  // namespace tqstore
