#include "tools/tqstore/RestoreCommand.hpp"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Deliveries.hpp"
#include "tools/tqstore/Patience.hpp"
#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

using namespace TQStoreKitLib;

struct RestoreOptions {
  std::string user;
  bool finishes = false;
};

std::set<std::int64_t> unfinishedIdentifiers() {
  std::set<std::int64_t> identifiers;
  for (const auto& entry : ledger().unfinished()) identifiers.insert(entry.identifier);
  return identifiers;
}

// The library gathers everything restored that it sees meanwhile, also what an earlier restore left
// unfinished, and what another program restores.
std::vector<TQPurchase> broughtByThis(std::vector<TQPurchase> restored, const std::string& user,
                                      const std::set<std::int64_t>& before) {
  const auto isOther = [&](const TQPurchase& purchase) {
    const auto entry = entryOf(*purchase.transaction);
    if (!entry || before.contains(entry->identifier)) return true;
    return !user.empty() && entry->payment.applicationUsername.value_or("") != user;
  };
  restored.erase(std::remove_if(restored.begin(), restored.end(), isOther), restored.end());
  return restored;
}

ExitStatus showResult(const TQRestoreResults& results, std::size_t count, bool json) {
  for (const auto& [error, product] : results.restoreFailedPurchases) {
    complain(printable(error.localizedDescription()));
  }
  const bool done = results.restoreFailedPurchases.empty();
  if (json) {
    writeJson({{"result", done ? "success" : "error"}, {"restored", count}});
  } else {
    writeLine(styled("result     ", Style::dim) + std::to_string(count) + " restored");
  }
  return done ? kDone : kRefused;
}

TQRestoreResults restored(const std::string& user) {
  std::optional<TQRestoreResults> answer;
  TQStoreKit::restorePurchases({.atomically = false, .applicationUsername = user},
                               [&](const TQRestoreResults& results) {
                                 answer = results;
                                 Dispatch::MainLoop::stop();
                               });
  while (!answer) Dispatch::MainLoop::run();
  return *answer;
}

ExitStatus restore(const GlobalOptions& options, const RestoreOptions& wanted) {
  StoreKit::StoreSession::setIsForApplication(false);
  const Handling handling{.json = options.json, .finishes = wanted.finishes};
  const auto before = unfinishedIdentifiers();
  const auto results = restored(wanted.user);
  const auto brought = broughtByThis(results.restoredPurchases, wanted.user, before);
  finishDelivered(brought, handling);
  runQueued();
  const bool finished = showDelivered(brought, handling);
  const auto status = showResult(results, brought.size(), options.json);
  return finished ? status : kRefused;
}

Manual manual() {
  return {.group = "Buying",
          .summary = "Bring back what was bought and can be had again",
          .description =
              "Restores through the library, and shows each transaction that this brings, then "
              "how many there were. What an earlier restore left unfinished is not shown again; "
              "launch delivers it.\n"
              "\n"
              "It restores beside the application: purchases that a dead program had begun, or "
              "that the user began in the store, and refunds that nobody was told of are left for "
              "that one.",
          .refusal =
              "The restore ended early; what it brought before is shown. Or a finish could not be "
              "written down.",
          .examples =
              " tqstore --config shop.storekit restore\n"
              " tqstore --config shop.storekit restore --user ann --finish\n"};
}

}  // namespace

void addRestore(CommandLine& line) {
  const auto wanted = std::make_shared<RestoreOptions>();
  auto command = line.add("restore", manual(), [wanted, &options = line.options()](auto&) {
    return restore(options, *wanted);
  });
  command.addOption("--user", wanted->user, "Only what was bought for this account")
      .valueName("NAME");
  command.addFlag("--finish", wanted->finishes, "Finish what is restored");
}

}  // namespace tqstore
